#include "taskread.h"

#include "extensionfile/reader.h"
#include "modellog.h"
#include "pointtreewidgetitem.h"
#include "scanhandover.h"
#include "siblingsink.h"

#include <QFileInfo>
#include <QThread>

#include <cstdint>
#include <cstdlib>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace {

// A file beyond this may be taken in in more than one portion. Guarding its nodes takes as long as such a portion, so
// it is done here, before anybody waits.
constexpr size_t announcementsTakenInAtOnce = 1000;

// What the nodes of an ordinary file take: its 10 KB become ten times as many. It has to stay below the 128 KiB from
// which the allocator would map memory apart (M_MMAP_THRESHOLD) or give it back at once (M_TRIM_THRESHOLD).
constexpr size_t roomForOneFile = 96 * 1024;

/// The heap of a thread other than the main one grows by just what is asked for, which for nodes means one call of the
/// system for each page: a tenth of the time of a scan. A block that was free before makes it one call for each file.
void makeRoom()
{
    void *room = std::malloc(roomForOneFile);
    if (!room)
        return;
#ifdef MADV_POPULATE_WRITE
    // Likewise the pages: one by one, each costs an interruption. A kernel that doesn't know this says so, and no more.
    const auto pageSize = std::uintptr_t(::sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(room) + pageSize - 1) / pageSize * pageSize;
    const auto end = (reinterpret_cast<std::uintptr_t>(room) + roomForOneFile) / pageSize * pageSize;
    ::madvise(reinterpret_cast<void *>(begin), end - begin, MADV_POPULATE_WRITE);
#endif
    std::free(room);
}

QString directoryOf(const QString &path)
{
    return QFileInfo(path).path() + QLatin1Char('/');
}

} // namespace

TaskRead::TaskRead(
    const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot, PointTreeWidgetItem *thirdRoot)
    : m_path(path), m_pointsRoot(pointsRoot), m_dataRoot(dataRoot), m_thirdRoot(thirdRoot),
      m_nodeThread(QThread::currentThread())
{
    setAutoDelete(true);
    m_ready.store(true, std::memory_order_release);
}

TaskRead::~TaskRead() = default;

void TaskRead::setHandover(std::shared_ptr<ScanHandover> handover, int index)
{
    m_handover = std::move(handover);
    m_index = index;
    m_ready.store(true, std::memory_order_release);
}

void TaskRead::run()
{
    (void)m_ready.load(std::memory_order_acquire);
    if (m_handover) {
        if (m_handover->claim(m_index))
            m_handover->put(m_index, read(m_path, m_pointsRoot, m_dataRoot, m_nodeThread));
        return;
    }
    SiblingSink sink(directoryOf(m_path), m_pointsRoot, m_dataRoot, SiblingSink::EarlierFormats::Repeat);
    const std::unique_ptr<ScannedFile> file = build(m_path, sink, m_nodeThread);
    while (file && !file->atEnd())
        announce(*file->next());
}

std::unique_ptr<ScannedFile> TaskRead::read(
    const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot, QThread *thread)
{
    // The manager knows the formats of the earlier data sets by then.
    SiblingSink sink(directoryOf(path), pointsRoot, dataRoot, SiblingSink::EarlierFormats::Omit);
    std::unique_ptr<ScannedFile> file = build(path, sink, thread);
    if (file && file->announcements().size() > announcementsTakenInAtOnce)
        file->putAside();
    return file;
}

std::unique_ptr<ScannedFile> TaskRead::build(const QString &path, SiblingSink &sink, QThread *thread)
{
    if (path.isEmpty())
        return nullptr;
    makeRoom();
    ExtensionFile::ReadError error;
    if (!ExtensionFile::readFile(path, sink, &error))
        return nullptr;
    return sink.take(thread);
}

void TaskRead::announce(const Announcement &announcement)
{
    switch (announcement.kind) {
    case Announcement::DefinData:
        Q_EMIT definData(announcement.key, announcement.node);
        break;
    case Announcement::AllFormatRoot:
        Q_EMIT allFormatRoot(announcement.node);
        break;
    case Announcement::AddTopChild:
        Q_EMIT addTopChild(announcement.parent, announcement.node);
        break;
    case Announcement::AddObjChild:
        Q_EMIT addObjChild(announcement.parent, announcement.node);
        break;
    case Announcement::LayoutRelization:
        Q_EMIT layoutRelization(announcement.node);
        break;
    }
}

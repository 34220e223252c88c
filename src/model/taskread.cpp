#include "taskread.h"

#include "extensionfile/reader.h"
#include "modellog.h"
#include "pointtreewidgetitem.h"
#include "scanhandover.h"
#include "siblingsink.h"

#include <QFileInfo>
#include <QThread>

#include <utility>

namespace {

// A file beyond this may be taken in in more than one portion. Guarding its nodes takes as long as such a portion, so
// it is done here, before anybody waits.
constexpr size_t announcementsTakenInAtOnce = 1000;

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
            m_handover->put(m_index, m_path,
                read(m_path, m_pointsRoot, m_dataRoot, m_nodeThread, [this] { m_handover->noteRead(m_index); }));
        return;
    }
    SiblingSink sink(directoryOf(m_path), m_pointsRoot, m_dataRoot, SiblingSink::EarlierFormats::Repeat);
    const ScanResult result = build(m_path, sink, m_nodeThread);
    while (result.file && !result.file->atEnd())
        announce(*result.file->next());
}

ScanResult TaskRead::read(const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot,
    QThread *thread, const std::function<void()> &whenRead)
{
    // The manager knows the formats of the earlier data sets by then.
    SiblingSink sink(directoryOf(path), pointsRoot, dataRoot, SiblingSink::EarlierFormats::Omit);
    sink.whenRead(whenRead);
    ScanResult result = build(path, sink, thread);
    if (result.file && result.file->announcements().size() > announcementsTakenInAtOnce)
        result.file->putAside();
    return result;
}

ScanResult TaskRead::build(const QString &path, SiblingSink &sink, QThread *thread)
{
    if (path.isEmpty())
        return {};
    ExtensionFile::ReadError error;
    if (ExtensionFile::readFile(path, sink, &error))
        return { sink.take(thread), QString() };
    return { nullptr, error.kind == ExtensionFile::ReadError::Kind::Missing ? QString() : error.toString() };
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

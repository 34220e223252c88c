#include "taskread.h"

#include "extensionfile/logging.h"
#include "extensionfile/reader.h"
#include "modellog.h"
#include "pointtreewidgetitem.h"
#include "scanbudget.h"
#include "scanhandover.h"
#include "siblingsink.h"

#include <QFileInfo>
#include <QThread>

#include <mutex>

#include <utility>

namespace {

// A file beyond this may be taken in in more than one portion. Guarding its nodes takes as long as such a portion, so
// it is done here, before anybody waits.
constexpr size_t announcementsTakenInAtOnce = 1000;

// Bytes. Hand-made files stay below; one of a few bytes for each element makes hundreds of times as much of itself.
constexpr qint64 largeFileSize = 1024 * 1024;

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
                read(
                    m_path, m_pointsRoot, m_dataRoot, m_nodeThread, m_handover->budget(),
                    [this] { m_handover->noteRead(m_index); }, m_known));
        return;
    }
    SiblingSink sink(directoryOf(m_path), m_pointsRoot, m_dataRoot, SiblingSink::EarlierFormats::Repeat);
    const ScanResult result = build(m_path, sink, m_nodeThread, nullptr);
    while (result.file && !result.file->atEnd())
        announce(*result.file->next());
}

ScanResult TaskRead::read(const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot,
    QThread *thread, ScanBudget *budget, const std::function<void()> &whenRead, const ExtensionFile::FileStamp &known)
{
    ScanResult result;
    result.stamp = ExtensionFile::FileStamp::of(path);
    result.isUnchanged = result.stamp.isSameAs(known);
    if (result.isUnchanged)
        return result;
    // One at a time: until it is known what they bring, all together may take any amount of memory.
    static std::mutex largeFiles;
    std::unique_lock<std::mutex> alone(largeFiles, std::defer_lock);
    const bool isLarge = result.stamp.size > largeFileSize;
    // The manager knows the formats of the earlier data sets by then.
    SiblingSink sink(directoryOf(path), pointsRoot, dataRoot, SiblingSink::EarlierFormats::Omit);
    sink.whenRead([&] {
        if (whenRead)
            whenRead();
        if (isLarge)
            alone.lock();
    });
    const ExtensionFile::FileStamp stamp = result.stamp;
    result = build(path, sink, thread, budget);
    result.stamp = stamp;
    if (result.file && result.file->announcements().size() > announcementsTakenInAtOnce)
        result.file->putAside();
    return result;
}

ScanResult TaskRead::build(const QString &path, SiblingSink &sink, QThread *thread, ScanBudget *budget)
{
    if (path.isEmpty())
        return {};
    ExtensionFile::ReadError error;
    if (!ExtensionFile::readFile(path, sink, &error)) {
        // A link that leads nowhere (to a network that has gone, say) is there, though what it stands for is not.
        const bool isNone = error.kind == ExtensionFile::ReadError::Kind::Missing && !QFileInfo(path).isSymLink();
        return { nullptr, isNone ? QString() : error.toString() };
    }
    if (!budget || budget->take(sink.nodeCount(), sink.textSize()))
        return { sink.take(thread), QString() };
    const QString failure = ExtensionFile::oneLine(path)
        + QLatin1String(": Not taken in: the files of all plug-ins together have too many elements or too much text.");
    qCWarning(scanLog).noquote() << failure;
    return { nullptr, failure };
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

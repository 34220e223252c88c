#include "taskread.h"

#include "extensionfile/reader.h"
#include "modellog.h"
#include "pointtreewidgetitem.h"
#include "scanhandover.h"
#include "siblingsink.h"

#include <QFileInfo>
#include <QThread>

#include <utility>

TaskRead::TaskRead(const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot,
    PointTreeWidgetItem *thirdRoot)
    : m_path(path)
    , m_pointsRoot(pointsRoot)
    , m_dataRoot(dataRoot)
    , m_thirdRoot(thirdRoot)
    , m_nodeThread(QThread::currentThread())
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
    const std::unique_ptr<ScannedFile> file = read(m_path, m_pointsRoot, m_dataRoot, m_nodeThread);
    while (file && !file->atEnd())
        announce(*file->next());
}

std::unique_ptr<ScannedFile> TaskRead::read(
    const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot, QThread *thread)
{
    if (path.isEmpty())
        return nullptr;
    SiblingSink sink(QFileInfo(path).path() + QLatin1Char('/'), pointsRoot, dataRoot);
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

#include "siblingscan.h"

#include "modellog.h"
#include "ownpoints.h"
#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

// Often enough for the eye, and seldom enough for the painting to be a small part of a scan.
constexpr int pauseBetweenRowsMs = 120;

// A network that answers at all does so sooner.
constexpr std::chrono::seconds patience(10);

} // namespace

SiblingScan::SiblingScan(SourceDataManager *manager, OwnPoints *ownPoints) : m_manager(manager), m_ownPoints(ownPoints)
{
    m_pluginsTimer.setSingleShot(true);
    // The first ones show at once.
    m_pluginsTimer.setInterval(0);
    connect(&m_pluginsTimer, &QTimer::timeout, this, &SiblingScan::showArrivedPlugins);
}

SiblingScan::~SiblingScan() = default;

void SiblingScan::start(const QString &fileName, bool isLoaded)
{
    const QFileInfo opened(QDir::cleanPath(QFileInfo(fileName).absoluteFilePath()));
    QDir plugins = opened.dir();
    plugins.cdUp();
    m_unreadable.clear();
    if (!QFileInfo(plugins.path()).isReadable())
        m_unreadable.append(
            { plugins.path(), QStringLiteral("%1: the directory can't be listed").arg(plugins.path()) });

    // "." and ".." stand in the list too: a file beside the plug-in directories or above them is read like a sibling's.
    const QStringList entries = plugins.entryList(QDir::Dirs | QDir::NoSymLinks);
    const QString fileInEntry = QStringLiteral("/extension.xml");
    const int ownIndex = isLoaded && QLatin1Char('/') + opened.fileName() == fileInEntry
        ? entries.indexOf(opened.dir().dirName())
        : -1;
    QStringList paths;
    paths.reserve(entries.size());
    for (const QString &entry : entries)
        paths.append(plugins.path() + QLatin1Char('/') + entry + fileInEntry);

    m_sequence = std::make_unique<ScanSequence>(paths,
        isLoaded ? ExtensionFile::FileIdentity::of(fileName) : ExtensionFile::FileIdentity(),
        ScanSequence::Roots { m_manager->availablePointsRoot(), m_manager->allDataRoot(), m_manager->fourthRoot() },
        [this, ownIndex](int index, bool isOpened, const Announcement &announcement) {
            if (std::exchange(m_arrivingFile, index) != index)
                m_arrivingLayouts.clear();
            // By its name as well: somebody may have put a new file in the place of the one that was opened.
            receive(isOpened || index == ownIndex, announcement);
        });
    connect(m_sequence.get(), &ScanSequence::unreadable, this,
        [this](const UnreadableFile &file) { m_unreadable.append(file); });
    connect(m_sequence.get(), &ScanSequence::portionDelivered, this, [this] {
        for (const QString &name : qAsConst(m_arrivingLayouts))
            ++m_formatRevisions[name];
        Q_EMIT progressed();
    });
    connect(m_sequence.get(), &ScanSequence::finished, this, &SiblingScan::conclude);
    qCInfo(scanLog, "%s: reading %d directories", qUtf8Printable(plugins.path()), entries.size());
    m_sequence->start();
}

void SiblingScan::conclude()
{
    m_arrivingLayouts.clear();
    showArrivedPlugins();
    // Not deleted here: the sequence is the sender.
    m_sequence.release()->deleteLater();
    dropOwnReading();
    Q_EMIT finished();
}

void SiblingScan::complete()
{
    const QPointer<SiblingScan> alive(this);
    if (m_sequence)
        m_sequence->complete(patience);
    if (!alive || !m_sequence)
        return;
    const QStringList missing = m_sequence->awaited();
    for (const QString &path : missing)
        qCWarning(scanLog, "%s: not waited for any longer", qUtf8Printable(path));
}

void SiblingScan::clear()
{
    m_sequence.reset();
    m_unreadable.clear();
    dropOwnReading();
    m_arrivedPlugins.clear();
    m_pluginsTimer.stop();
    m_pluginsTimer.setInterval(0);
    m_arrivingLayouts.clear();
    m_formatRevisions.clear();
}

QStringList SiblingScan::awaitedFiles() const
{
    return m_sequence ? m_sequence->awaited() : QStringList();
}

void SiblingScan::noteFormat(const QString &name, bool isLayout)
{
    if (!name.isEmpty())
        ++m_formatRevisions[name];
    if (isLayout)
        m_arrivingLayouts.append(name);
}

void SiblingScan::receive(bool ownFile, const Announcement &announcement)
{
    const bool isPlugin = announcement.parent == m_manager->availablePointsRoot();
    if (ownFile) {
        if (isPlugin && m_ownPoints->waiting() > 0) {
            showArrivedPlugins();
            m_ownPoints->place();
        }
        if (isPlugin || announcement.parent == m_manager->allDataRoot())
            m_ownReading.append(announcement.node);
        else if (announcement.kind == Announcement::AddObjChild)
            announcement.parent->addChild(announcement.node, false);
        return;
    }
    switch (announcement.kind) {
    case Announcement::DefinData:
        m_manager->onDefinData(announcement.key, announcement.node);
        break;
    case Announcement::AddTopChild:
        if (isPlugin)
            addPlugin(announcement.node);
        else
            m_manager->addTopChild(announcement.parent, announcement.node);
        break;
    case Announcement::AddObjChild:
        m_manager->addObjChild(announcement.parent, announcement.node);
        break;
    case Announcement::LayoutRelization:
        m_manager->layoutRelization(announcement.node);
        break;
    case Announcement::AllFormatRoot:
        m_manager->allFormatRoot(announcement.node);
        break;
    }
}

void SiblingScan::addPlugin(PointTreeWidgetItem *plugin)
{
    PointTreeWidgetItem *points = m_manager->availablePointsRoot();
    if (!plugin || !points)
        return;
    // The opened file's own stand at the end until the scan comes to them, so that nothing that the user has selected
    // there ever moves.
    points->insertChild(points->children().size() - m_ownPoints->waiting(), plugin);
    m_arrivedPlugins.append(plugin);
    if (!m_pluginsTimer.isActive())
        m_pluginsTimer.start();
}

void SiblingScan::showArrivedPlugins()
{
    const auto arrived = std::exchange(m_arrivedPlugins, {});
    m_pluginsTimer.stop();
    m_pluginsTimer.setInterval(pauseBetweenRowsMs);
    QList<QTreeWidgetItem *> rows;
    for (const QPointer<PointTreeWidgetItem> &plugin : arrived) {
        if (plugin)
            rows.append(plugin);
    }
    PointTreeWidgetItem *points = m_manager->availablePointsRoot();
    if (!rows.isEmpty() && points)
        points->insertChildren(points->childCount() - m_ownPoints->waiting(), rows);
}

void SiblingScan::dropOwnReading()
{
    const QVector<QPointer<PointTreeWidgetItem>> sets = std::exchange(m_ownReading, {});
    for (const QPointer<PointTreeWidgetItem> &set : sets)
        PointTreeWidgetItem::destroySubtree(set);
}

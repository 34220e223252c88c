#include "siblingscan.h"

#include "modellog.h"
#include "ownpoints.h"
#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

// Often enough for the eye, and seldom enough for the painting to be a small part of a scan.
constexpr int pauseBetweenRowsMs = 120;

constexpr int pauseBeforeRetryMs = 250;

// A network that answers at all does so sooner.
constexpr std::chrono::seconds patience(10);

} // namespace

SiblingScan::SiblingScan(SourceDataManager *manager, NodeIndexes *indexes, OwnPoints *ownPoints)
    : m_manager(manager), m_ownPoints(ownPoints), m_files(indexes, ownPoints)
{
    m_pluginsTimer.setSingleShot(true);
    // The first ones show at once.
    m_pluginsTimer.setInterval(0);
    connect(&m_pluginsTimer, &QTimer::timeout, this, &SiblingScan::showArrivedPlugins);
    m_retry.setSingleShot(true);
    m_retry.setInterval(pauseBeforeRetryMs);
    connect(&m_retry, &QTimer::timeout, this, &SiblingScan::takeInAgain);
}

SiblingScan::~SiblingScan()
{
    clear();
}

SiblingScan::Listing SiblingScan::list()
{
    const QFileInfo opened(QDir::cleanPath(QFileInfo(m_fileName).absoluteFilePath()));
    QDir plugins = opened.dir();
    plugins.cdUp();
    m_unlisted.clear();
    if (!QFileInfo(plugins.path()).isReadable())
        m_unlisted.append({ plugins.path(),
            QCoreApplication::translate("SiblingScan", "%1: the directory can't be listed").arg(plugins.path()) });

    // "." and ".." stand in the list too: a file beside the plug-in directories or above them is read like a sibling's.
    const QStringList entries = plugins.entryList(QDir::Dirs | QDir::NoSymLinks);
    const QString fileInEntry = QStringLiteral("/extension.xml");
    Listing listing;
    // By its name as well: somebody may have put a new file in the place of the one that was opened.
    if (m_isLoaded && QLatin1Char('/') + opened.fileName() == fileInEntry)
        listing.own = entries.indexOf(opened.dir().dirName());
    listing.paths.reserve(entries.size());
    for (const QString &entry : entries)
        listing.paths.append(plugins.path() + QLatin1Char('/') + entry + fileInEntry);
    return listing;
}

std::unique_ptr<ScanSequence> SiblingScan::sequence(const Listing &listing, ScanSequence::Receiver receiver) const
{
    using ExtensionFile::FileIdentity;
    return std::make_unique<ScanSequence>(listing.paths, m_isLoaded ? FileIdentity::of(m_fileName) : FileIdentity(),
        ScanSequence::Roots { m_manager->availablePointsRoot(), m_manager->allDataRoot(), m_manager->fourthRoot() },
        std::move(receiver));
}

void SiblingScan::start(const QString &fileName, bool isLoaded)
{
    m_fileName = fileName;
    m_isLoaded = isLoaded;
    const Listing listing = list();
    m_files.list(listing.paths, listing.paths.value(listing.own));
    m_sequence
        = sequence(listing, [this, own = listing.own](int index, bool isOpened, const Announcement &announcement) {
              if (std::exchange(m_arrivingFile, index) != index)
                  m_arrivingLayouts.clear();
              receive(isOpened || index == own, announcement);
          });
    connect(m_sequence.get(), &ScanSequence::arrived, this, [this](const FileNews &news) { m_files.note(news); });
    connect(m_sequence.get(), &ScanSequence::portionDelivered, this, [this] {
        for (const QString &name : qAsConst(m_arrivingLayouts))
            ++m_formatRevisions[name];
        Q_EMIT progressed();
    });
    connect(m_sequence.get(), &ScanSequence::finished, this, &SiblingScan::conclude);
    qCInfo(scanLog, "%s: reading %d files", qUtf8Printable(fileName), listing.paths.size());
    m_sequence->start();
}

void SiblingScan::conclude()
{
    m_arrivingLayouts.clear();
    showArrivedPlugins();
    // Not deleted here: the sequence is the sender.
    m_sequence.release()->deleteLater();
    dropUnwanted();
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
    m_look.reset();
    m_retry.stop();
    for (const SiblingFiles::Reading &reading : qAsConst(m_readings))
        m_unwanted += reading.sets;
    m_readings.clear();
    dropUnwanted();
    m_unlisted.clear();
    m_files.clear();
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
            m_unwanted.append(announcement.node);
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
    m_files.addSet(m_arrivingFile, plugin);
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

void SiblingScan::lookAgain()
{
    if (m_sequence || isLooking() || m_fileName.isEmpty())
        return;
    m_lookedAt = list();
    // What can't be listed has not gone.
    if (!m_unlisted.isEmpty())
        return;
    m_look = sequence(m_lookedAt, [this](int index, bool isOpened, const Announcement &announcement) {
        receiveAgain(index, isOpened || index == m_lookedAt.own, announcement);
    });
    m_look->setKnown(m_files.stamps(m_lookedAt.paths));
    connect(m_look.get(), &ScanSequence::arrived, this, [this](const FileNews &news) {
        m_readings.append({ news, {} });
    });
    connect(m_look.get(), &ScanSequence::finished, this, [this] {
        // Not deleted here: the sequence is the sender.
        m_look.release()->deleteLater();
        dropUnwanted();
        takeInAgain();
    });
    m_look->start();
}

void SiblingScan::receiveAgain(int index, bool ownFile, const Announcement &announcement)
{
    const bool isPlugin = announcement.parent == m_manager->availablePointsRoot();
    if (isPlugin && !ownFile && m_readings.last().news.index == index)
        m_readings.last().sets.append(announcement.node);
    else if (isPlugin || announcement.parent == m_manager->allDataRoot())
        m_unwanted.append(announcement.node);
    else if (announcement.kind == Announcement::AddTopChild)
        m_manager->addTopChild(announcement.parent, announcement.node);
    else if (announcement.kind == Announcement::AddObjChild)
        announcement.parent->addChild(announcement.node, false);
}

void SiblingScan::takeInAgain()
{
    if (m_mayTakeIn && !m_mayTakeIn()) {
        m_retry.start();
        return;
    }
    const QVector<SiblingFiles::Reading> readings = std::exchange(m_readings, {});
    if (!m_files.takeIn(m_manager->availablePointsRoot(), m_lookedAt.paths, readings))
        return;
    m_manager->changes().noteDefinitions();
    m_manager->changes().flush();
}

void SiblingScan::dropUnwanted()
{
    const QVector<QPointer<PointTreeWidgetItem>> sets = std::exchange(m_unwanted, {});
    for (const QPointer<PointTreeWidgetItem> &set : sets)
        PointTreeWidgetItem::destroySubtree(set);
}

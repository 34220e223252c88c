#include "sourcedatamanager.h"

#include "attributefields.h"
#include "controller.h"
#include "extensionfile/backup.h"
#include "extensionfile/reader.h"
#include "extensionfile/safesave.h"
#include "modellog.h"
#include "openedfilesink.h"
#include "pointtreewidgetitem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

const QString idKey = QStringLiteral("id");

// Often enough for the eye, and seldom enough for the painting to be a small part of a scan.
constexpr int pauseBetweenRowsMs = 120;

// A network that answers at all does so sooner.
constexpr std::chrono::seconds patience(10);

QString rootText(const char *text)
{
    return QCoreApplication::translate("SourceDataManager", text);
}

QVector<PointTreeWidgetItem *> childrenWithId(const NodeIndex::Nodes &nodes)
{
    QVector<PointTreeWidgetItem *> found;
    for (const PointTreeWidgetItem *node : nodes) {
        for (PointObject *child : node->children()) {
            if (child->item() && !child->property(idKey).toString().isEmpty())
                found.append(child->item());
        }
    }
    return found;
}

} // namespace

SourceDataManager::SourceDataManager(const QString &filePath, QObject *parent)
    : QObject(parent), m_controller(Controller::instance()), m_filePath(filePath),
      m_definitionRoot(new PointTreeWidgetItem(rootText(QT_TRANSLATE_NOOP("SourceDataManager", "Defintion")))),
      m_availablePointsRoot(new PointTreeWidgetItem(rootText(QT_TRANSLATE_NOOP("SourceDataManager", "Realization")))),
      m_allDataRoot(new PointTreeWidgetItem(QString())), m_fourthRoot(new PointTreeWidgetItem(QString())),
      m_realizationRoot(new PointTreeWidgetItem(QString())),
      m_ownPoints(&m_indexes, &m_changes, [this] { followRoot(); }), m_realizationIndexing(&m_indexes, &m_changes),
      m_attributeTypes(AttributeFields::typeNames()), m_attributeFields(AttributeFields::table())
{
    m_ownPoints.watch(m_definitionRoot, m_availablePointsRoot);
    m_realizationRoot->setWatcher(&m_realizationIndexing);
    m_pluginsTimer.setSingleShot(true);
    // The first ones show at once.
    m_pluginsTimer.setInterval(0);
    connect(&m_pluginsTimer, &QTimer::timeout, this, &SourceDataManager::showArrivedPlugins);
}

SourceDataManager::~SourceDataManager()
{
    m_scan.reset();
    m_indexes.clear();
    m_ownPoints.stop();
    if (m_realizationRoot)
        m_realizationRoot->setWatcher(nullptr);
    dropOwnReading();
    for (const auto &root : { m_definitionRoot, m_availablePointsRoot, m_allDataRoot, m_fourthRoot, m_realizationRoot })
        PointTreeWidgetItem::destroySubtree(root);
    for (const QPointer<PointTreeWidgetItem> &node : qAsConst(m_retired))
        PointTreeWidgetItem::destroySubtree(node);
}

bool SourceDataManager::load(const QString &fileName)
{
    ExtensionFile::Backup::reportKept(fileName);
    return load(fileName, [&](ExtensionFile::Sink &sink) { return ExtensionFile::readFile(fileName, sink, nullptr); });
}

bool SourceDataManager::load(const QString &fileName, const QByteArray &bytes)
{
    return load(fileName, [&](ExtensionFile::Sink &sink) {
        ExtensionFile::ReadError error;
        if (ExtensionFile::read(bytes, sink, &error))
            return true;
        error.path = fileName;
        qCWarning(modelLog, "%s", qUtf8Printable(error.toString()));
        return false;
    });
}

bool SourceDataManager::load(const QString &fileName, const std::function<bool(ExtensionFile::Sink &)> &read)
{
    m_filePath = fileName;
    m_loadFailed = true;
    OpenedFile file;
    const QString directory = QFileInfo(fileName).path() + QLatin1Char('/');
    OpenedFileSink sink(directory, &file);
    if (!read(sink))
        return false;
    clearOpenedFile();
    m_realizationRoot->setBasePath(directory);
    m_dropped = file.dropped;
    adopt(file);
    m_changes.discard();
    m_loadFailed = false;
    return true;
}

bool SourceDataManager::save()
{
    const QPointer<SourceDataManager> alive(this);
    completeScan();
    return alive && saveNow();
}

bool SourceDataManager::saveNow()
{
    if (m_loadFailed) {
        qCWarning(modelLog, "%s: not written, since it could not be read", qUtf8Printable(m_filePath));
        return false;
    }
    if (!canBeWritten()) {
        qCWarning(modelLog, "Nothing was written: there is no file to write to.");
        return false;
    }
    const Definitions known = definitions();
    ModelWriter writer(m_translatableKeys, known, m_filePath);
    const QByteArray bytes = writer.write(m_definitionRoot, m_realizationRoot);
    if (bytes.isEmpty() || !ExtensionFile::saveFile(m_filePath, bytes, nullptr))
        return false;
    // The file holds what the model holds now.
    m_dropped.clear();
    for (const ModelWriter::Change &change : writer.changes())
        change.node->setOrigin(change.key, change.origin);
    return true;
}

QByteArray SourceDataManager::written(TranslatableKeys &keys, ModelWriter::Marks marks, SaveReport *report) const
{
    if (!canBeWritten())
        return {};
    const Definitions known = definitions();
    ModelWriter writer(keys, known, m_filePath, marks);
    writer.setReport(report);
    return writer.write(m_definitionRoot, m_realizationRoot);
}

QByteArray SourceDataManager::serialized() const
{
    TranslatableKeys keys = m_translatableKeys;
    return written(keys, ModelWriter::Marks::AsDeclared);
}

QByteArray SourceDataManager::recoverable() const
{
    TranslatableKeys keys = m_translatableKeys;
    return written(keys, ModelWriter::Marks::AsRead);
}

SaveReport SourceDataManager::saveReport() const
{
    SaveReport report;
    TranslatableKeys keys = m_translatableKeys;
    (void)written(keys, ModelWriter::Marks::AsDeclared, &report);
    for (const SaveReport::Remark &remark : m_dropped)
        report.add(remark);
    QStringList unread = awaitedFiles();
    for (const UnreadableFile &file : m_unreadable)
        unread.append(file.path);
    report.blame(unread);
    return report;
}

QStringList SourceDataManager::awaitedFiles() const
{
    return m_scan ? m_scan->awaited() : QStringList();
}

bool SourceDataManager::canBeWritten() const
{
    return !m_loadFailed && !m_filePath.isEmpty() && m_definitionRoot && m_realizationRoot;
}

void SourceDataManager::startScan(const QString &fileName)
{
    if (holdsScannedNodes())
        clearScan();
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
    const bool isLoaded = fileName == m_filePath && !m_loadFailed;
    const int ownIndex = isLoaded && QLatin1Char('/') + opened.fileName() == fileInEntry
        ? entries.indexOf(opened.dir().dirName())
        : -1;
    QStringList paths;
    paths.reserve(entries.size());
    for (const QString &entry : entries)
        paths.append(plugins.path() + QLatin1Char('/') + entry + fileInEntry);

    m_scan = std::make_unique<ScanSequence>(paths,
        isLoaded ? ExtensionFile::FileIdentity::of(fileName) : ExtensionFile::FileIdentity(),
        ScanSequence::Roots { m_availablePointsRoot, m_allDataRoot, m_fourthRoot },
        [this, ownIndex](int index, bool isOpened, const Announcement &announcement) {
            if (std::exchange(m_arrivingFile, index) != index)
                m_arrivingLayouts.clear();
            // By its name as well: somebody may have put a new file in the place of the one that was opened.
            receive(isOpened || index == ownIndex, announcement);
        });
    connect(m_scan.get(), &ScanSequence::unreadable, this,
        [this](const UnreadableFile &file) { m_unreadable.append(file); });
    connect(m_scan.get(), &ScanSequence::portionDelivered, this, [this] {
        for (const QString &name : qAsConst(m_arrivingLayouts))
            ++m_formatRevisions[name];
        Q_EMIT scanProgressed();
    });
    connect(m_scan.get(), &ScanSequence::finished, this, [this] {
        m_arrivingLayouts.clear();
        showArrivedPlugins();
        // Not deleted here: the sequence is the sender.
        m_scan.release()->deleteLater();
        dropOwnReading();
        Q_EMIT scanFinished();
    });
    qCInfo(scanLog, "%s: reading %d directories", qUtf8Printable(plugins.path()), entries.size());
    m_scan->start();
}

void SourceDataManager::completeScan()
{
    const QPointer<SourceDataManager> alive(this);
    if (m_scan)
        m_scan->complete(patience);
    if (!alive || !m_scan)
        return;
    const QStringList missing = m_scan->awaited();
    for (const QString &path : missing)
        qCWarning(scanLog, "%s: not waited for any longer", qUtf8Printable(path));
}

void SourceDataManager::addDefinition(PointTreeWidgetItem *parent, PointTreeWidgetItem *child)
{
    child->setPluginId(parent->pluginId());
    addTopChild(parent, child);
}

void SourceDataManager::offerDefinition(PointTreeWidgetItem *definition, PointTreeWidgetItem *above)
{
    if (definition && above)
        m_ownPoints.offer(definition, above);
}

void SourceDataManager::addRealization(PointTreeWidgetItem *node)
{
    m_realizationIndexing.enter(node);
}

PointTreeWidgetItem *SourceDataManager::definition(const QString &key) const
{
    return m_indexes[NodeIndexes::Points].first(key);
}

QVector<PointTreeWidgetItem *> SourceDataManager::data(const QString &id) const
{
    return m_indexes[NodeIndexes::Data].nodes(id);
}

PointTreeWidgetItem *SourceDataManager::dataChild(const QString &id) const
{
    return m_indexes[NodeIndexes::DataChildren].first(id);
}

QVector<PointTreeWidgetItem *> SourceDataManager::realizations() const
{
    return m_indexes[NodeIndexes::Realizations].all();
}

QVector<PointTreeWidgetItem *> SourceDataManager::layouts() const
{
    return m_indexes[NodeIndexes::Layouts].all();
}

QVector<PointTreeWidgetItem *> SourceDataManager::targetFormats() const
{
    QVector<PointTreeWidgetItem *> formats;
    const NodeIndex &targets = m_indexes[NodeIndexes::Targets];
    const QStringList names = targets.sortedKeys();
    for (const QString &name : names)
        formats.append(targets.first(name));
    return formats;
}

PointTreeWidgetItem *SourceDataManager::formatOfTarget(const QString &target) const
{
    return m_indexes[NodeIndexes::Targets].first(target);
}

PointTreeWidgetItem *SourceDataManager::siblingFormatOfTarget(const QString &target) const
{
    return m_indexes[NodeIndexes::FormatTargets].first(target);
}

bool SourceDataManager::pointHasFormat(const PointTreeWidgetItem *node) const
{
    return node && definitions().hasFormat(node->pointId());
}

QStringList SourceDataManager::childTypes(const QString &key, const QString &pointId) const
{
    return definitions().childTypes(key, pointId);
}

QString SourceDataManager::childTypes(const QString &key, const QString &pointId, bool *exists) const
{
    return definitions().childTypes(key, pointId, exists);
}

QVector<PointTreeWidgetItem *> SourceDataManager::realizationItems(const QString &key) const
{
    return childrenWithId(m_indexes[NodeIndexes::Realizations].nodes(key));
}

QVector<PointTreeWidgetItem *> SourceDataManager::realizationItems(const QString &key, const QString &kind) const
{
    QVector<PointTreeWidgetItem *> items;
    const QVector<PointTreeWidgetItem *> all = realizationItems(key);
    for (PointTreeWidgetItem *item : all) {
        if (item->kind().compare(kind, Qt::CaseInsensitive) == 0)
            items.append(item);
    }
    return items;
}

bool SourceDataManager::attributeDefinitions(const PointTreeWidgetItem *item, Definitions::Attributes *attributes) const
{
    return item && definitions().attributes(item->kind(), item->pointId(), attributes);
}

void SourceDataManager::onDefinData(QString key, PointTreeWidgetItem *item)
{
    if (item && !key.isEmpty())
        m_indexes.add(NodeIndexes::Points, key, item);
}

void SourceDataManager::layoutRelization(PointTreeWidgetItem *layout)
{
    if (!layout)
        return;
    // What stands in it is announced after it.
    m_arrivingLayouts.append(noteSiblingFormat(layout));
    m_controller->addLayout(layout);
}

void SourceDataManager::addTopChild(PointTreeWidgetItem *parent, PointTreeWidgetItem *child)
{
    if (!parent || !child)
        return;
    parent->QTreeWidgetItem::addChild(child);
    parent->addChild(child, false);
}

void SourceDataManager::addObjChild(PointTreeWidgetItem *parent, PointTreeWidgetItem *child)
{
    if (!parent || !child)
        return;
    parent->addChild(child, false);
    const QString id = child->properties().text(idKey);
    if (id.isEmpty())
        return;
    if (parent->isKind(QLatin1String("ExtData")))
        m_indexes.replace(NodeIndexes::DataChildren, id, child);
    else
        m_indexes.add(NodeIndexes::Data, id, child);
}

void SourceDataManager::allFormatRoot(PointTreeWidgetItem *item)
{
    // A file with several data sets announces the formats of the earlier ones again.
    if (!item || m_indexes[NodeIndexes::Formats].contains(item->pluginId(), item))
        return;
    m_indexes.add(NodeIndexes::Formats, item->pluginId(), item);
    noteSiblingFormat(item);
    const QString target = item->property(QStringLiteral("target")).toString();
    if (PointTreeWidgetItem *known = target.isEmpty() ? nullptr : siblingFormatOfTarget(target)) {
        m_formatMerger.merge(known, item);
        return;
    }
    if (!target.isEmpty())
        m_indexes.add(NodeIndexes::FormatTargets, target, item);
    m_controller->addFormatRoot(item);
}

QString SourceDataManager::noteSiblingFormat(PointTreeWidgetItem *root)
{
    const QString name = OwnRealizations::tabName(root);
    if (!name.isEmpty()) {
        m_indexes.add(NodeIndexes::SiblingFormats, name, root);
        ++m_formatRevisions[name];
    }
    return name;
}

void SourceDataManager::receive(bool ownFile, const Announcement &announcement)
{
    if (ownFile) {
        if (announcement.parent == m_availablePointsRoot && m_ownPoints.waiting() > 0) {
            showArrivedPlugins();
            m_ownPoints.place();
        }
        if (announcement.parent == m_availablePointsRoot || announcement.parent == m_allDataRoot)
            m_ownReading.append(announcement.node);
        else if (announcement.kind == Announcement::AddObjChild)
            announcement.parent->addChild(announcement.node, false);
        return;
    }
    switch (announcement.kind) {
    case Announcement::DefinData:
        onDefinData(announcement.key, announcement.node);
        break;
    case Announcement::AddTopChild:
        if (announcement.parent == m_availablePointsRoot)
            addPlugin(announcement.node);
        else
            addTopChild(announcement.parent, announcement.node);
        break;
    case Announcement::AddObjChild:
        addObjChild(announcement.parent, announcement.node);
        break;
    case Announcement::LayoutRelization:
        layoutRelization(announcement.node);
        break;
    case Announcement::AllFormatRoot:
        allFormatRoot(announcement.node);
        break;
    }
}

void SourceDataManager::followRoot()
{
    m_realizationRoot->setProperties(m_definitionRoot->properties());
    const QString id = m_definitionRoot->properties().text(idKey);
    if (m_realizationRoot->text(0) == id)
        return;
    m_pluginId = id;
    m_realizationRoot->setText(0, id);
    m_definitionRoot->setText(0, id);
    for (PointObject *set : m_realizationRoot->children())
        m_realizationIndexing.describe(set->item());
}

void SourceDataManager::addPlugin(PointTreeWidgetItem *plugin)
{
    if (!plugin || !m_availablePointsRoot)
        return;
    // The opened file's own stand at the end until the scan comes to them, so that nothing that the user has selected
    // there ever moves.
    m_availablePointsRoot->insertChild(m_availablePointsRoot->children().size() - m_ownPoints.waiting(), plugin);
    m_arrivedPlugins.append(plugin);
    if (!m_pluginsTimer.isActive())
        m_pluginsTimer.start();
}

void SourceDataManager::showArrivedPlugins()
{
    const auto arrived = std::exchange(m_arrivedPlugins, {});
    m_pluginsTimer.stop();
    m_pluginsTimer.setInterval(pauseBetweenRowsMs);
    QList<QTreeWidgetItem *> rows;
    for (const QPointer<PointTreeWidgetItem> &plugin : arrived) {
        if (plugin)
            rows.append(plugin);
    }
    if (rows.isEmpty() || !m_availablePointsRoot)
        return;
    m_availablePointsRoot->insertChildren(m_availablePointsRoot->childCount() - m_ownPoints.waiting(), rows);
}

void SourceDataManager::adopt(OpenedFile &file)
{
    m_pluginId = file.pluginId;
    for (PointTreeWidgetItem *root : { m_definitionRoot.data(), m_realizationRoot.data() }) {
        root->setProperties(file.rootProperties);
        root->setText(0, root->property(idKey).toString());
        root->setKind(file.rootTag);
    }
    for (PointTreeWidgetItem *set : qAsConst(file.definitionSets)) {
        m_definitionRoot->setPluginId(m_definitionRoot->property(idKey).toString());
        m_definitionRoot->addChild(set, false);
    }
    m_definitionRoot->addChildren(file.pointRows);
    for (PointTreeWidgetItem *set : qAsConst(file.dataSets)) {
        m_realizationRoot->addChild(set, false);
        m_realizationRoot->QTreeWidgetItem::addChild(set);
    }
    file.release();
}

void SourceDataManager::clearOpenedFile()
{
    m_ownPoints.takeBackAll();
    for (const NodeIndexes::Name name : { NodeIndexes::Targets, NodeIndexes::Realizations, NodeIndexes::Layouts })
        m_indexes.clear(name);
    // The points' rows hang under the root, not under the sets that go.
    m_definitionRoot->takeChildren();
    for (PointTreeWidgetItem *root : { m_definitionRoot.data(), m_realizationRoot.data() }) {
        const QList<PointObject *> children = root->children();
        for (PointObject *child : children)
            PointTreeWidgetItem::destroySubtree(child->item());
    }
}

bool SourceDataManager::holdsScannedNodes() const
{
    const auto isFilled = [this](NodeIndexes::Name name) { return m_indexes[name].size() > 0; };
    const int foreign
        = m_availablePointsRoot ? m_availablePointsRoot->children().size() - m_ownPoints.pluginCount() : 0;
    return m_scan || foreign > 0 || m_ownPoints.placed() > 0 || (m_allDataRoot && !m_allDataRoot->children().isEmpty())
        || isFilled(NodeIndexes::DataChildren) || isFilled(NodeIndexes::Data) || isFilled(NodeIndexes::Formats)
        || isFilled(NodeIndexes::SiblingFormats);
}

void SourceDataManager::clearScan()
{
    m_scan.reset();
    m_unreadable.clear();
    dropOwnReading();
    m_arrivedPlugins.clear();
    m_pluginsTimer.stop();
    m_pluginsTimer.setInterval(0);
    m_formatMerger.clear();
    for (const NodeIndexes::Name name : { NodeIndexes::Points, NodeIndexes::DataChildren, NodeIndexes::Data,
             NodeIndexes::FormatTargets, NodeIndexes::Formats, NodeIndexes::SiblingFormats })
        m_indexes.clear(name);
    m_arrivingLayouts.clear();
    m_formatRevisions.clear();
    m_ownPoints.takeBackAll();
    for (PointTreeWidgetItem *root : { m_availablePointsRoot.data(), m_allDataRoot.data() }) {
        const QList<PointObject *> children = root ? root->children() : QList<PointObject *>();
        for (PointObject *child : children)
            PointTreeWidgetItem::destroySubtree(child->item());
    }
    if (m_definitionRoot)
        m_ownPoints.offerAll();
}

void SourceDataManager::dropOwnReading()
{
    const QVector<QPointer<PointTreeWidgetItem>> sets = std::exchange(m_ownReading, {});
    for (const QPointer<PointTreeWidgetItem> &set : sets)
        PointTreeWidgetItem::destroySubtree(set);
}

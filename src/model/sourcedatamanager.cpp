#include "sourcedatamanager.h"

#include "attributefields.h"
#include "controller.h"
#include "extensionfile/backup.h"
#include "extensionfile/reader.h"
#include "extensionfile/safesave.h"
#include "model/keys.h"
#include "modellog.h"
#include "openedfilesink.h"
#include "pointtreewidgetitem.h"
#include "subtree.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <utility>

namespace {

QString rootText(const char *text)
{
    return QCoreApplication::translate("SourceDataManager", text);
}

} // namespace

SourceDataManager::SourceDataManager(const QString &filePath, QObject *parent)
    : QObject(parent), m_controller(Controller::instance()), m_filePath(filePath),
      m_definitionRoot(new PointTreeWidgetItem(rootText(QT_TRANSLATE_NOOP("SourceDataManager", "Defintion")))),
      m_availablePointsRoot(new PointTreeWidgetItem(rootText(QT_TRANSLATE_NOOP("SourceDataManager", "Realization")))),
      m_allDataRoot(new PointTreeWidgetItem(QString())), m_fourthRoot(new PointTreeWidgetItem(QString())),
      m_realizationRoot(new PointTreeWidgetItem(QString())), m_problems(this),
      m_ownPoints(&m_indexes, &m_changes, [this] { followRoot(); }), m_realizationIndexing(&m_indexes, &m_changes),
      m_ownStates(m_definitionRoot, m_realizationRoot), m_siblings(this, &m_indexes, &m_ownPoints),
      m_attributeTypes(AttributeFields::typeNames()), m_attributeFields(AttributeFields::table())
{
    m_ownPoints.watch(m_definitionRoot, m_availablePointsRoot);
    m_realizationRoot->setWatcher(&m_realizationIndexing);
    connect(&m_siblings, &SiblingScan::progressed, this, &SourceDataManager::scanProgressed);
    connect(&m_siblings, &SiblingScan::finished, this, &SourceDataManager::scanFinished);
}

SourceDataManager::~SourceDataManager()
{
    m_siblings.clear();
    m_indexes.clear();
    m_ownPoints.stop();
    if (m_realizationRoot)
        m_realizationRoot->setWatcher(nullptr);
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
    QStringList unread = m_siblings.awaitedFiles();
    for (const UnreadableFile &file : m_siblings.unreadableFiles())
        unread.append(file.path);
    report.blame(unread);
    return report;
}

void SourceDataManager::startScan(const QString &fileName)
{
    if (holdsScannedNodes())
        clearScan();
    m_problems.scanStarted();
    m_siblings.start(fileName, fileName == m_filePath && !m_loadFailed);
}

void SourceDataManager::completeScan()
{
    m_siblings.complete();
}

OwnRealizations SourceDataManager::ownRealizations() const
{
    return { &m_indexes, m_realizationRoot, m_allDataRoot };
}

OwnEdits SourceDataManager::ownEdits()
{
    return { &m_indexes, m_realizationRoot, ownRealizations() };
}

void SourceDataManager::retire(PointTreeWidgetItem *node)
{
    if (!node)
        return;
    if (PointTreeWidgetItem *above = node->parentItem())
        above->detachChild(node);
    node->takeRow();
    m_retired.append(node);
    forSubtree(node, [this](PointTreeWidgetItem *item) { m_indexes.forget(item); });
}

bool SourceDataManager::canBeWritten() const
{
    return !m_loadFailed && !m_filePath.isEmpty() && m_definitionRoot && m_realizationRoot;
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

void SourceDataManager::onDefinData(const QString &key, PointTreeWidgetItem *item)
{
    if (item && !key.isEmpty())
        m_indexes.add(NodeIndexes::Points, key, item);
}

void SourceDataManager::layoutRelization(PointTreeWidgetItem *layout)
{
    if (!layout)
        return;
    m_siblings.noteFormat(enterSiblingFormat(layout), true);
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
    m_siblings.noteFormat(enterSiblingFormat(item), false);
    const QString target = item->property(targetKey).toString();
    if (PointTreeWidgetItem *known = target.isEmpty() ? nullptr : m_indexes[NodeIndexes::FormatTargets].first(target)) {
        m_formatMerger.merge(known, item);
        return;
    }
    if (!target.isEmpty())
        m_indexes.add(NodeIndexes::FormatTargets, target, item);
    m_controller->addFormatRoot(item);
}

QString SourceDataManager::enterSiblingFormat(PointTreeWidgetItem *root)
{
    const QString name = OwnRealizations::tabName(root);
    if (!name.isEmpty())
        m_indexes.add(NodeIndexes::SiblingFormats, name, root);
    return name;
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

void SourceDataManager::adopt(OpenedFile &file)
{
    for (PointTreeWidgetItem *root : { m_definitionRoot.data(), m_realizationRoot.data() }) {
        root->setProperties(file.rootProperties);
        root->setText(0, root->property(idKey).toString());
        root->setKind(file.rootTag);
    }
    m_pluginId = file.pluginId;
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
    return m_siblings.isRunning() || foreign > 0 || m_ownPoints.placed() > 0
        || (m_allDataRoot && !m_allDataRoot->children().isEmpty()) || isFilled(NodeIndexes::DataChildren)
        || isFilled(NodeIndexes::Data) || isFilled(NodeIndexes::Formats) || isFilled(NodeIndexes::SiblingFormats);
}

void SourceDataManager::clearScan()
{
    m_siblings.clear();
    m_formatMerger.clear();
    for (const NodeIndexes::Name name : { NodeIndexes::Points, NodeIndexes::DataChildren, NodeIndexes::Data,
             NodeIndexes::FormatTargets, NodeIndexes::Formats, NodeIndexes::SiblingFormats })
        m_indexes.clear(name);
    m_ownPoints.takeBackAll();
    for (PointTreeWidgetItem *root : { m_availablePointsRoot.data(), m_allDataRoot.data() }) {
        const QList<PointObject *> children = root ? root->children() : QList<PointObject *>();
        for (PointObject *child : children)
            PointTreeWidgetItem::destroySubtree(child->item());
    }
    if (m_definitionRoot)
        m_ownPoints.offerAll();
}

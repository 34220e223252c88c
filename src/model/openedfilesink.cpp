#include "openedfilesink.h"

#include "model/keys.h"
#include "nodeattributes.h"
#include "pointtreewidgetitem.h"

OpenedFile::~OpenedFile()
{
    for (PointTreeWidgetItem *set : qAsConst(definitionSets))
        PointTreeWidgetItem::destroySubtree(set);
    for (PointTreeWidgetItem *set : qAsConst(dataSets))
        PointTreeWidgetItem::destroySubtree(set);
}

void OpenedFile::release()
{
    definitionSets.clear();
    dataSets.clear();
    pointRows.clear();
}

OpenedFileSink::OpenedFileSink(const QString &basePath, OpenedFile *file) : m_basePath(basePath), m_file(file) { }

void OpenedFileSink::startElement(
    const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &)
{
    if (m_ignoredDepth > 0) {
        ++m_ignoredDepth;
        noteDropped(name);
        return;
    }
    if (m_levels.isEmpty()) {
        startRoot(name, attributes);
        m_levels.append({ Root, nullptr });
        return;
    }
    const Level above = m_levels.last();
    switch (above.side) {
    case Root: {
        const bool definition = name == QLatin1String("ExtPointSet");
        if (!definition && name != QLatin1String("ExtDataSet")) {
            ++m_ignoredDepth;
            noteDropped(name);
            break;
        }
        PointTreeWidgetItem *set = newNode(QString());
        set->setKind(name);
        set->setProperties(
            definition ? NodeAttributes::withLowerNames(attributes) : NodeAttributes::asWritten(attributes));
        if (definition)
            set->setDefinitionSide();
        (definition ? m_file->definitionSets : m_file->dataSets).append(set);
        m_levels.append({ definition ? DefinitionSide : RealizationSide, set });
        break;
    }
    case DefinitionSide:
        m_levels.append({ DefinitionSide, startDefinition(above.node, name, attributes) });
        break;
    case RealizationSide:
        m_levels.append({ RealizationSide, startRealization(above.node, name, attributes) });
        break;
    }
}

void OpenedFileSink::endElement()
{
    if (m_ignoredDepth > 0)
        --m_ignoredDepth;
    else
        m_levels.removeLast();
}

void OpenedFileSink::noteDropped(const QString &tag)
{
    const QString plain = tag.mid(tag.lastIndexOf(QLatin1Char(':')) + 1);
    const bool isSet = plain.compare(QLatin1String("ExtPointSet"), Qt::CaseInsensitive) == 0
        || plain.compare(QLatin1String("ExtDataSet"), Qt::CaseInsensitive) == 0;
    // What stands in a dropped element goes with it; only a set in there is worth a word of its own.
    if (isSet || m_ignoredDepth == 1)
        m_file->dropped.append({ isSet ? SaveReport::Kind::SetDropped : SaveReport::Kind::Dropped, tag, {}, {},
            QStringLiteral("<%1>").arg(tag) });
}

void OpenedFileSink::aside(ExtensionFile::Aside what, const QString &text)
{
    using ExtensionFile::Aside;
    // It goes with the element that it stands in.
    if (m_ignoredDepth > 0)
        return;
    const auto drop = [&](const QString &as) { m_file->dropped.append({ SaveReport::Kind::Dropped, {}, {}, {}, as }); };
    switch (what) {
    case Aside::Comment:
        drop(QStringLiteral("<!-- %1 -->").arg(text));
        break;
    case Aside::Text:
        drop(QLatin1Char('"') + text + QLatin1Char('"'));
        break;
    case Aside::Instruction:
        drop(QStringLiteral("<?%1?>").arg(text));
        break;
    case Aside::DocumentType:
        drop(QStringLiteral("<!DOCTYPE>"));
        break;
    case Aside::LooksLikeUtf8:
        m_file->dropped.append({ SaveReport::Kind::LooksLikeUtf8, {}, {}, {}, {} });
        break;
    }
}

void OpenedFileSink::startRoot(const QString &tag, const ExtensionFile::Attributes &attributes)
{
    m_file->rootTag = tag;
    m_file->rootProperties = NodeAttributes::asWritten(attributes);
    for (const PropertyHash::Entry &entry : qAsConst(m_file->rootProperties)) {
        if (entry.key.compare(idKey, Qt::CaseInsensitive) == 0)
            m_file->pluginId = entry.value.toString();
    }
}

PointTreeWidgetItem *OpenedFileSink::startDefinition(
    PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes)
{
    const PropertyHash properties = NodeAttributes::withLowerNames(attributes);
    PointTreeWidgetItem *node = newNode(properties.text(nameKey));
    node->setProperties(properties);
    node->setKind(tag);
    parent->addChild(node, false);
    node->setBasePath(m_basePath);
    if (node->isKind(QLatin1String("ExtPoint")))
        m_file->pointRows.append(node);
    else if (node->isKind(QLatin1String("SubExtPoint")))
        parent->QTreeWidgetItem::addChild(node);
    return node;
}

void OpenedFileSink::describeDefinition(
    PointTreeWidgetItem *node, const PointTreeWidgetItem &parent, const QString &pluginId)
{
    const QString id = node->properties().text(idKey);
    node->QTreeWidgetItem::setText(0, node->properties().text(nameKey));
    node->setPointId(id.isEmpty() ? parent.pointId() : id);
    node->setPluginId(pluginId);
}

PointTreeWidgetItem *OpenedFileSink::startRealization(
    PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes)
{
    PointTreeWidgetItem *node = newNode(QString());
    node->setProperties(NodeAttributes::withoutTranslationMarks(attributes));
    node->setKind(tag);
    parent->addChild(node, false);
    parent->QTreeWidgetItem::addChild(node);
    return node;
}

void OpenedFileSink::describeRealization(
    PointTreeWidgetItem *node, const PointTreeWidgetItem &parent, const QString &pluginId, const QString &basePath)
{
    const QString id = node->properties().text(idKey);
    node->QTreeWidgetItem::setText(0, id.isEmpty() ? node->kind() : id);
    node->setPointId(node->isKind(QLatin1String("ExtData")) ? id : parent.pointId());
    node->setPluginId(pluginId);
    node->setHasFormat(parent.hasFormat() || node->isKind(QLatin1String("format")));
    node->setBasePath(basePath);
}

PointTreeWidgetItem *OpenedFileSink::newNode(const QString &text)
{
    return new PointTreeWidgetItem(text);
}

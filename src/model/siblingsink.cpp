#include "siblingsink.h"

#include "model/keys.h"
#include "nodeattributes.h"
#include "pointtreewidgetitem.h"

namespace {

QString inheritedPluginId(PointTreeWidgetItem *parent)
{
    return parent->pluginId().isEmpty() ? parent->property(QStringLiteral("filename")).toString() : parent->pluginId();
}

bool isPoint(const QString &tag)
{
    return tag == QLatin1String("ExtPoint");
}

bool isSubPoint(const QString &tag)
{
    return tag == QLatin1String("SubExtPoint");
}

constexpr int nodesPerRoom = 128;

/// The heap of a pool thread grows page by page, each with a call of the system that every other thread waits for: a
/// fifth of a scan. So it is made to grow for many nodes at once. Nothing is kept, and nothing happens where there is
/// room already.
void growHeap()
{
    // Below the 128 KiB from which the allocator maps memory apart.
    constexpr std::size_t room = 96 * 1024;
    void *const volatile grown = std::malloc(room);
    std::free(grown);
}

} // namespace

SiblingSink::SiblingSink(const QString &basePath, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot,
    EarlierFormats earlierFormats)
    : m_basePath(basePath), m_pointsRoot(pointsRoot), m_dataRoot(dataRoot), m_file(std::make_unique<ScannedFile>()),
      m_earlierFormats(earlierFormats)
{ }

SiblingSink::~SiblingSink() = default;

void SiblingSink::fileRead()
{
    if (m_whenRead)
        m_whenRead();
}

void SiblingSink::startElement(
    const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &)
{
    if (m_ignoredDepth > 0) {
        ++m_ignoredDepth;
        return;
    }
    for (const ExtensionFile::Attribute &attribute : attributes)
        m_textSize += attribute.value.size();
    if (m_levels.isEmpty()) {
        m_rootProperties = NodeAttributes::asWritten(attributes);
        m_levels.append({ Root, nullptr });
        return;
    }
    const Level above = m_levels.last();
    switch (above.side) {
    case Root:
        if (name == QLatin1String("ExtPointSet"))
            m_levels.append({ DefinitionSide, startSet(DefinitionSide) });
        else if (name == QLatin1String("ExtDataSet"))
            m_levels.append({ RealizationSide, startSet(RealizationSide) });
        else
            ++m_ignoredDepth;
        break;
    case DefinitionSide:
        startDefinition(name, NodeAttributes::asWritten(attributes));
        break;
    case RealizationSide:
        m_levels.append({ RealizationSide, startRealization(above.node, name, attributes) });
        break;
    }
}

void SiblingSink::endElement()
{
    if (m_ignoredDepth > 0) {
        --m_ignoredDepth;
        return;
    }
    const Level level = m_levels.takeLast();
    if (level.side == RealizationSide && m_levels.size() == 1) {
        for (PointTreeWidgetItem *format : qAsConst(m_formats))
            announce(Announcement::AllFormatRoot, nullptr, format, QString());
        if (m_earlierFormats == EarlierFormats::Omit)
            m_formats.clear();
    }
}

std::unique_ptr<ScannedFile> SiblingSink::take(QThread *thread)
{
    for (PointTreeWidgetItem *node : qAsConst(m_nodes))
        node->moveToThread(thread);
    m_nodes.clear();
    return std::move(m_file);
}

PointTreeWidgetItem *SiblingSink::startSet(Side side)
{
    const QString id = m_rootProperties.text(idKey);
    PointTreeWidgetItem *set = newNode(id, m_rootProperties);
    set->setPluginId(id);
    if (side == DefinitionSide) {
        set->setDefinitionSide();
        announce(Announcement::AddTopChild, m_pointsRoot, set, QString());
    } else {
        announce(Announcement::AddObjChild, m_dataRoot, set, QString());
    }
    return set;
}

void SiblingSink::startDefinitions(const PropertyHash &rootProperties)
{
    m_rootProperties = rootProperties;
    m_levels = { { Root, nullptr } };
    m_levels.append({ DefinitionSide, startSet(DefinitionSide) });
}

void SiblingSink::startDefinition(const QString &tag, const PropertyHash &properties)
{
    PointTreeWidgetItem *parent = m_levels.last().node;
    PointTreeWidgetItem *node = newNode(QString(), properties);
    node->setKind(tag);
    parent->addChild(node, false);
    describe(node, parent);
    if (isPoint(tag) || isSubPoint(tag)) {
        announce(Announcement::DefinData, nullptr, node, indexKey(tag, node->properties()));
        announce(Announcement::AddTopChild, parent, node, QString());
    }
    m_levels.append({ DefinitionSide, node });
}

void SiblingSink::describe(PointTreeWidgetItem *node, PointTreeWidgetItem *parent)
{
    node->QTreeWidgetItem::setText(0, node->properties().text(nameKey));
    node->setPluginId(inheritedPluginId(parent));
    if (isPoint(node->kind())) {
        node->setPointId(node->properties().text(idKey));
    } else if (isSubPoint(node->kind())) {
        node->setHasFormat(parent->property(QStringLiteral("hasformat")).toBool());
        node->setPointId(parent->property(idKey).toString());
    }
}

QString SiblingSink::indexKey(const QString &tag, const PropertyHash &properties)
{
    if (isPoint(tag))
        return properties.text(idKey);
    return isSubPoint(tag) ? properties.text(QStringLiteral("key")).toLower() : QString();
}

void SiblingSink::resume(PointTreeWidgetItem *parent)
{
    m_levels = { { Root, nullptr }, { DefinitionSide, parent } };
}

PointTreeWidgetItem *SiblingSink::startRealization(
    PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes)
{
    const PropertyHash properties = NodeAttributes::withoutTranslationMarks(attributes);
    const QString id = properties.text(idKey);
    PointTreeWidgetItem *node = newNode(id, properties);
    node->setKind(tag);
    announce(Announcement::AddObjChild, parent, node, QString());
    node->setPluginId(inheritedPluginId(parent));
    node->setBasePath(m_basePath);
    if (tag == QLatin1String("ExtData"))
        node->setPointId(id);
    if (!parent->pointId().isEmpty())
        node->setPointId(parent->pointId());
    if (node->isKind(QLatin1String("Format")))
        m_formats.append(node);
    if (node->isKind(QLatin1String("Layout")))
        announce(Announcement::LayoutRelization, nullptr, node, QString());
    return node;
}

PointTreeWidgetItem *SiblingSink::newNode(const QString &text, const PropertyHash &properties)
{
    if (m_nodes.size() % nodesPerRoom == 0)
        growHeap();
    auto *node = new PointTreeWidgetItem(text);
    node->setProperties(properties);
    m_nodes.append(node);
    return node;
}

void SiblingSink::announce(
    Announcement::Kind kind, PointTreeWidgetItem *parent, PointTreeWidgetItem *node, const QString &key)
{
    m_file->append({ kind, parent, node, key });
}

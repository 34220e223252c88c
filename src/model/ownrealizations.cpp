#include "ownrealizations.h"

#include "definitions.h"
#include "nodeindexes.h"
#include "pointtreewidgetitem.h"

#include <algorithm>

namespace {

const QString idKey = QStringLiteral("id");
const QLatin1String extData("ExtData");

QString valueOf(const PointTreeWidgetItem *node, const QString &key)
{
    return node->properties().value(key).toString();
}

bool isRecord(const PointTreeWidgetItem *node)
{
    const PointTreeWidgetItem *above = node->parentItem();
    return above && above->isKind(extData);
}

bool isFormatOrLayout(const PointTreeWidgetItem *node)
{
    return node->isKind(QLatin1String("Format")) || node->isKind(QLatin1String("Layout"));
}

void collectFormats(const PointTreeWidgetItem *node, OwnRealizations::Nodes *formats)
{
    for (PointObject *child : node->children()) {
        PointTreeWidgetItem *item = child->item();
        if (isFormatOrLayout(item))
            formats->append(item);
        else if (!item->children().isEmpty())
            collectFormats(item, formats);
    }
}

PointObject *top(PointObject *node)
{
    while (node->parent())
        node = node->parent();
    return node;
}

} // namespace

OwnRealizations::OwnRealizations(const NodeIndexes *indexes, PointTreeWidgetItem *root, PointTreeWidgetItem *siblings)
    : m_indexes(indexes), m_root(root), m_siblings(siblings)
{ }

OwnRealizations::Nodes OwnRealizations::withId(const QString &id) const
{
    return m_indexes && !id.isEmpty() ? (*m_indexes)[NodeIndexes::Realizations].nodes(id) : Nodes();
}

PointTreeWidgetItem *OwnRealizations::record(const QString &id) const
{
    return m_indexes && !id.isEmpty() ? (*m_indexes)[NodeIndexes::Realizations].find(id, isRecord) : nullptr;
}

PointTreeWidgetItem *OwnRealizations::anyRecord(const QString &id) const
{
    PointTreeWidgetItem *own = record(id);
    if (own || !m_indexes || id.isEmpty())
        return own;
    return (*m_indexes)[NodeIndexes::DataChildren].first(id);
}

OwnRealizations::Nodes OwnRealizations::holders(const QString &pointId) const
{
    Nodes nodes = withId(pointId);
    nodes.erase(std::remove_if(
                    nodes.begin(), nodes.end(), [](const PointTreeWidgetItem *node) { return !node->isKind(extData); }),
        nodes.end());
    return nodes;
}

OwnRealizations::Nodes OwnRealizations::recordsOf(const PointTreeWidgetItem *definition) const
{
    if (!definition)
        return {};
    const bool isSubPoint = definition->isKind(QLatin1String("SubExtPoint"));
    if (!isSubPoint && !definition->isKind(QLatin1String("ExtPoint")))
        return {};
    // A point is found by its "key", a sub point by its "id". They have those rarely.
    const QString byOddKey = valueOf(definition, isSubPoint ? idKey : QStringLiteral("key"));
    Nodes nodes = withId(byOddKey);
    const bool everyKind = !isSubPoint || !nodes.isEmpty();
    if (nodes.isEmpty())
        nodes = withId(isSubPoint ? definition->pointId() : valueOf(definition, idKey));
    const QString kind = everyKind ? QString() : Definitions::realizedKind(definition);
    Nodes records;
    for (const PointTreeWidgetItem *node : qAsConst(nodes)) {
        for (PointObject *child : node->children()) {
            PointTreeWidgetItem *record = child->item();
            if (!valueOf(record, idKey).isEmpty()
                && (everyKind || record->kind().compare(kind, Qt::CaseInsensitive) == 0))
                records.append(record);
        }
    }
    return records;
}

int OwnRealizations::references(const QString &id) const
{
    if (!m_indexes || id.isEmpty())
        return 0;
    const Nodes own = withId(id);
    const auto isReference = [](const PointTreeWidgetItem *node) { return !isRecord(node); };
    return int(std::count_if(own.cbegin(), own.cend(), isReference)) + (*m_indexes)[NodeIndexes::Data].nodes(id).size();
}

OwnRealizations::Nodes OwnRealizations::formats(const QString &name) const
{
    if (!m_root || name.isEmpty())
        return {};
    Nodes all;
    collectFormats(m_root, &all);
    Nodes found;
    for (PointTreeWidgetItem *format : qAsConst(all)) {
        if (valueOf(format, QStringLiteral("target")) == name)
            found.append(format);
    }
    for (PointTreeWidgetItem *format : qAsConst(all)) {
        if (valueOf(format, idKey) == name && !found.contains(format))
            found.append(format);
    }
    return found;
}

OwnRealizations::Nodes OwnRealizations::siblingFormats(const QString &name) const
{
    return m_indexes && !name.isEmpty() ? (*m_indexes)[NodeIndexes::SiblingFormats].nodes(name) : Nodes();
}

bool OwnRealizations::isForeign(PointTreeWidgetItem *node) const
{
    return node && m_siblings && top(node->master()) == m_siblings;
}

bool OwnRealizations::isOwn(PointTreeWidgetItem *node) const
{
    return node && m_root && top(node->master()) == m_root;
}

QString OwnRealizations::tabName(const PointTreeWidgetItem *root)
{
    const QString id = valueOf(root, idKey);
    const QString target = valueOf(root, QStringLiteral("target"));
    const bool idFirst = root->isKind(QLatin1String("Layout"));
    const QString &first = idFirst ? id : target;
    return first.isEmpty() ? (idFirst ? target : id) : first;
}

#include "ownrealizations.h"

#include "definitions.h"
#include "documentorder.h"
#include "model/keys.h"
#include "nodeindexes.h"
#include "pointtreewidgetitem.h"
#include "realizationindexing.h"

#include <algorithm>
#include <iterator>

namespace {

const QLatin1String extData("ExtData");

QString valueOf(const PointTreeWidgetItem *node, const QString &key)
{
    return node->properties().value(key).toString();
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

bool OwnRealizations::isRecord(const PointTreeWidgetItem *node)
{
    const PointTreeWidgetItem *above = node->parentItem();
    return above && above->isKind(extData);
}

bool OwnRealizations::isRoot(const PointTreeWidgetItem *node)
{
    return node->isKind(QLatin1String("Format")) || node->isKind(QLatin1String("Layout"));
}

bool OwnRealizations::isEntry(const PointTreeWidgetItem *node)
{
    if (isRecord(node) || isRoot(node))
        return false;
    for (const PointTreeWidgetItem *above = node->parentItem(); above; above = above->parentItem()) {
        if (isRoot(above))
            return true;
    }
    return false;
}

OwnRealizations::Nodes OwnRealizations::all() const
{
    return m_indexes ? (*m_indexes)[NodeIndexes::Realizations].all() : Nodes();
}

OwnRealizations::Nodes OwnRealizations::items(const QString &key, const QString &kind) const
{
    Nodes found;
    const Nodes nodes = m_indexes ? (*m_indexes)[NodeIndexes::Realizations].nodes(key) : Nodes();
    for (const PointTreeWidgetItem *node : nodes) {
        for (PointObject *child : node->children()) {
            PointTreeWidgetItem *item = child->item();
            if (item && !item->property(idKey).toString().isEmpty()
                && (kind.isEmpty() || item->kind().compare(kind, Qt::CaseInsensitive) == 0))
                found.append(item);
        }
    }
    return found;
}

OwnRealizations::Nodes OwnRealizations::tabRoots() const
{
    if (!m_indexes)
        return {};
    Nodes roots = (*m_indexes)[NodeIndexes::Layouts].all();
    const NodeIndex &targets = (*m_indexes)[NodeIndexes::Targets];
    const QStringList names = targets.sortedKeys();
    for (const QString &name : names)
        roots.append(targets.first(name));
    return roots;
}

OwnRealizations::Nodes OwnRealizations::withId(const QString &id) const
{
    return m_indexes && !id.isEmpty() ? (*m_indexes)[NodeIndexes::Realizations].nodes(id) : Nodes();
}

PointTreeWidgetItem *OwnRealizations::record(const QString &id) const
{
    // A node without "id" stands under its tag, and nobody refers to it.
    const auto isMeant
        = [&id](const PointTreeWidgetItem *node) { return isRecord(node) && valueOf(node, idKey) == id; };
    return m_indexes && !id.isEmpty() ? (*m_indexes)[NodeIndexes::Realizations].find(id, isMeant) : nullptr;
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

OwnRealizations::Nodes OwnRealizations::references(const QString &id) const
{
    Nodes nodes;
    const Nodes all = withId(id);
    for (PointTreeWidgetItem *node : all) {
        // Without an "id" a node stands under its kind, which may be the id of another.
        if (isEntry(node) && !valueOf(node, idKey).isEmpty())
            nodes.append(node);
    }
    return nodes;
}

OwnRealizations::Nodes OwnRealizations::formats(const QString &name) const
{
    if (!m_indexes || name.isEmpty())
        return {};
    Nodes byTarget;
    Nodes byId;
    Nodes recorded;
    const auto sort = [&](const Nodes &nodes) {
        for (PointTreeWidgetItem *node : nodes) {
            const bool targets = valueOf(node, targetKey) == name;
            if (!isRoot(node) || (!targets && valueOf(node, idKey) != name))
                continue;
            Nodes &part = RealizationIndexing::isRecordedFormat(node) ? recorded : targets ? byTarget : byId;
            if (!part.contains(node))
                part.append(node);
        }
    };
    sort((*m_indexes)[NodeIndexes::Targets].nodes(name));
    sort((*m_indexes)[NodeIndexes::Layouts].nodes(QString()));
    std::sort(byTarget.begin(), byTarget.end(), comesBefore);
    sort(withId(name));
    std::sort(byId.begin(), byId.end(), comesBefore);
    std::sort(recorded.begin(), recorded.end(), comesBefore);

    Nodes all = byTarget + byId + recorded;
    // A root that goes by its "id" brings along those that have the same target and no place of their own.
    for (const PointTreeWidgetItem *root : qAsConst(byId)) {
        const QString target = valueOf(root, targetKey);
        const Nodes others = target.isEmpty() ? Nodes() : (*m_indexes)[NodeIndexes::Targets].nodes(target);
        if (others.value(0) != root)
            continue;
        for (PointTreeWidgetItem *other : others) {
            if (valueOf(other, targetKey) == target && !all.contains(other))
                all.append(other);
        }
    }
    const auto isPartOfAnother = [&all](const PointTreeWidgetItem *node) {
        for (PointTreeWidgetItem *above = node->parentItem(); above; above = above->parentItem()) {
            if (all.contains(above))
                return true;
        }
        return false;
    };
    Nodes found;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(found),
        [&](const PointTreeWidgetItem *node) { return !isPartOfAnother(node); });
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
    const QString target = valueOf(root, targetKey);
    const bool idFirst = root->isKind(QLatin1String("Layout"));
    const QString &first = idFirst ? id : target;
    return first.isEmpty() ? (idFirst ? target : id) : first;
}

#include "modelsearch.h"

#include "definitions.h"
#include "model/keys.h"
#include "ownrealizations.h"
#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"
#include "subtree.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

const QString keyKey = QStringLiteral("key");
const QString textKey = QStringLiteral("text");
const QString titleKey = QStringLiteral("title");

const QLatin1String extPoint("ExtPoint");
const QLatin1String subExtPoint("SubExtPoint");
const QLatin1String extData("ExtData");

bool isSearched(const QString &key)
{
    const QString *const searched[] { &idKey, &nameKey, &keyKey, &textKey, &titleKey };
    return std::any_of(std::begin(searched), std::end(searched), [&key](const QString *candidate) {
        return key.size() == candidate->size() && key.compare(*candidate, Qt::CaseInsensitive) == 0;
    });
}

/// The records that @p holder has, of a sub point those of its kind alone.
void addRecords(const PointTreeWidgetItem *holder, const QString &kind, ModelSearch::Nodes *nodes)
{
    for (PointObject *child : holder->children()) {
        PointTreeWidgetItem *record = child->item();
        if (record && (kind.isEmpty() || record->kind().compare(kind, Qt::CaseInsensitive) == 0))
            nodes->append(record);
    }
}

} // namespace

ModelSearch::ModelSearch(const SourceDataManager &manager, const QString &needle) : m_needle(needle)
{
    for (PointTreeWidgetItem *top : { manager.definitionRoot(), manager.realizationRoot() })
        m_parts.append({ top, true });
    const auto own = manager.ownPlugins();
    for (const PointTreeWidgetItem *root : { manager.availablePointsRoot(), manager.allDataRoot() }) {
        for (PointObject *child : root ? root->children() : QList<PointObject *>()) {
            if (!own.contains(child->item()))
                m_parts.append({ child->item(), false });
        }
    }
}

ModelSearch::ModelSearch(const SourceDataManager &manager, const Nodes &nodes)
{
    const OwnRealizations realizations = manager.ownRealizations();
    for (PointTreeWidgetItem *node : nodes)
        keep(node, realizations.isOwn(node), true);
}

bool ModelSearch::advance(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (m_next < m_parts.size()) {
        lookThrough(m_parts.at(m_next++));
        if (clock.elapsed() >= milliseconds)
            break;
    }
    return m_next < m_parts.size();
}

void ModelSearch::lookThrough(const Part &part)
{
    if (!part.top)
        return;
    const int length = m_needle.folded().size();
    forSubtree(part.top, [&](PointTreeWidgetItem *node) {
        bool holds = false;
        bool exact = false;
        for (const PropertyHash::Entry &entry : node->properties()) {
            const QString value = isSearched(entry.key) ? entry.value.toString() : QString();
            if (value.size() < length || !m_needle.isIn(value))
                continue;
            holds = true;
            const bool names = entry.key.size() == 2 || entry.key.compare(keyKey, Qt::CaseInsensitive) == 0;
            exact = exact || (names && value.size() == length);
        }
        if (holds && sortOf(node) != NodeSort::Other)
            keep(node, part.own, exact);
    });
}

void ModelSearch::keep(PointTreeWidgetItem *node, bool own, bool exact)
{
    ++m_count;
    auto &rank = m_found[(own ? size_t(0) : 2) + (exact ? size_t(0) : 1)];
    if (rank.size() < mostKept)
        rank.append(node);
}

ModelSearch::Nodes ModelSearch::best(int most) const
{
    Nodes nodes;
    for (const auto &rank : m_found) {
        for (const QPointer<PointTreeWidgetItem> &node : rank) {
            if (nodes.size() == most)
                return nodes;
            if (node)
                nodes.append(node);
        }
    }
    return nodes;
}

NodeSort ModelSearch::sortOf(const PointTreeWidgetItem *node)
{
    const PointTreeWidgetItem *above = node->parentItem();
    if (node->isKind(extPoint))
        return NodeSort::Point;
    if (node->isKind(subExtPoint))
        return NodeSort::SubPoint;
    if (OwnRealizations::isRoot(node))
        return NodeSort::Format;
    if (OwnRealizations::isRecord(node))
        return NodeSort::Record;
    if (OwnRealizations::isEntry(node))
        return NodeSort::Entry;
    if (node->isKind(extData) || node->isKind(QLatin1String("ExtDataSet"))
        || node->isKind(QLatin1String("ExtPointSet")))
        return NodeSort::Other;
    for (const PointTreeWidgetItem *point = above; point; point = point->parentItem()) {
        if (point->isKind(extPoint) || point->isKind(subExtPoint))
            return point == above ? NodeSort::Attribute : NodeSort::Choice;
        // What stands under a record says more about it, and has no row.
        if (OwnRealizations::isRecord(point))
            return NodeSort::Other;
    }
    return NodeSort::Plugin;
}

ModelSearch::Nodes ModelSearch::users(const SourceDataManager &manager, const PointTreeWidgetItem *node)
{
    const NodeSort sort = node ? sortOf(node) : NodeSort::Other;
    const QString id = node ? node->properties().text(idKey) : QString();
    const NodeIndex &siblings = manager.indexes()[NodeIndexes::Data];
    Nodes nodes;
    if (sort == NodeSort::Point || sort == NodeSort::SubPoint) {
        const bool isSubPoint = sort == NodeSort::SubPoint;
        const QString pointId = isSubPoint ? node->pointId() : id;
        const QString kind = isSubPoint ? Definitions::realizedKind(node) : QString();
        const Nodes own = manager.ownRealizations().holders(pointId);
        const Nodes others = pointId.isEmpty() ? Nodes() : siblings.nodes(pointId);
        for (const PointTreeWidgetItem *holder : own)
            addRecords(holder, kind, &nodes);
        for (const PointTreeWidgetItem *holder : others) {
            if (holder->isKind(extData))
                addRecords(holder, kind, &nodes);
        }
    } else if ((sort == NodeSort::Record || sort == NodeSort::Entry) && !id.isEmpty()) {
        nodes = manager.ownRealizations().references(id);
        const Nodes others = siblings.nodes(id);
        std::copy_if(others.cbegin(), others.cend(), std::back_inserter(nodes), OwnRealizations::isEntry);
    }
    return nodes;
}

#include "definitionparts.h"

#include "pointtreewidgetitem.h"

namespace {

// Looking at so few costs less than keeping them in order.
constexpr int worthSorting = 16;

QString folded(const PointTreeWidgetItem *node)
{
    return node->pointId().toCaseFolded();
}

} // namespace

DefinitionParts::Nodes DefinitionParts::find(const NodeIndex &points, const QString &key, const QString &pointId) const
{
    const auto sorted = m_sorted.constFind(key);
    if (sorted != m_sorted.constEnd())
        return sorted->value(pointId.toCaseFolded());
    const Nodes all = points.nodes(key);
    if (all.size() > worthSorting) {
        QHash<QString, Nodes> &parts = m_sorted[key];
        for (PointTreeWidgetItem *node : all)
            parts[folded(node)].append(node);
        return parts.value(pointId.toCaseFolded());
    }
    Nodes found;
    for (PointTreeWidgetItem *node : all) {
        if (node->pointId().compare(pointId, Qt::CaseInsensitive) == 0)
            found.append(node);
    }
    return found;
}

void DefinitionParts::added(const QString &key, PointTreeWidgetItem *node)
{
    const auto sorted = m_sorted.find(key);
    if (sorted != m_sorted.end())
        (*sorted)[folded(node)].append(node);
}

void DefinitionParts::moved(PointTreeWidgetItem *node, const QString &oldPointId)
{
    for (auto sorted = m_sorted.begin(); sorted != m_sorted.end();) {
        bool keepsOrder = true;
        if ((*sorted)[oldPointId.toCaseFolded()].removeOne(node)) {
            Nodes &part = (*sorted)[folded(node)];
            keepsOrder = part.isEmpty();
            part.append(node);
        }
        if (keepsOrder)
            ++sorted;
        else
            sorted = m_sorted.erase(sorted);
    }
}

void DefinitionParts::removed(const QString &key, PointTreeWidgetItem *node)
{
    const auto sorted = m_sorted.find(key);
    if (sorted != m_sorted.end())
        (*sorted)[folded(node)].removeOne(node);
}

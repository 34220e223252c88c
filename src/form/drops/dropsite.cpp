#include "dropsite.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

#include <algorithm>

MergedSources::MergedSources(const QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> &sources)
{
    m_sources.reserve(sources.size());
    for (auto it = sources.cbegin(); it != sources.cend(); ++it)
        m_sources.append({ it.key(), it.value() });
    // The values of one key come newest first.
    std::reverse(m_sources.begin(), m_sources.end());
}

MergedSources::Nodes MergedSources::of(const PointTreeWidgetItem *row) const
{
    Nodes nodes;
    for (const Source &source : m_sources) {
        if (row && source.row == row && source.node)
            nodes.append(source.node);
    }
    return nodes;
}

DropPlan DropSite::into(const Allows &allows) const
{
    if (!row)
        return {};
    const bool ownPlace = direct && !Controller::instance()->ownRealizations().isForeign(row);
    if (allows(row))
        return { DropPlan::Place::Into, !ownPlace, row };
    const MergedSources::Nodes others = merged.of(row);
    for (PointTreeWidgetItem *source : others) {
        if (allows(source))
            return { DropPlan::Place::Into, true, source };
    }
    return {};
}

DropPlan DropSite::beside(const Allows &allows) const
{
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    if (!direct || !row || row->link() == row || !row->parentItem() || row->parentItem()->indexOfChild(row) < 0
        || realizations.isForeign(row) || !realizations.isOwn(row) || !row->master()->parent())
        return {};
    const DropPlan plan = above().into(allows);
    return plan ? plan.at(DropPlan::Place::Before) : DropPlan();
}

DropPlan DropSite::choose(const DropPlan &onto, const DropPlan &beside) const
{
    const bool isInto = onto.place == DropPlan::Place::Into;
    // Eighths of the row: those above the first are "before", those from the second on "after".
    const int before = isInto ? 2 : onto ? 6 : 3;
    const int after = isInto || onto ? 6 : 5;
    if (!beside || (eighth >= before && eighth < after))
        return onto;
    return beside.at(eighth < before ? DropPlan::Place::Before : DropPlan::Place::After);
}

DropSite DropSite::above() const
{
    DropSite site = *this;
    site.row = row ? row->parentItem() : nullptr;
    return site;
}

#include "dropsite.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

MergedSources::MergedSources(const QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> &sources)
{
    m_sources.reserve(sources.size());
    // The values of one key come newest first.
    for (auto it = sources.cbegin(); it != sources.cend(); ++it)
        m_sources.prepend({ it.key(), it.value() });
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

DropSite DropSite::above() const
{
    DropSite site = *this;
    site.row = row ? row->parentItem() : nullptr;
    return site;
}

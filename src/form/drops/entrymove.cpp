#include "entrymove.h"

#include "allowedkinds.h"
#include "dropwords.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "ownslots.h"
#include "rowplaces.h"

namespace {

bool isMirror(const PointTreeWidgetItem *node)
{
    return node->link() && node->link() != node;
}

PointTreeWidgetItem *savedNode(PointTreeWidgetItem *row)
{
    return row->master()->item();
}

const PointObject *top(const PointObject *node)
{
    while (node->parent())
        node = node->parent();
    return node;
}

/// Whether the saved nodes behind the two rows belong to one file, and the first may come to stand under the second.
bool mayGoUnder(PointTreeWidgetItem *saved, PointTreeWidgetItem *above)
{
    return above && top(saved) == top(above) && !saved->reaches(above);
}

/// The own format of the tab that the entry stands in already, else the first one.
PointTreeWidgetItem *formatFor(PointTreeWidgetItem *saved, const QString &tabName)
{
    const OwnRealizations::Nodes formats = Controller::instance()->ownRealizations().formats(tabName);
    for (PointTreeWidgetItem *above = saved->parentItem(); above; above = above->parentItem()) {
        if (tabName.isEmpty() ? above->isKind(QLatin1String("Format")) : formats.contains(above))
            return above;
    }
    return formats.isEmpty() ? nullptr : formats.constFirst();
}

/// A null @p name takes the "parent" away.
void setParentName(PointTreeWidgetItem *row, const QVariant &name)
{
    // What is saved may be newer than the row.
    PropertyHash properties = savedNode(row)->properties();
    if (name.isNull() && !properties.remove(parentKey))
        return;
    if (!name.isNull())
        properties.insert(parentKey, name);
    row->setProperties(properties);
}

void moveSavedInto(const DropSite &site, const DropPlan &plan, PointTreeWidgetItem *dragged)
{
    PointTreeWidgetItem *saved = savedNode(dragged);
    PointTreeWidgetItem *target = plan.recorded ? formatFor(saved, site.tabName) : savedNode(site.row);
    if (!OwnEdits::move(saved, target))
        return;
    RowPlaces::put(dragged, plan.place, site.row);
    setParentName(dragged, plan.recorded ? QVariant(OwnSlots::parentName(plan.through)) : QVariant());
}

void moveSavedBeside(const DropSite &site, const DropPlan &plan, PointTreeWidgetItem *dragged)
{
    PointTreeWidgetItem *saved = savedNode(dragged);
    PointTreeWidgetItem *target = savedNode(site.row);
    if (!OwnEdits::move(saved, target->parentItem(), RowPlaces::savedIndex(saved, plan.place, site.row)))
        return;
    RowPlaces::put(dragged, plan.place, site.row);
    setParentName(dragged, target->property(parentKey));
}

void movePlain(const DropSite &site, const DropPlan &plan, PointTreeWidgetItem *dragged)
{
    PointTreeWidgetItem *above = dragged->parentItem();
    dragged->takeRow();
    if (above)
        above->removeChild(dragged);
    if (plan.place == DropPlan::Place::Into) {
        site.row->QTreeWidgetItem::addChild(dragged);
        site.row->addChild(dragged, true);
        return;
    }
    PointTreeWidgetItem *parent = site.row->parentItem();
    const int index = parent->indexOfChild(site.row) + (plan.place == DropPlan::Place::After ? 1 : 0);
    parent->QTreeWidgetItem::insertChild(index, dragged);
    parent->insertChild(index, dragged);
}

bool canGoInto(const DropSite &site, const DropPlan &plan, PointTreeWidgetItem *dragged)
{
    if (!isMirror(dragged))
        return !plan.recorded && dragged->parentItem();
    PointTreeWidgetItem *saved = savedNode(dragged);
    if (plan.recorded) {
        return Controller::instance()->ownRealizations().isOwn(dragged)
            && mayGoUnder(saved, formatFor(saved, site.tabName));
    }
    return isMirror(site.row) && mayGoUnder(saved, savedNode(site.row));
}

bool canGoBeside(PointTreeWidgetItem *row, PointTreeWidgetItem *dragged)
{
    const PointTreeWidgetItem *above = row->parentItem();
    if (above->indexOfChild(row) < 0)
        return false;
    if (!isMirror(dragged))
        return !isMirror(above);
    return isMirror(row) && mayGoUnder(savedNode(dragged), savedNode(row)->parentItem());
}

PointTreeWidgetItem *deepCopy(const PointTreeWidgetItem &top)
{
    const auto copyOf = [](const PointTreeWidgetItem &node) {
        auto *made = new PointTreeWidgetItem(node.text(0));
        made->assignFields(node);
        made->setProperties(node.properties());
        return made;
    };
    PointTreeWidgetItem *copy = copyOf(top);
    QVector<QPair<const PointTreeWidgetItem *, PointTreeWidgetItem *>> open { { &top, copy } };
    while (!open.isEmpty()) {
        const auto [from, to] = open.takeLast();
        for (PointObject *child : from->children()) {
            PointTreeWidgetItem *below = copyOf(*child->item());
            OwnEdits::insert(to, below);
            open.append(qMakePair(static_cast<const PointTreeWidgetItem *>(child->item()), below));
        }
    }
    return copy;
}

} // namespace

DropPlan EntryMove::plan(const DropSite &site, PointTreeWidgetItem *dragged)
{
    if (!site.row || !dragged)
        return DropPlan::refusal(DropWords::noRow());
    if (Controller::instance()->ownRealizations().isForeign(dragged))
        return DropPlan::refusal(DropWords::foreignEntry(dragged));
    if (!site.direct)
        return DropPlan::refusal(DropWords::foreignFormat());
    if (dragged->reaches(site.row))
        return DropPlan::refusal(DropWords::intoItself(dragged));
    const QString kind = dragged->kind().toLower();
    const auto takes = [&kind](const PointTreeWidgetItem *node) { return AllowedKinds::of(node).contains(kind); };
    const DropPlan above = site.above().into(takes);
    const DropPlan beside = above && canGoBeside(site.row, dragged)
        ? DropPlan { DropPlan::Place::Before, false, above.through }
        : DropPlan();
    const DropPlan into = site.into(takes);
    if (into && !canGoInto(site, into, dragged))
        return site.choose(DropPlan::refusal(DropWords::notMovable(dragged)), beside);
    if (into || beside)
        return site.choose(into ? into : beside, beside);
    return DropPlan::refusal(above ? DropWords::besideForeign() : DropWords::notTaken(site.row, dragged->kind()));
}

DropOutcome EntryMove::perform(const DropSite &site, PointTreeWidgetItem *dragged)
{
    DropOutcome outcome;
    outcome.modified = site.row && site.direct && dragged;
    const DropPlan what = plan(site, dragged);
    if (!what)
        return outcome;
    if (!isMirror(dragged))
        movePlain(site, what, dragged);
    else if (what.place == DropPlan::Place::Into)
        moveSavedInto(site, what, dragged);
    else
        moveSavedBeside(site, what, dragged);
    return outcome;
}

PointTreeWidgetItem *EntryMove::copy(const DropSite &site, PointTreeWidgetItem *dragged)
{
    const DropPlan what = plan(site, dragged);
    const PointTreeWidgetItem *into = what && what.place != DropPlan::Place::Into ? site.above().row : site.row;
    // A move takes a bar along; a copy would be a second one.
    if (!what || AllowedKinds::isTakenAlready(into, dragged->kind().toLower()))
        return nullptr;
    PointTreeWidgetItem *saved = savedNode(dragged);
    PointTreeWidgetItem *beside = savedNode(site.row);
    const bool goesInto = what.place == DropPlan::Place::Into;
    QVariant parentName = goesInto ? QVariant() : beside->property(parentKey);
    if (goesInto && what.recorded)
        parentName = OwnSlots::parentName(what.through);

    PointTreeWidgetItem *copy = deepCopy(*saved);
    PropertyHash properties = copy->properties();
    properties.remove(parentKey);
    if (!parentName.isNull())
        properties.insert(parentKey, parentName);
    copy->setProperties(properties);
    if (goesInto) {
        OwnEdits::insert(what.recorded ? formatFor(saved, site.tabName) : beside, copy);
    } else {
        PointTreeWidgetItem *above = beside->parentItem();
        const int after = what.place == DropPlan::Place::After ? 1 : 0;
        OwnEdits::insert(above, copy, above->children().indexOf(beside) + after);
    }
    return copy;
}

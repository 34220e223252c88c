#include "rowplaces.h"

#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

namespace {

/// Into the list of @p parent alone, whatever it mirrors.
void insertAmongNodes(PointTreeWidgetItem *parent, int index, PointTreeWidgetItem *row)
{
    PointObject *const link = parent->link();
    parent->setLink(parent);
    parent->insertChild(index, row);
    parent->setLink(link);
}

} // namespace

void RowPlaces::put(PointTreeWidgetItem *row, DropPlan::Place place, PointTreeWidgetItem *sibling)
{
    if (PointTreeWidgetItem *above = row->parentItem())
        above->detachChild(row);
    row->takeRow();
    if (place == DropPlan::Place::Into) {
        sibling->QTreeWidgetItem::addChild(row);
        sibling->addChild(row, false);
        return;
    }
    PointTreeWidgetItem *parent = sibling->parentItem();
    const int behind = place == DropPlan::Place::After ? 1 : 0;
    parent->QTreeWidgetItem::insertChild(parent->indexOfChild(sibling) + behind, row);
    insertAmongNodes(parent, parent->children().indexOf(sibling) + behind, row);
}

int RowPlaces::savedIndex(const PointTreeWidgetItem *saved, DropPlan::Place place, PointTreeWidgetItem *sibling)
{
    const QList<PointObject *> beside = sibling->master()->parent()->children();
    const int index = beside.indexOf(sibling->master());
    const int old = beside.indexOf(const_cast<PointTreeWidgetItem *>(saved));
    const int behind = place == DropPlan::Place::After ? 1 : 0;
    return index + behind - (old >= 0 && old < index ? 1 : 0);
}

PointTreeWidgetItem *RowPlaces::insertNew(
    PointTreeWidgetItem *node, DropPlan::Place place, PointTreeWidgetItem *sibling)
{
    const PointTreeWidgetItem *saved = sibling->master()->item();
    const QVariant parentName = saved->properties().value(parentKey);
    if (!parentName.isNull())
        node->setProperty(parentKey, parentName);
    OwnEdits::insert(saved->parentItem(), node, savedIndex(node, place, sibling));
    auto *row = new PointTreeWidgetItem(*node);
    put(row, place, sibling);
    return row;
}

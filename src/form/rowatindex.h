#pragma once

#include "model/pointtreewidgetitem.h"

#include <QModelIndex>
#include <QTreeWidget>
#include <QVarLengthArray>

/// The row of @p tree at @p index, which QTreeWidget tells its subclasses only; null where there is none.
inline PointTreeWidgetItem *rowAtIndex(const QTreeWidget *tree, QModelIndex index)
{
    QVarLengthArray<int, 32> rows;
    for (; index.isValid(); index = index.parent())
        rows.append(index.row());
    QTreeWidgetItem *item = tree->invisibleRootItem();
    for (int level = rows.size() - 1; item && level >= 0; --level)
        item = item->child(rows.at(level));
    return PointTreeWidgetItem::fromRow(item);
}

#include "rows.h"

#include "pointtreewidgetitem.h"

void setRows(PointTreeWidgetItem *parent, const QList<PointTreeWidgetItem *> &rows)
{
    for (int i = 0; i < rows.size(); ++i) {
        if (parent->child(i) == rows.at(i))
            continue;
        if (i + 1 < parent->childCount() && parent->child(i + 1) == rows.at(i)) {
            (void)parent->takeChild(i);
            continue;
        }
        rows.at(i)->takeRow();
        parent->QTreeWidgetItem::insertChild(i, rows.at(i));
    }
}

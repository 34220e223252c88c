#pragma once

#include <QList>

class PointTreeWidgetItem;

/// Has the rows under @p parent be these, in this order, and moves none that stands right.
void setRows(PointTreeWidgetItem *parent, const QList<PointTreeWidgetItem *> &rows);

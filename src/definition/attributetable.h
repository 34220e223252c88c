#pragma once

#include <QList>
#include <QStringList>

class PointTreeWidgetItem;
class QTableWidget;

/// The table of the attributes of a point or sub point.
namespace AttributeTable {

/// The keys shown as columns; also the header labels.
[[nodiscard]] QStringList columns();

/// Shows a row for each model child of @p owner that is no sub point, in order; null empties the table.
void fill(QTableWidget *table, const PointTreeWidgetItem *owner);

/// The texts of those rows, by column.
[[nodiscard]] QList<QStringList> rowsOf(const PointTreeWidgetItem *owner);

} // namespace AttributeTable

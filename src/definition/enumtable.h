#pragma once

#include "propertybrowser/propertyitem.h"

#include <QList>
#include <QStringList>

class PointTreeWidgetItem;
class QTableWidget;

/// The table of the entries of an "Enum" attribute, and the sheet of one entry.
namespace EnumTable {

/// The keys shown as columns; also the header labels.
[[nodiscard]] QStringList columns();

/// The key of what is offered as a choice.
[[nodiscard]] QString choiceKey();
/// Whether this child of an attribute has a row.
[[nodiscard]] bool isEntry(const PointTreeWidgetItem *child);

/// Shows a row for each child of kind "Data" of @p attribute, in order.
void fill(QTableWidget *table, const PointTreeWidgetItem *attribute);
/// The texts of those rows, by column.
[[nodiscard]] QList<QStringList> rowsOf(const PointTreeWidgetItem *attribute);

/// A new entry, last among the children of @p attribute and of its counterpart, with the Unix time in seconds as its
/// "key": two made within a second have the same.
PointTreeWidgetItem *create(PointTreeWidgetItem *attribute);

/// To be called before @p entry is given the choice @p text: where the attribute's "value" is this very choice, and no
/// other entry's, it follows.
void renameDefault(PointTreeWidgetItem *entry, const QString &text);

/// One record for each column.
[[nodiscard]] QList<PropertyItem> sheetOf(PointTreeWidgetItem *entry);

} // namespace EnumTable

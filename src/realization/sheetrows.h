#pragma once

#include "model/definitions.h"
#include "propertybrowser/propertyitem.h"

#include <QList>
#include <QString>
#include <QVariant>

class PointTreeWidgetItem;

/// What the sheets of records and of format entries have in common.
namespace SheetRows {

/// What the definition of @p node declares; empty without one. A key that no file can hold is left out.
[[nodiscard]] Definitions::Attributes declared(const PointTreeWidgetItem *node);

/// What @p node holds, with its keys in the letter case of @p asked where a value would be found under them. What is
/// saved stays as it is.
[[nodiscard]] PropertyHash properties(const PointTreeWidgetItem *node, const QStringList &asked);

/// A row for @p key, of the type that its declaration asks for, without options. The value of a set of flags that is
/// written as a number becomes a number, since the editor takes a text for the names of the flags.
[[nodiscard]] PropertyItem row(const QString &key, const QVariant &value, const Definitions::Attributes &declared);

/// Gives @p row the pattern of its key, if there is one; "id" may have @p longestId characters.
void restrict(PropertyItem *row, int longestId);

/// "id" goes to the front, everything else to the end.
void add(QList<PropertyItem> *rows, const PropertyItem &row);

/// Adds what may be created under @p node, read-only, if anything.
void addChildTypes(QList<PropertyItem> *rows, const PointTreeWidgetItem *node);

} // namespace SheetRows

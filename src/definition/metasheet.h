#pragma once

#include "propertybrowser/propertyitem.h"

#include <QList>
#include <QStringList>

class PointTreeWidgetItem;

/// The sheet of one meta entry, and what an entry is made of.
namespace MetaSheet {

/// The keys shown as columns; also the header labels.
[[nodiscard]] QStringList columns();

/// One record for each key of @p entry but its type, in the entry's order, then the "type" with @p typeNames to choose
/// from, the current one first.
[[nodiscard]] QList<PropertyItem> of(PointTreeWidgetItem *entry, const QStringList &typeNames);

/// A new entry of type "String", last among the children of @p owner and, on a mirror, of its master.
PointTreeWidgetItem *create(PointTreeWidgetItem *owner);

} // namespace MetaSheet

#pragma once

#include "propertybrowser/propertyitem.h"

#include <QList>

class PointTreeWidgetItem;

/// The sheet of a record: a row for each of its own keys, in its order, "id" first, then one for each declared
/// attribute that it lacks. GUI thread.
namespace RecordSheet {

/// Stores the default of each declared attribute that @p record lacks; an empty value is not lacking. True when
/// anything was stored.
bool storeDefaults(PointTreeWidgetItem *record);

/// The rows, without changing a value, and what may be created under the record as the last one. Empty for null.
[[nodiscard]] QList<PropertyItem> of(PointTreeWidgetItem *record);

/// The same without the last row; for the node that a click in the tree of points shows.
[[nodiscard]] QList<PropertyItem> withoutChildTypes(PointTreeWidgetItem *record);

} // namespace RecordSheet

#pragma once

#include "propertybrowser/propertyitem.h"

#include <QList>

class PointTreeWidgetItem;

/// The sheet of an entry of a format. Unlike a record's (see RecordSheet) it also shows what the entry does not say
/// itself, its options stand as they are declared, and it allows a shorter "id". GUI thread.
namespace FormatSheet {

/// What is not the item's own says so, and what could be again can be reset.
///
/// A row for each key of @p item, in its order, "id" first, then one for each that it lacks but the record that it
/// refers to has, or that is declared, with the value of the record or else with the default, then what may be created
/// under it. Formats and bars show their own keys only. Nothing is stored in the item. Empty for null.
[[nodiscard]] QList<PropertyItem> of(PointTreeWidgetItem *item);

} // namespace FormatSheet

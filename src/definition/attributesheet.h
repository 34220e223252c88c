#pragma once

#include "propertybrowser/propertyitem.h"

#include <QList>
#include <QStringList>

class PointTreeWidgetItem;

/// The sheet of one attribute, and what an attribute is made of.
namespace AttributeSheet {

/// Replaces the attributes of @p attribute by exactly @p fields, in that order, each with the value that it had (null
/// for one that it lacked). An empty list, which an unknown type has, changes nothing.
void bringIntoLine(PointTreeWidgetItem *attribute, const QStringList &fields);

/// One record for each key of @p attribute, in its order, then the "type" with @p typeNames to choose from, the current
/// one first.
[[nodiscard]] QList<PropertyItem> of(PointTreeWidgetItem *attribute, const QStringList &typeNames);

/// A drop-down record "type" of @p typeNames with @p current first.
[[nodiscard]] PropertyItem typeRecord(const QString &current, const QStringList &typeNames);

/// A new attribute of type "String" with empty @p fields, last among the children of @p owner and of its counterpart.
PointTreeWidgetItem *create(PointTreeWidgetItem *owner, const QStringList &fields);

} // namespace AttributeSheet

#pragma once

#include "propertybrowser/propertyitem.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

class ChildTypeMask;
class PointTreeWidgetItem;

/// The "Basic Information" sheets of points and sub points: one record for each key that the node has, in the node's
/// order but for the places given below.
namespace PointSheet {

/// Property name to PropertyType number.
using TypeTable = QHash<QString, QVariant>;

[[nodiscard]] TypeTable pointTypes();
[[nodiscard]] TypeTable subPointTypes();

/// The keys that a node of this kind can have and does not, in any letter case, in the order of the tables; none for
/// what is neither point nor sub point, and for null.
[[nodiscard]] QStringList missingKeys(const PointTreeWidgetItem *node);

/// "id" stands first, "description" last. A key that is not in @p types gets type 0.
[[nodiscard]] QList<PropertyItem> ofPoint(PointTreeWidgetItem *point, const TypeTable &types);

/// "key" stands first, "description" last; "childtype" is there only when @p childTypes has any name. "name" takes its
/// type from @p pointTypes.
[[nodiscard]] QList<PropertyItem> ofSubPoint(PointTreeWidgetItem *subPoint, const TypeTable &types,
    const TypeTable &pointTypes, const ChildTypeMask &childTypes);

} // namespace PointSheet

#pragma once

#include <QStringList>

class PointTreeWidgetItem;

/// Which kinds of nodes may be dropped into a node, in lower case, in the order of the definition. GUI thread.
namespace AllowedKinds {

/// What the definition of @p node says.
[[nodiscard]] QStringList of(const PointTreeWidgetItem *node);

/// The same for a point that is dropped: a "Format" also takes one menu bar and one row of tool bars, and no kind
/// twice. What stands there already is told by the children of @p row, which shows @p node.
[[nodiscard]] QStringList forPoint(const PointTreeWidgetItem *node, const PointTreeWidgetItem *row);

/// True when forPoint() leaves @p kind out since it stands under @p row already.
[[nodiscard]] bool isTakenAlready(const PointTreeWidgetItem *row, const QString &kind);

} // namespace AllowedKinds

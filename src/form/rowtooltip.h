#pragma once

#include <QString>

class PointTreeWidgetItem;

/// What the tool tip of a row of the realization page says: the whole id and the plug-in that the node belongs to, for
/// points their name before, and at the end what is wrong with it. GUI thread.
namespace RowToolTip {

/// Rich text; empty for null.
[[nodiscard]] QString text(PointTreeWidgetItem *node);

} // namespace RowToolTip

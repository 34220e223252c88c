#pragma once

#include <QString>

class PointTreeWidgetItem;

/// What the realization page does when the definition page makes or deletes points: the changes of the tree of all
/// points alone. GUI thread.
namespace DefinitionChanges {

/// Shows @p point, or its @p subPoint when that is not null, under the plug-in @p plugin below @p root. What the
/// plug-in and the point lack on this side is made first.
void add(PointTreeWidgetItem *root, const QString &plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint);

} // namespace DefinitionChanges

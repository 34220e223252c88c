#pragma once

class PointTreeWidgetItem;

/// Merging of format roots that name the same "target". GUI thread.
namespace FormatMerge {

/// Moves what @p arrived brings into @p known, model and rows: the entries of its bars ("MenuBar", "ToolBars", in any
/// letter case) into the bars of the same kind, and its other children as they are. Then every child of @p known that
/// names a "parent" goes under the node with that id.
///
/// Once a bar's entries have been moved, the children of @p arrived that follow stay where they are: the flag that says
/// so is never reset. They are shown all the same, since a tab also shows what is left under a merged root.
void merge(PointTreeWidgetItem *known, PointTreeWidgetItem *arrived);

/// The second half of merge(): puts each child of @p root that names a "parent" under the node whose "id" that is.
/// A node is never put under itself or one of its descendants.
void placeUnderParents(PointTreeWidgetItem *root);

} // namespace FormatMerge

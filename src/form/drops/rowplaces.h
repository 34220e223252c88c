#pragma once

#include "dropplan.h"

class PointTreeWidgetItem;

/// Places among displayed rows, and those in the saved file that they stand for. GUI thread.
///
/// Nothing here is done in the mirroring way: a row and the saved node behind it are placed each for itself.
namespace RowPlaces {

/// Puts @p row, out of wherever it stands, beside @p sibling or, with DropPlan::Place::Into, at the end under it: in
/// the tree of rows and in that of nodes.
void put(PointTreeWidgetItem *row, DropPlan::Place place, PointTreeWidgetItem *sibling);

/// The index for @p saved among the nodes beside the one that @p sibling, a row, mirrors, counted after the removal of
/// @p saved from there.
[[nodiscard]] int savedIndex(const PointTreeWidgetItem *saved, DropPlan::Place place, PointTreeWidgetItem *sibling);

/// Saves @p node, made for a drop and standing nowhere yet, beside what @p sibling, a row, mirrors, with the same
/// "parent"; and shows it there. The displayed row, which mirrors it, is returned; its tree owns it.
PointTreeWidgetItem *insertNew(PointTreeWidgetItem *node, DropPlan::Place place, PointTreeWidgetItem *sibling);

} // namespace RowPlaces

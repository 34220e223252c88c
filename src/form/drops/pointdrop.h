#pragma once

#include "dropsite.h"
#include "ownslots.h"

/// A point or a sub point is dropped into a format tree: an entry of the kind that realizes it. GUI thread.
///
/// Directly: the entry goes into the row, and its copy into the node behind it, which is the one that is registered.
///
/// Recorded: the saved entry goes to the "Format" of the tab in the "ExtData" of the dragged point, with a "parent",
/// and a record with the same "id" beside that "Format"; what is missing is made. The row shown is a mirror of the
/// entry. In a tree of no tab the entry goes to the first "Format" of the opened file, and is kept nowhere but in the
/// tree where there is none.
///
/// Beside an own row: the saved entry goes beside the one behind that row, with the same "parent". Where the row above
/// is not dropped into directly the point's "ExtData" gets the record as well.
namespace PointDrop {

/// True for what comes here.
[[nodiscard]] bool takes(const PointTreeWidgetItem *dragged);

[[nodiscard]] DropPlan plan(const DropSite &site, PointTreeWidgetItem *dragged);

/// Carries out plan(). A direct drop does not count as a modification here: whoever is told of the row says so.
/// @p found serves a tree of no tab only.
DropOutcome perform(const DropSite &site, PointTreeWidgetItem *dragged, OwnSlots::FirstFound *found);

} // namespace PointDrop

#pragma once

#include "dropsite.h"

/// A record, a child of an "ExtData", is dropped into a format tree: a reference to it by its "id". GUI thread.
///
/// Directly: the reference goes into the row, and its copy into the node behind it, which is the one that is
/// registered.
///
/// Recorded: the reference goes to the "Format" of the tab in the record's own "ExtData", with a "parent"; in a tree of
/// no tab it goes to every "Format" there. Where there is none, one is made as the first child. The row shown mirrors
/// what is saved; of several saved ones the last, which mirrors the one before it, so that an edit reaches all. The
/// sibling's node behind the row is never touched.
///
/// Beside an own row: the reference goes beside the saved entry behind that row, with the same "parent".
namespace RecordDrop {

[[nodiscard]] DropPlan plan(const DropSite &site, PointTreeWidgetItem *dragged);

/// Carries out plan().
DropOutcome perform(const DropSite &site, PointTreeWidgetItem *dragged);

} // namespace RecordDrop

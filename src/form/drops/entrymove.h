#pragma once

#include "dropsite.h"

/// An entry of a format tree is moved within it. GUI thread.
///
/// Everything that is no point and no sub point comes here, also an entry that happens to have an attribute "key".
///
/// What the tree shows are mirrors as a rule: the saved node behind a row moves with its subtree, and the row follows
/// beside it. Nothing is added to or removed from a mirror in the mirroring way, which would go by "id" and meet the
/// wrong node among those that have none. In a tree of plain nodes the row is what moves.
///
// clang-format off
/// | dragged     | row                                        | what happens                                     |
/// |-------------|--------------------------------------------|--------------------------------------------------|
/// | any         | itself, or under it                        | nothing                                          |
/// | a sibling's | any                                        | nothing                                          |
/// | own         | own, takes the kind                        | goes into it; a "parent" is dropped              |
/// | own         | a sibling's, or standing for one that does | goes to the "Format" of the tab, with a "parent" |
/// | own         | own, the row above it takes the kind       | goes beside it, with its "parent" if any         |
/// | own         | a sibling's, the row above takes the kind  | nothing                                          |
// clang-format on
///
/// A tree that does not drop directly moves nothing.
namespace EntryMove {

[[nodiscard]] DropPlan plan(const DropSite &site, PointTreeWidgetItem *dragged);

/// Carries out plan(). The document counts as modified also when nothing moved, unless there was no row or the tree
/// does not drop directly.
DropOutcome perform(const DropSite &site, PointTreeWidgetItem *dragged);

/// Puts a copy of the entry, with everything under it, where plan() would move the entry: in the model alone, the rows
/// follow. The ids stay, since they say what the entries refer to. The saved copy; null when there is no such place.
PointTreeWidgetItem *copy(const DropSite &site, PointTreeWidgetItem *dragged);

} // namespace EntryMove

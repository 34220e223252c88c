#pragma once

#include <QString>

class PointTreeWidgetItem;

/// What a node of the opened file is, in words for a heading or a list: its kind, its id and what it is of. GUI thread.
namespace NodeWords {

/// One line of plain text, "action chart.zoomout, record of Commands" for instance; empty for null. Long texts are cut.
[[nodiscard]] QString what(PointTreeWidgetItem *node);

/// As above, with the number of references where the node is a record.
[[nodiscard]] QString withUses(PointTreeWidgetItem *node);

} // namespace NodeWords

#pragma once

class PointTreeWidgetItem;
class SourceDataManager;

/// The way from a place in the text of the opened file to what it became. GUI thread.
namespace NodeAtLine {

/// The own node that the element at the place became: without a column (0) the first element that starts on the line,
/// else the last one that starts before. Both count from 1. The file is read for it once more. Where the model has
/// changed since, it is the node of that tag and id or in that place, or else the nearest above. The definition root
/// for what stands in neither set; null when the file can't be read.
[[nodiscard]] PointTreeWidgetItem *find(const SourceDataManager &manager, int line, int column);

} // namespace NodeAtLine

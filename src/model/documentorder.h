#pragma once

class PointTreeWidgetItem;

/// Whether @p left comes before @p right in the file of which both are part: a node before what stands under it, and
/// that before its next sibling. False for nodes of different trees.
[[nodiscard]] bool comesBefore(const PointTreeWidgetItem *left, const PointTreeWidgetItem *right);

#pragma once

#include <QVector>

class PointTreeWidgetItem;

/// The opened file's points as the tree of all points shows them: copies that are their own masters, to which the
/// definition page's nodes link, so that whatever is changed there reaches them. GUI thread.
namespace DefinitionMirror {

/// Makes a copy of @p definition, a point or a sub point, with everything under it, and puts it under @p parent, in the
/// model and in the rows. The copies belong to the model. Where a node had a copy already, it has two then and links to
/// the new one.
PointTreeWidgetItem *mirror(PointTreeWidgetItem *parent, PointTreeWidgetItem *definition);

/// The points and sub points of the subtree of @p copy, itself included, from the top.
[[nodiscard]] QVector<PointTreeWidgetItem *> points(PointTreeWidgetItem *copy);

} // namespace DefinitionMirror

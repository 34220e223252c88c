#pragma once

#include <QString>

class PointTreeWidgetItem;

/// Creating and deleting points and sub points of the opened plug-in: the changes of the model alone. What is made here
/// belongs to the model.
namespace PointCreation {

enum class Role {
    Plugin, ///< the definition root, whatever its tag
    Point,
    SubPoint,
    Other
};

[[nodiscard]] Role roleOf(const PointTreeWidgetItem *item);

/// A new point in @p plugin, with the Unix time in seconds as its "id": two made within a second have the same. The
/// first set of the plug-in takes it; a plug-in without any gets one.
PointTreeWidgetItem *createPoint(PointTreeWidgetItem *plugin);

/// A new sub point of @p point. Names are not made unique.
PointTreeWidgetItem *createSubPoint(PointTreeWidgetItem *point);

/// Takes @p node out of its parent's children. A definition of the opened file is offered no more from then on.
void takeOut(PointTreeWidgetItem *node);

/// Destroys @p node, its counterpart on the realization page and everything under both.
void destroyWithCounterpart(PointTreeWidgetItem *node);

} // namespace PointCreation

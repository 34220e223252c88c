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

/// Takes @p node out of its parent's children without looking for anything else there: its counterpart on the
/// realization page is found through its link, not by its "id".
void takeOut(PointTreeWidgetItem *node);

/// To be called after the attribute @p key of @p node was changed from @p old: the point id of what belongs to a point
/// follows its "id", and the point index follows "id" and "key".
void followRename(PointTreeWidgetItem *node, const QString &key, const QString &old);

/// Destroys @p node, its counterpart on the realization page and everything under both.
void destroyWithCounterpart(PointTreeWidgetItem *node);

} // namespace PointCreation

#include "documentorder.h"

#include "pointtreewidgetitem.h"

#include <QVector>

#include <algorithm>

namespace {

/// From the top of the tree down to @p node.
QVector<PointObject *> pathTo(const PointTreeWidgetItem *node)
{
    QVector<PointObject *> path;
    for (auto *object = const_cast<PointTreeWidgetItem *>(node); object; object = object->parentItem())
        path.append(object);
    std::reverse(path.begin(), path.end());
    return path;
}

} // namespace

bool comesBefore(const PointTreeWidgetItem *left, const PointTreeWidgetItem *right)
{
    const QVector<PointObject *> leftPath = pathTo(left);
    const QVector<PointObject *> rightPath = pathTo(right);
    int depth = 0;
    while (depth < leftPath.size() && depth < rightPath.size() && leftPath.at(depth) == rightPath.at(depth))
        ++depth;
    if (depth == 0 || depth == rightPath.size())
        return false;
    if (depth == leftPath.size())
        return true;
    // What is asked about has come last as a rule.
    const QList<PointObject *> &children = leftPath.at(depth - 1)->children();
    const auto later = std::find_if(children.crbegin(), children.crend(),
        [&](const PointObject *child) { return child == leftPath.at(depth) || child == rightPath.at(depth); });
    return later != children.crend() && *later == rightPath.at(depth);
}

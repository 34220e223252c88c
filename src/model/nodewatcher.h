#pragma once

class PointTreeWidgetItem;
class QString;
class QVariant;

/// Is told of every change in the tree under the root that it is set on, at once and before anybody else, so that
/// whatever has to follow the nodes (indexes, the offered points) can't be forgotten by the operation that changes
/// them. Set by the manager on two roots of the opened file; GUI thread.
class NodeWatcher
{
public:
    virtual ~NodeWatcher() = default;

    /// @p child, with everything under it, stands in the list of @p parent from now on.
    virtual void childAdded(PointTreeWidgetItem *parent, PointTreeWidgetItem *child) = 0;
    /// It stood there until now; it is still whole.
    virtual void childRemoved(PointTreeWidgetItem *parent, PointTreeWidgetItem *child) = 0;
    virtual void propertyChanged(PointTreeWidgetItem *node, const QString &key, const QVariant &old) = 0;
    virtual void kindChanged(PointTreeWidgetItem *node, const QString &old) = 0;
};

#pragma once

#include "dropplan.h"

#include <QMultiHash>
#include <QString>

#include <functional>

/// The further nodes that displayed rows stand for: a row that several files fill is made from the node of one of them.
/// Copied by value; the nodes are guarded, since siblings are read again while rows stand.
class MergedSources final
{
public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    MergedSources() = default;
    explicit MergedSources(const QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> &sources);

    /// In the order in which they were entered.
    [[nodiscard]] Nodes of(const PointTreeWidgetItem *row) const;

private:
    struct Source
    {
        QPointer<const PointTreeWidgetItem> row;
        QPointer<PointTreeWidgetItem> node;
    };
    QVector<Source> m_sources;
};

/// The place of a drop: a displayed row, and what its tree says about it. GUI thread.
///
/// Whose row it is counts row by row. A row of the opened file in a tree that drops directly takes what its own kind
/// allows; any other drop is recorded, with the node that allows it as "parent": the row itself, where it belongs to a
/// sibling or the tree does not drop directly, or else one of the nodes that it also stands for.
struct DropSite
{
    using Allows = std::function<bool(PointTreeWidgetItem *node)>;

    PointTreeWidgetItem *row = nullptr;
    bool direct = true;
    QString tabName;
    MergedSources merged;

    /// Whether something goes into the row, and how; @p allows says whether a node takes what is dragged.
    [[nodiscard]] DropPlan into(const Allows &allows) const;

    /// The same place in the same tree, one row up; without a row at the top.
    [[nodiscard]] DropSite above() const;
};

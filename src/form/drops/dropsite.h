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

/// The place of a drop: a displayed row, which part of it is pointed at, and what its tree says about it. GUI thread.
///
/// Whose row it is counts row by row. A row of the opened file in a tree that drops directly takes what its own kind
/// allows; any other drop is recorded, with the node that allows it as "parent": the row itself, where it belongs to a
/// sibling or the tree does not drop directly, or else one of the nodes that it also stands for.
///
/// Beside a row something can stand only where the saved file keeps that place: the row is own and mirrors a saved
/// entry, and what is dropped is saved beside that one. A sibling's row has no such place, and is one zone from top to
/// bottom.
struct DropSite
{
    using Allows = std::function<bool(PointTreeWidgetItem *node)>;

    PointTreeWidgetItem *row = nullptr;
    bool direct = true;
    QString tabName;
    MergedSources merged;
    /// The part of the row, from 0 at its top to 7 at its bottom; at first the middle of the row.
    int eighth = 3;

    /// Whether something goes into the row, and how; @p allows says whether a node takes what is dragged.
    [[nodiscard]] DropPlan into(const Allows &allows) const;

    /// Whether something new goes beside the row, as a plan to go before it; @p allows is asked of the row above.
    [[nodiscard]] DropPlan beside(const Allows &allows) const;

    /// What holds for the part that is pointed at: @p onto is what a drop onto the middle of the row does, @p beside a
    /// plan to go before it, or none. The upper quarter is "before" then and the lower one "after". Where nothing goes
    /// into the row there is more room for them: where the middle means "before" itself, all but the lower quarter
    /// does, else a quarter is left between them.
    [[nodiscard]] DropPlan choose(const DropPlan &onto, const DropPlan &beside) const;

    /// The same place in the same tree, one row up; without a row at the top.
    [[nodiscard]] DropSite above() const;
};

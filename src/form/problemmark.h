#pragma once

#include <QString>
#include <QStyledItemDelegate>

#include <functional>

class PointTreeWidgetItem;
class QAbstractItemView;

/// The small mark in the rows of what has a problem. Marks are painted, not stored: nothing but a repaint follows a
/// change of the problems. GUI thread.
namespace ProblemMark {

/// What the mark of a row that shows @p node says, in lines of plain text; empty for a row without one. The attributes
/// of a point have no rows in a tree and are told with it.
[[nodiscard]] QString reasons(PointTreeWidgetItem *node);

/// @p option with its right end, which is painted as a part of the row, taken by the mark.
[[nodiscard]] QStyleOptionViewItem paint(QPainter *painter, const QStyleOptionViewItem &option);

/// Has @p view painted anew whenever the problems of the current file have changed.
void follow(QAbstractItemView *view);

} // namespace ProblemMark

/// Paints the marks into the first column of a view, and shows their reasons as tool tips. Owned by the view.
class ProblemDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// What the row of an index shows; null for a row that shows nothing with problems.
    using NodeAt = std::function<PointTreeWidgetItem *(const QModelIndex &index)>;

    ProblemDelegate(QAbstractItemView *view, NodeAt nodeAt);

    /// Where texts of the first column are cut that don't fit.
    void setElideMode(Qt::TextElideMode mode) { m_elideMode = mode; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    NodeAt m_nodeAt;
    Qt::TextElideMode m_elideMode = Qt::ElideRight;
};

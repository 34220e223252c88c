#pragma once

#include <QStyledItemDelegate>

/// Paints the closed rows of a @p PropertyTree: as high as an editor, so that nothing moves when one opens, with the
/// wavy line under a value that would be refused, slanted and paler where the value is not the row's own, and with a
/// tool tip that says why, and the whole of what is cut short.
class PropertyDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Role {
        ProblemRole = Qt::UserRole, ///< why the value would be refused, empty when it would not
        StandingRole,               ///< an editor stands in the cell
        DropsDownRole,              ///< the row opens a list
        BorrowedRole,               ///< why the row shows a value that is not its own, empty when it is
        HelpRole,                   ///< what else the tool tip says of the row
    };

    using QStyledItemDelegate::QStyledItemDelegate;

    /// To be called when the font or the style of the view changes.
    void forgetRowHeight() { m_rowHeight = 0; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(
        QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    mutable int m_rowHeight = 0; ///< measured for the first row: making an editor of each kind takes a while
};

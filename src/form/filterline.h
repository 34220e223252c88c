#pragma once

#include <QWidget>

class QAbstractItemView;
class QHeaderView;
class QLabel;
class QLineEdit;
class RowFilter;

/// The line over a tree or a table in which one types what its rows are to hold, with the number of those that do. It
/// stands in the view's header above the names of the columns, so that the view stays where the form has put it, and
/// takes no room until it is opened. Escape empties and closes it, Down and Return go to the first row. Owned by the
/// header. GUI thread.
class FilterLine final : public QWidget
{
    Q_OBJECT

public:
    /// The line of @p view, a tree of nodes or a table, made at the first time; null for any other view.
    [[nodiscard]] static FilterLine *of(QAbstractItemView *view);

    /// Brings the current row of @p view into sight, which somebody has just made or asked for: a line that hides it is
    /// closed.
    static void showCurrent(QAbstractItemView *view);

    /// Shows the line, with what was typed before, and goes there.
    void open();
    /// Shows all rows and goes back to the view.
    void close();

    [[nodiscard]] RowFilter *filter() const { return m_filter; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    FilterLine(QAbstractItemView *view, QHeaderView *header, RowFilter *filter);
    /// Has the header leave room for the line, or none.
    void makeRoom();
    void tell();

    QAbstractItemView *m_view;
    QHeaderView *m_header;
    RowFilter *m_filter;
    QLineEdit *m_edit;
    QLabel *m_count;
};

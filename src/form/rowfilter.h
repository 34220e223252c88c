#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVector>

class PointTreeWidgetItem;
class QTableWidget;
class QTreeWidget;
class QTreeWidgetItem;

/// Whether neither the row nor one above it is hidden: what nobody sees is not what a key is meant for.
[[nodiscard]] bool isInSight(QTreeWidgetItem *row);

/// Hides the rows of a view that don't hold a needle, and keeps it so while rows come, change and go. Touches neither
/// the model nor the current row nor the selection, which may be hidden. GUI thread.
class RowFilter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] const QString &needle() const { return m_needle; }
    /// Shows the rows that hold @p needle in whatever letter case; empty shows all.
    void setNeedle(const QString &needle);

    /// How many rows hold the needle, and how many there are. Zeros without a needle.
    [[nodiscard]] int matches() const { return m_matches; }
    [[nodiscard]] int total() const { return m_total; }

    /// Looks now at what has changed since the last look, which is done before the next painting otherwise.
    void catchUp();

    /// Makes the first row that holds the needle the current one, and brings it into sight. False without one.
    virtual bool goToFirst() = 0;

Q_SIGNALS:
    /// Either number is another one.
    void counted();

protected:
    /// @p narrows: nothing has changed since the last time, and what didn't match then doesn't now.
    virtual void apply(bool narrows) = 0;
    void setCounts(int matches, int total);
    /// The next look is at every row. It comes by itself, before anything is painted.
    void applyLater();
    void forgetLastLook() { m_fresh = false; }

private:
    QString m_needle;
    int m_matches = 0;
    int m_total = 0;
    bool m_fresh = false; ///< the last look still holds
    bool m_pending = false;
};

/// The filter of a tree of nodes: a row is searched in its texts and in the id, key and name of its node, and stays for
/// the sake of what matches below it. Rows that nobody sees, since one above them is folded, get hidden once it is
/// unfolded: a hidden row costs the view a persistent index. The first matches are unfolded, and folded again
/// afterwards; of what is unfolded, only so much stays so as the view lays out at once. Owned by the tree.
class TreeRowFilter final : public RowFilter
{
    Q_OBJECT

public:
    /// @p rowsUnfolded are looked at below unfolded rows, then these are folded for the time being: the view lays out
    /// all that is unfolded, and keeps an index of each row that is hidden there, 1 ms a thousand.
    explicit TreeRowFilter(QTreeWidget *tree, int rowsUnfolded = 20'000);
    bool goToFirst() override;

protected:
    void apply(bool narrows) override;

private:
    struct Row
    {
        QTreeWidgetItem *item;
        const PointTreeWidgetItem *node; ///< the same; null for a row of another kind
        int above;                       ///< among the rows that are looked at, -1 for a top one
        int place;                       ///< below its parent
        bool matches;
        bool kept; ///< it or something below it matches
    };
    using Rows = QVector<Row>;

    /// The rows below @p parent from @p first to @p last and all below them, in the order of the view.
    [[nodiscard]] Rows rowsBelow(QTreeWidgetItem *parent, int first, int last) const;
    void match(Rows *rows, bool narrows) const;
    /// Has the view hide what is not kept, as far as nothing above it is folded. @p parent is unfolded.
    void hide(const Rows &rows, QTreeWidgetItem *parent);
    void showAll();
    void unfoldFirst(const Rows &rows);
    /// As the user has it.
    void restoreFolding();
    void take(const QModelIndex &parent, int first, int last);
    void hideBelow(const QModelIndex &parent);
    [[nodiscard]] bool isUnfolded(QTreeWidgetItem *row) const;

    QTreeWidget *m_tree;
    int m_rowsUnfolded;
    Rows m_rows;                          ///< of the last look, as long as it holds
    QSet<QPersistentModelIndex> m_hidden; ///< rows below these may be hidden
    QVector<QPersistentModelIndex> m_unfolded;
    QVector<QPersistentModelIndex> m_folded;
    bool m_applying = false;
};

/// The filter of a table, which is searched in the texts of all cells. Owned by the table.
class TableRowFilter final : public RowFilter
{
    Q_OBJECT

public:
    explicit TableRowFilter(QTableWidget *table);
    bool goToFirst() override;

protected:
    void apply(bool narrows) override;

private:
    QTableWidget *m_table;
};

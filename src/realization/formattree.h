#pragma once

#include "form/realizationtreewidget.h"
#include "formatfilling.h"

#include <QHash>
#include <QLabel>
#include <QMultiHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVBoxLayout>

class PointTreeWidgetItem;
struct ModelChange;

/// The one format tree of the realization page, which moves from tab to tab, and what it shows: copies of the format's
/// nodes, each linked to the node that it was made from.
///
/// Owned by the page builder. The widget belongs to the tab page that it stands in and dies with it; everything here
/// answers empty then. GUI thread.
class FormatTree final : public QObject
{
    Q_OBJECT

public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    explicit FormatTree(QObject *parent = nullptr);
    ~FormatTree() override;

    /// Null once the tab pages have gone.
    [[nodiscard]] RealizationTreeWidget *widget() const { return m_tree; }

    /// Moves the tree into @p page, or out of every page with null.
    void moveTo(QWidget *page);

    /// Shows or hides the tree; a line of text says why it is hidden.
    void setShown(bool shown);

    /// Shows the tab @p name afresh, everything expanded.
    void show(const QString &name);
    void clear();

    [[nodiscard]] const QString &tabName() const { return m_tabName; }

    /// Brings the rows into line with what fills the tab now, which may be called @p name by now. Rows that stay keep
    /// what a person has done to them; so does the place that is scrolled to. In a tree that was empty the keys start
    /// at the first row, which is not selected.
    void sync(const QString &name);
    /// The same after a change of the opened file, as far as it concerns the tab.
    void follow(const ModelChange &change, const QString &name);
    /// True when siblings have brought something for the tab since it was filled.
    [[nodiscard]] bool isOutdated() const;

    /// What a row shows: the node that it was made from.
    [[nodiscard]] static PointTreeWidgetItem *sourceOf(PointTreeWidgetItem *row);

    /// The rows with this "id".
    [[nodiscard]] Nodes rowsWithId(const QString &id) const;
    [[nodiscard]] bool contains(const PointTreeWidgetItem *row) const;
    /// The row that was made from @p source; null when the tab shows none.
    [[nodiscard]] PointTreeWidgetItem *rowOf(const PointTreeWidgetItem *source) const;

    /// Gives a row that a drop has made what it lacks of texts and icon; what the drop has given it stays.
    void complete(PointTreeWidgetItem *row);

    /// Writes texts and icons of every row anew, where they come from records that have arrived.
    void relabel();
    void select(const Nodes &rows);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Further = QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *>;

    /// A row with everything under it, which stands in no tree. @p further gets what the rows also stand for.
    [[nodiscard]] static PointTreeWidgetItem *build(const FormatPlan::Row &planned, Further *further);
    /// Puts the rows in place that @p row is to have, and goes on below them.
    void arrange(PointTreeWidgetItem *top, const FormatPlan::Row &planned, Further *further);
    /// Has the row of @p source stand under @p above, or at the top with null.
    PointTreeWidgetItem *placeRow(PointTreeWidgetItem *above, int index, PointTreeWidgetItem *source);
    static void takeOut(PointTreeWidgetItem *row);
    void label(PointTreeWidgetItem *row);
    void destroyAllBut(const QSet<const PointTreeWidgetItem *> &planned);
    void fitColumns();
    /// Gives the ids of rows that were added or renamed the room that they need, unless the person has set it.
    void growColumns();
    /// The room that the columns need is known once the tree has its size, and measuring rows reads their icons.
    void fitWhenFirstSeen();
    /// A row that had no children shows its first ones.
    void expandGrown(const QModelIndex &parent, int first, int last);
    /// Finds its rows by id and by source from now on. Most tabs are shown and left again without anybody asking.
    void index() const;

    QPointer<RealizationTreeWidget> m_tree;
    QPointer<QVBoxLayout> m_layout;
    QPointer<QLabel> m_hint;
    QPointer<QWidget> m_attic; ///< keeps the tree while no page does
    QString m_tabName;
    QString m_rootId; ///< what the root's row shows where its own node says nothing
    QString m_rootLabel;
    bool m_shown = false;
    bool m_fitted = false; ///< to what is shown, while it could be seen
    int m_fittedWidth = 0; ///< of the column of ids, in pixels
    int m_revision = 0;
    mutable bool m_indexed = false;
    mutable QMultiHash<QString, QPointer<PointTreeWidgetItem>> m_rowsById;
    mutable QHash<const PointTreeWidgetItem *, QPointer<PointTreeWidgetItem>> m_rowBySource;
};

#pragma once

#include "formatsources.h"
#include "surface/realizationtreewidget.h"

#include <QHash>
#include <QLabel>
#include <QMultiHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVBoxLayout>

class PointTreeWidgetItem;

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

    /// The same for the tab that is shown; expansion, selection, current row and scroll position stay.
    void refill();

    /// The tab is called @p newName from now on; what it shows stays until it is filled again.
    void renameTab(const QString &oldName, const QString &newName);

    /// True when siblings have brought something for the tab since it was filled.
    [[nodiscard]] bool isOutdated() const;
    void clear();

    [[nodiscard]] const QString &tabName() const { return m_tabName; }

    /// The row that shows @p source; null without one.
    [[nodiscard]] PointTreeWidgetItem *rowOf(const PointTreeWidgetItem *source) const;

    /// The rows with this "id".
    [[nodiscard]] Nodes rowsWithId(const QString &id) const;
    [[nodiscard]] bool contains(const PointTreeWidgetItem *row) const;

    /// A row has been added under one of the rows.
    void enter(PointTreeWidgetItem *row);

    /// True when rows under @p row show what does not hang under the node that @p row shows.
    [[nodiscard]] bool showsOthersUnder(PointTreeWidgetItem *row) const;

    /// True when more than one root fills the tab.
    [[nodiscard]] bool isMerged() const { return m_merged; }

    /// Takes @p row with everything under it out of the tree and destroys it. What it was made from stays.
    void destroyRow(PointTreeWidgetItem *row);

    /// The "id" of @p row was another one until now.
    void rename(PointTreeWidgetItem *row, const QString &oldId);

    /// Writes texts and icons of every row anew, where they come from records that have arrived or changed.
    void relabel();

    /// Gives the ids of rows that were added or renamed the room that they need, unless the person has set it.
    void growColumns();
    void select(const Nodes &rows);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fill();
    void fitColumns();
    /// The room that the columns need is known once the tree has its size, and measuring rows reads their icons.
    void fitWhenFirstSeen();
    /// A row that had no children shows its first ones.
    void expandGrown(const QModelIndex &parent, int first, int last);
    /// Finds its rows by id and by source from now on. Most tabs are shown and left again without anybody asking.
    void index() const;
    void addToIndex(PointTreeWidgetItem *row) const;

    QPointer<RealizationTreeWidget> m_tree;
    QPointer<QVBoxLayout> m_layout;
    QPointer<QLabel> m_hint;
    QPointer<QWidget> m_attic; ///< keeps the tree while no page does
    QString m_tabName;
    bool m_shown = false;
    bool m_merged = false;
    bool m_fitted = false; ///< to what is shown, while it could be seen
    int m_fittedWidth = 0; ///< of the column of ids, in pixels
    int m_revision = 0;
    mutable bool m_indexed = false;
    mutable QMultiHash<QString, QPointer<PointTreeWidgetItem>> m_rowsById;
    mutable QHash<const PointTreeWidgetItem *, QPointer<PointTreeWidgetItem>> m_rowBySource;
};

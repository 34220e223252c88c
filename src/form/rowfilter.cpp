#include "rowfilter.h"

#include "model/keys.h"
#include "model/needle.h"
#include "model/pointtreewidgetitem.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QTreeWidget>

#include <utility>

namespace {

constexpr int matchesUnfolded = 40; // a screenful

bool holds(const PointTreeWidgetItem *node, int columns, const Needle &needle)
{
    if (!node)
        return false;
    // As a rule the first text is one of the attributes, which need not be searched twice.
    const QString shown = node->text(0);
    if (needle.isIn(shown))
        return true;
    for (int column = 1; column < columns; ++column) {
        if (needle.isIn(node->text(column)))
            return true;
    }
    static const QString keys[] { idKey, nameKey, QStringLiteral("key") };
    for (const QString &key : keys) {
        const QString value = node->properties().text(key);
        if (value.constData() != shown.constData() && needle.isIn(value))
            return true;
    }
    return false;
}

/// What every tree knows of its rows, asked for from outside.
struct Indexes : QTreeWidget
{
    using QTreeWidget::indexFromItem;
    using QTreeWidget::itemFromIndex;
    using QTreeWidget::scheduleDelayedItemsLayout;
};

QModelIndex indexOf(const QTreeWidget *tree, const QTreeWidgetItem *item)
{
    QModelIndex (QTreeWidget::*const ask)(const QTreeWidgetItem *, int) const = &Indexes::indexFromItem;
    return (tree->*ask)(item, 0);
}

QTreeWidgetItem *itemAt(const QTreeWidget *tree, const QModelIndex &index)
{
    return index.isValid() ? (tree->*&Indexes::itemFromIndex)(index) : tree->invisibleRootItem();
}

/// For changes of many rows: nothing is painted, and no header measures itself, in between.
class NoUpdates final
{
public:
    explicit NoUpdates(QWidget *widget)
        : m_widget(widget), m_enabled(!widget->testAttribute(Qt::WA_ForceUpdatesDisabled))
    {
        m_widget->setUpdatesEnabled(false);
    }
    ~NoUpdates() { m_widget->setUpdatesEnabled(m_enabled); }
    NoUpdates(const NoUpdates &) = delete;
    NoUpdates &operator=(const NoUpdates &) = delete;

private:
    QWidget *m_widget;
    bool m_enabled;
};

} // namespace

bool isInSight(QTreeWidgetItem *row)
{
    while (row && !row->isHidden())
        row = row->parent();
    return !row;
}

void RowFilter::setNeedle(const QString &needle)
{
    if (needle == m_needle)
        return;
    const bool narrows = m_fresh && !m_needle.isEmpty() && needle.contains(m_needle, Qt::CaseInsensitive);
    m_needle = needle;
    m_fresh = true;
    apply(narrows);
}

void RowFilter::setCounts(int matches, int total)
{
    const bool same = m_matches == matches && m_total == total;
    m_matches = matches;
    m_total = total;
    if (!same)
        Q_EMIT counted();
}

void RowFilter::applyLater()
{
    m_fresh = false;
    if (m_pending || m_needle.isEmpty())
        return;
    m_pending = true;
    QMetaObject::invokeMethod(this, &RowFilter::catchUp, Qt::QueuedConnection);
}

void RowFilter::catchUp()
{
    if (!std::exchange(m_pending, false))
        return;
    m_fresh = true;
    apply(false);
}

// Trees ---------------------------------------------------------------------------------------------------------------

TreeRowFilter::TreeRowFilter(QTreeWidget *tree, int rowsUnfolded)
    : RowFilter(tree), m_tree(tree), m_rowsUnfolded(rowsUnfolded)
{
    const QAbstractItemModel *model = tree->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &TreeRowFilter::take);
    const auto lookAgain = [this] {
        m_rows.clear();
        applyLater();
    };
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, lookAgain);
    connect(model, &QAbstractItemModel::modelReset, this, lookAgain);
    connect(model, &QAbstractItemModel::layoutChanged, this, lookAgain);
    connect(model, &QAbstractItemModel::dataChanged, this, lookAgain);
    connect(tree, &QTreeView::expanded, this, &TreeRowFilter::hideBelow);
}

TreeRowFilter::Rows TreeRowFilter::rowsBelow(QTreeWidgetItem *parent, int first, int last) const
{
    Rows rows;
    struct Level
    {
        QTreeWidgetItem *item;
        int row; ///< in the list, -1 for what is above all of it
        int next;
        int end;
    };
    QVector<Level> levels { { parent, -1, first, last + 1 } };
    while (!levels.isEmpty()) {
        Level &level = levels.last();
        if (level.next == level.end) {
            levels.removeLast();
            continue;
        }
        const int place = level.next++;
        QTreeWidgetItem *item = level.item->child(place);
        rows.append({ item, PointTreeWidgetItem::fromRow(item), level.row, place, true, false });
        if (item->childCount() > 0)
            levels.append({ item, rows.size() - 1, 0, item->childCount() });
    }
    return rows;
}

void TreeRowFilter::match(Rows *rows, bool narrows) const
{
    const Needle sought(needle());
    const int columns = m_tree->columnCount();
    for (Row &row : *rows) {
        if (!narrows || row.matches)
            row.matches = holds(row.node, columns, sought);
        row.kept = row.matches;
    }
    for (int i = rows->size() - 1; i >= 0; --i) {
        const Row &row = qAsConst(*rows).at(i);
        if (row.kept && row.above >= 0)
            (*rows)[row.above].kept = true;
    }
}

void TreeRowFilter::apply(bool narrows)
{
    const NoUpdates quiet(m_tree);
    const QScopedValueRollback<bool> applying(m_applying, true);
    // Folding and unfolding is but a note then, and what is to be seen is laid out once.
    (m_tree->*&Indexes::scheduleDelayedItemsLayout)();
    restoreFolding();
    if (needle().isEmpty()) {
        m_rows.clear();
        showAll();
        setCounts(0, 0);
        return;
    }
    QTreeWidgetItem *root = m_tree->invisibleRootItem();
    const bool known = !m_rows.isEmpty();
    if (!known)
        m_rows = rowsBelow(root, 0, root->childCount() - 1);
    match(&m_rows, narrows && known);
    unfoldFirst(m_rows);
    hide(m_rows, root);
    int matches = 0;
    for (const Row &row : qAsConst(m_rows))
        matches += row.matches ? 1 : 0;
    setCounts(matches, m_rows.size());
}

void TreeRowFilter::hide(const Rows &rows, QTreeWidgetItem *parent)
{
    QVector<bool> open(rows.size());
    QTreeWidgetItem *above = parent;
    QModelIndex index = indexOf(m_tree, above);
    m_hidden.insert(index);
    int looked = 0;
    for (int i = 0; i < rows.size(); ++i) {
        const Row &row = rows.at(i);
        if (row.above >= 0 && !open.at(row.above))
            continue;
        QTreeWidgetItem *rowAbove = row.above < 0 ? parent : rows.at(row.above).item;
        if (rowAbove != above) {
            above = rowAbove;
            index = indexOf(m_tree, above);
            m_hidden.insert(index);
        }
        ++looked;
        if (m_tree->isRowHidden(row.place, index) == row.kept)
            m_tree->setRowHidden(row.place, index, !row.kept);
        if (!row.kept || row.item->childCount() == 0 || !row.item->isExpanded())
            continue;
        open[i] = looked < m_rowsUnfolded;
        if (!open.at(i)) {
            m_folded.append(indexOf(m_tree, row.item));
            row.item->setExpanded(false);
        }
    }
}

void TreeRowFilter::showAll()
{
    const auto parents = std::exchange(m_hidden, {});
    for (const QPersistentModelIndex &parent : parents) {
        const int count = m_tree->model()->rowCount(parent);
        for (int row = 0; row < count; ++row) {
            if (m_tree->isRowHidden(row, parent))
                m_tree->setRowHidden(row, parent, false);
        }
    }
}

void TreeRowFilter::unfoldFirst(const Rows &rows)
{
    int left = matchesUnfolded;
    for (int i = 0; i < rows.size() && left > 0; ++i) {
        if (!rows.at(i).matches)
            continue;
        --left;
        // From the top, as a person would.
        QVector<QTreeWidgetItem *> folded;
        for (int above = rows.at(i).above; above >= 0; above = rows.at(above).above) {
            if (!rows.at(above).item->isExpanded())
                folded.prepend(rows.at(above).item);
        }
        for (QTreeWidgetItem *item : qAsConst(folded)) {
            item->setExpanded(true);
            m_unfolded.append(indexOf(m_tree, item));
        }
    }
}

void TreeRowFilter::restoreFolding()
{
    // What was unfolded may have been folded after it.
    const auto folded = std::exchange(m_folded, {});
    for (const QPersistentModelIndex &index : folded) {
        if (index.isValid())
            m_tree->expand(index);
    }
    const auto unfolded = std::exchange(m_unfolded, {});
    for (const QPersistentModelIndex &index : unfolded) {
        bool leadsToCurrent = false;
        for (QModelIndex row = m_tree->currentIndex(); row.isValid(); row = row.parent())
            leadsToCurrent = leadsToCurrent || row.parent() == index;
        if (index.isValid() && !leadsToCurrent)
            m_tree->collapse(index);
    }
}

void TreeRowFilter::take(const QModelIndex &parent, int first, int last)
{
    m_rows.clear();
    forgetLastLook();
    if (needle().isEmpty())
        return;
    // A product comes in many lots, and only what is new needs a look.
    QTreeWidgetItem *above = itemAt(m_tree, parent);
    Rows rows = rowsBelow(above, first, last);
    match(&rows, false);
    int matches = 0;
    for (const Row &row : qAsConst(rows))
        matches += row.matches ? 1 : 0;
    if (isUnfolded(above))
        hide(rows, above);
    // What shows up for their sake has other rows below it, which nobody has hidden as long as none was seen.
    for (QModelIndex row = parent; matches > 0 && row.isValid(); row = row.parent()) {
        if (m_tree->isRowHidden(row.row(), row.parent()))
            applyLater();
    }
    setCounts(this->matches() + matches, total() + rows.size());
}

void TreeRowFilter::hideBelow(const QModelIndex &parent)
{
    if (needle().isEmpty() || m_applying)
        return;
    QTreeWidgetItem *above = itemAt(m_tree, parent);
    Rows rows = rowsBelow(above, 0, above->childCount() - 1);
    match(&rows, false);
    hide(rows, above);
}

bool TreeRowFilter::isUnfolded(QTreeWidgetItem *row) const
{
    for (; row && row != m_tree->invisibleRootItem(); row = row->parent()) {
        if (!row->isExpanded())
            return false;
    }
    return true;
}

bool TreeRowFilter::goToFirst()
{
    if (needle().isEmpty())
        return false;
    QTreeWidgetItem *root = m_tree->invisibleRootItem();
    Rows rows = rowsBelow(root, 0, root->childCount() - 1);
    match(&rows, false);
    for (const Row &row : qAsConst(rows)) {
        if (!row.matches)
            continue;
        m_tree->setCurrentItem(row.item);
        m_tree->scrollToItem(row.item);
        return true;
    }
    return false;
}

// Tables --------------------------------------------------------------------------------------------------------------

TableRowFilter::TableRowFilter(QTableWidget *table) : RowFilter(table), m_table(table)
{
    const QAbstractItemModel *model = table->model();
    const auto lookAgain = [this] { applyLater(); };
    connect(model, &QAbstractItemModel::rowsInserted, this, lookAgain);
    connect(model, &QAbstractItemModel::rowsRemoved, this, lookAgain);
    connect(model, &QAbstractItemModel::modelReset, this, lookAgain);
    connect(model, &QAbstractItemModel::dataChanged, this, lookAgain);
}

void TableRowFilter::apply(bool narrows)
{
    const NoUpdates quiet(m_table);
    QHeaderView *header = m_table->verticalHeader();
    // Each row would be measured by the header, and the table told of it.
    const NoUpdates quietHeader(header);
    const QSignalBlocker silent(header);
    const Needle sought(needle());
    const int columns = m_table->columnCount();
    int matches = 0;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const bool wasHidden = m_table->isRowHidden(row);
        bool holds = needle().isEmpty();
        for (int column = 0; column < columns && !holds && !(narrows && wasHidden); ++column) {
            const QTableWidgetItem *cell = m_table->item(row, column);
            holds = cell && sought.isIn(cell->data(Qt::EditRole).toString());
        }
        matches += holds ? 1 : 0;
        if (wasHidden == holds)
            m_table->setRowHidden(row, !holds);
    }
    setCounts(needle().isEmpty() ? 0 : matches, needle().isEmpty() ? 0 : m_table->rowCount());
    header->blockSignals(false);
    Q_EMIT header->geometriesChanged();
}

bool TableRowFilter::goToFirst()
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->isRowHidden(row))
            continue;
        m_table->setCurrentCell(row, 0);
        m_table->scrollToItem(m_table->item(row, 0));
        return true;
    }
    return false;
}

#include "formattree.h"

#include "entrydelegate.h"
#include "formatfilling.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QSplitter>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace {

// How many rows beside those in sight decide on the width of a column: they are laid out for it one by one.
constexpr int rowsMeasured = 50;

QString idOf(const PointTreeWidgetItem *row)
{
    return row->properties().value(QStringLiteral("id")).toString();
}

PointTreeWidgetItem *sourceOf(PointTreeWidgetItem *row)
{
    return row && row->link() != row ? row->link()->item() : nullptr;
}

/// Expands all rows that have children. QTreeView::expandAll() takes note of each of the others, too, which is a third
/// of the time that a large format needs to appear; see FormatTree::expandGrown().
void expandBranches(QTreeWidget *tree)
{
    for (QTreeWidgetItemIterator it(tree, QTreeWidgetItemIterator::HasChildren); *it; ++it)
        (*it)->setExpanded(true);
}

/// What a person has done to the rows, by what they show; the root is the root, whoever's it is.
class ViewState final
{
public:
    explicit ViewState(QTreeWidget *tree) : m_tree(tree), m_scroll(tree->verticalScrollBar()->value())
    {
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            const PointTreeWidgetItem *key = keyOf(*it);
            if (!(*it)->isExpanded() && (*it)->childCount() > 0)
                m_collapsed.insert(key);
            if ((*it)->isSelected())
                m_selected.insert(key);
        }
        m_hasCurrent = tree->currentItem() != nullptr;
        m_current = m_hasCurrent ? keyOf(tree->currentItem()) : nullptr;
    }

    void restore() const
    {
        expandBranches(m_tree);
        QTreeWidgetItem *current = nullptr;
        for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
            const PointTreeWidgetItem *key = keyOf(*it);
            if (m_collapsed.contains(key))
                (*it)->setExpanded(false);
            if (m_hasCurrent && key == m_current)
                current = *it;
        }
        if (current)
            m_tree->setCurrentItem(current, 0, QItemSelectionModel::NoUpdate);
        for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
            if (m_selected.contains(keyOf(*it)))
                (*it)->setSelected(true);
        }
        m_tree->verticalScrollBar()->setValue(m_scroll);
    }

private:
    static const PointTreeWidgetItem *keyOf(QTreeWidgetItem *row)
    {
        return row->parent() ? sourceOf(PointTreeWidgetItem::fromRow(row)) : nullptr;
    }

    QTreeWidget *m_tree;
    int m_scroll;
    bool m_hasCurrent = false;
    const PointTreeWidgetItem *m_current = nullptr;
    QSet<const PointTreeWidgetItem *> m_collapsed;
    QSet<const PointTreeWidgetItem *> m_selected;
};

} // namespace

FormatTree::FormatTree(QObject *parent)
    : QObject(parent), m_tree(new RealizationTreeWidget), m_layout(new QVBoxLayout), m_hint(new QLabel),
      m_attic(new QWidget)
{
    m_tree->setObjectName(QStringLiteral("formatTree"));
    m_tree->setAccessibleName(tr("Format Tree"));
    m_tree->setHeaderLabel(QObject::tr("Format Tree"));
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setResizeContentsPrecision(rowsMeasured);
    m_tree->setItemDelegate(new EntryDelegate(m_tree));
    m_tree->installEventFilter(this);
    connect(m_tree->model(), &QAbstractItemModel::rowsInserted, this, &FormatTree::expandGrown);
    m_hint->setObjectName(QStringLiteral("formatHint"));
    m_hint->setText(tr("Select a point that has formats to see this format."));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    // Greyed like whatever can't be used, in any palette.
    m_hint->setEnabled(false);
    auto *splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_tree);
    splitter->setChildrenCollapsible(false);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->addWidget(splitter, 1);
    m_layout->addWidget(m_hint, 1);
    m_attic->setLayout(m_layout);
    setShown(false);
}

FormatTree::~FormatTree()
{
    delete m_attic;
}

void FormatTree::moveTo(QWidget *page)
{
    QWidget *home = page ? page : m_attic.data();
    if (!m_layout || !home || m_layout->parentWidget() == home)
        return;
    home->setLayout(m_layout);
    // What moves to another page is hidden on the way.
    setShown(m_shown);
}

void FormatTree::setShown(bool shown)
{
    if (!m_tree)
        return;
    m_shown = shown;
    m_tree->setVisible(shown);
    m_tree->parentWidget()->setVisible(shown);
    m_hint->setVisible(!shown);
}

void FormatTree::clear()
{
    m_indexed = false;
    m_rowsById.clear();
    m_rowBySource.clear();
    m_tabName.clear();
    if (!m_tree)
        return;
    m_tree->setMergedSources({});
    while (m_tree->topLevelItemCount() > 0)
        PointTreeWidgetItem::destroySubtree(PointTreeWidgetItem::fromRow(m_tree->topLevelItem(0)));
}

void FormatTree::show(const QString &name)
{
    clear();
    m_tabName = name;
    fill();
    if (!m_tree)
        return;
    expandBranches(m_tree);
    m_fitted = m_tree->isVisible();
    if (m_fitted)
        fitColumns();
}

bool FormatTree::eventFilter(QObject *watched, QEvent *event)
{
    // In this order: a tree that dies still has events, but is no such tree any more.
    if (event->type() == QEvent::Show && watched == m_tree)
        fitWhenFirstSeen();
    return QObject::eventFilter(watched, event);
}

void FormatTree::expandGrown(const QModelIndex &parent, int first, int last)
{
    if (parent.isValid() && m_tree->model()->rowCount(parent) == last - first + 1)
        m_tree->expand(parent);
}

void FormatTree::fitWhenFirstSeen()
{
    if (m_fitted || m_tree->topLevelItemCount() == 0)
        return;
    m_fitted = true;
    fitColumns();
}

void FormatTree::renameTab(const QString &oldName, const QString &newName)
{
    if (m_tabName == oldName)
        m_tabName = newName;
}

void FormatTree::refill()
{
    if (!m_tree || m_tabName.isEmpty())
        return;
    const QSignalBlocker quiet(m_tree);
    const ViewState state(m_tree);
    const QString name = m_tabName;
    m_tree->setUpdatesEnabled(false);
    clear();
    m_tabName = name;
    fill();
    state.restore();
    growColumns();
    m_tree->setUpdatesEnabled(true);
}

void FormatTree::fill()
{
    if (!m_tree)
        return;
    m_revision = Controller::instance()->formatRevision(m_tabName);
    const FormatSources sources = FormatSources::of(m_tabName);
    sources.linkSiblings();
    m_merged = sources.all().size() > 1;
    FormatFilling filling(sources);
    PointTreeWidgetItem *root = filling.build();
    if (root)
        m_tree->addTopLevelItem(root);
    m_tree->setMergedSources(filling.merged());
    m_tree->setTabName(m_tabName);
    m_tree->setDirectDrop(sources.isEditable());
}

void FormatTree::fitColumns()
{
    // The ids are what tells the rows apart, but the labels need some room as well.
    m_tree->resizeColumnToContents(0);
    const int room = m_tree->viewport()->width() * 3 / 5;
    const int narrowest = m_tree->fontMetrics().averageCharWidth() * 30;
    m_tree->setColumnWidth(0, qBound(qMin(room, narrowest), m_tree->columnWidth(0), qMax(room, narrowest)));
    m_fittedWidth = m_tree->columnWidth(0);
}

void FormatTree::growColumns()
{
    if (!m_tree || !m_tree->isVisible() || m_tree->columnWidth(0) != m_fittedWidth)
        return;
    const int before = m_fittedWidth;
    fitColumns();
    if (m_fittedWidth < before) {
        m_tree->setColumnWidth(0, before);
        m_fittedWidth = before;
    }
}

bool FormatTree::isOutdated() const
{
    return !m_tabName.isEmpty() && m_revision != Controller::instance()->formatRevision(m_tabName);
}

PointTreeWidgetItem *FormatTree::rowOf(const PointTreeWidgetItem *source) const
{
    index();
    return m_rowBySource.value(source);
}

FormatTree::Nodes FormatTree::rowsWithId(const QString &id) const
{
    // Bars and roots have none; that is no name.
    if (id.isEmpty())
        return {};
    index();
    Nodes rows;
    const auto range = m_rowsById.equal_range(id);
    for (auto it = range.first; it != range.second; ++it) {
        if (*it)
            rows.append(*it);
    }
    return rows;
}

bool FormatTree::contains(const PointTreeWidgetItem *row) const
{
    return row && m_tree && row->treeWidget() == m_tree;
}

void FormatTree::index() const
{
    if (m_indexed || !m_tree)
        return;
    m_indexed = true;
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it)
        addToIndex(PointTreeWidgetItem::fromRow(*it));
}

void FormatTree::enter(PointTreeWidgetItem *row)
{
    if (m_indexed)
        addToIndex(row);
}

void FormatTree::addToIndex(PointTreeWidgetItem *row) const
{
    m_rowsById.insert(idOf(row), row);
    if (PointTreeWidgetItem *source = sourceOf(row))
        m_rowBySource.insert(source, row);
}

bool FormatTree::showsOthersUnder(PointTreeWidgetItem *row) const
{
    for (int i = 0; i < row->childCount(); ++i) {
        PointTreeWidgetItem *child = PointTreeWidgetItem::fromRow(row->child(i));
        if (child->master()->parent() != row->master() || showsOthersUnder(child))
            return true;
    }
    return false;
}

void FormatTree::destroyRow(PointTreeWidgetItem *row)
{
    if (!row)
        return;
    if (PointTreeWidgetItem *above = row->parentItem())
        above->detachChild(row);
    Nodes open { row };
    while (!open.isEmpty()) {
        PointTreeWidgetItem *node = open.takeLast();
        m_rowsById.remove(idOf(node), node);
        m_rowBySource.remove(sourceOf(node));
        for (int i = 0; i < node->childCount(); ++i)
            open.append(PointTreeWidgetItem::fromRow(node->child(i)));
    }
    PointTreeWidgetItem::destroySubtree(row);
}

void FormatTree::rename(PointTreeWidgetItem *row, const QString &oldId)
{
    if (!m_indexed)
        return;
    m_rowsById.remove(oldId, row);
    m_rowsById.remove(idOf(row), row);
    m_rowsById.insert(idOf(row), row);
}

void FormatTree::relabel()
{
    for (QTreeWidgetItemIterator it(m_tree ? m_tree->invisibleRootItem() : nullptr); *it; ++it) {
        if ((*it)->parent())
            FormatFilling::label(PointTreeWidgetItem::fromRow(*it));
    }
}

void FormatTree::select(const Nodes &rows)
{
    if (!m_tree)
        return;
    m_tree->clearSelection();
    for (PointTreeWidgetItem *row : rows)
        row->setSelected(true);
    if (rows.isEmpty())
        return;
    // Keys go to the current row, which is not to be another one than the one in sight.
    const QSignalBlocker quiet(m_tree);
    m_tree->setCurrentItem(rows.first(), 0, QItemSelectionModel::NoUpdate);
    m_tree->scrollToItem(rows.first());
}

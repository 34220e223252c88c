#include "formattree.h"

#include "columnshare.h"
#include "entrydelegate.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/modelchanges.h"
#include "model/pointtreewidgetitem.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QSplitter>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// How many rows beside those in sight decide on the width of a column: they are laid out for it one by one.
constexpr int rowsMeasured = 50;

QString idOf(const PointTreeWidgetItem *row)
{
    return row->properties().value(idKey).toString();
}

/// Expands all rows that have children. QTreeView::expandAll() takes note of each of the others, too, which is a third
/// of the time that a large format needs to appear; see FormatTree::expandGrown().
void expandBranches(QTreeWidget *tree)
{
    for (QTreeWidgetItemIterator it(tree, QTreeWidgetItemIterator::HasChildren); *it; ++it)
        (*it)->setExpanded(true);
}

/// What a person has done to the rows of a tree, kept while rows move: a row that leaves its place loses it all.
class ViewState final
{
public:
    explicit ViewState(QTreeWidget *tree)
        : m_tree(tree), m_quiet(tree), m_scroll(tree->verticalScrollBar()->value()),
          m_current(PointTreeWidgetItem::fromRow(tree->currentItem()))
    {
        m_tree->setUpdatesEnabled(false);
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            if ((*it)->isExpanded())
                m_expanded.append(PointTreeWidgetItem::fromRow(*it));
            if ((*it)->isSelected())
                m_selected.append(PointTreeWidgetItem::fromRow(*it));
        }
    }
    ~ViewState()
    {
        for (const auto &row : qAsConst(m_expanded)) {
            if (row && !row->isExpanded())
                row->setExpanded(true);
        }
        m_tree->setCurrentItem(m_current, 0, QItemSelectionModel::NoUpdate);
        for (const auto &row : qAsConst(m_selected)) {
            if (row && !row->isSelected())
                row->setSelected(true);
        }
        m_tree->verticalScrollBar()->setValue(m_scroll);
        m_tree->setUpdatesEnabled(true);
    }
    ViewState(const ViewState &) = delete;
    ViewState &operator=(const ViewState &) = delete;

private:
    QTreeWidget *m_tree;
    QSignalBlocker m_quiet;
    int m_scroll;
    QPointer<PointTreeWidgetItem> m_current;
    QVector<QPointer<PointTreeWidgetItem>> m_expanded;
    QVector<QPointer<PointTreeWidgetItem>> m_selected;
};

/// Whether the row of a node may stand elsewhere, or there may be other rows, when this attribute changes.
bool decidesOnPlace(const QString &key)
{
    return key == idKey || key == targetKey || key == parentKey;
}

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
    // The page builder lives on, and its part of it is to be small.
    connect(m_tree, &QObject::destroyed, this, [this] {
        m_rowsById.clear();
        m_rowBySource.clear();
    });
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
    // That no row is current any more is nobody's doing.
    const QSignalBlocker quiet(m_tree);
    m_tree->setMergedSources({});
    while (m_tree->topLevelItemCount() > 0)
        PointTreeWidgetItem::destroySubtree(PointTreeWidgetItem::fromRow(m_tree->topLevelItem(0)));
}

void FormatTree::show(const QString &name)
{
    clear();
    sync(name);
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

void FormatTree::sync(const QString &name)
{
    m_tabName = name;
    if (!m_tree)
        return;
    m_revision = Controller::instance()->formatRevision(m_tabName);
    FormatSources sources = FormatSources::of(m_tabName);
    sources.linkSiblings();
    const FormatPlan plan = FormatFilling(sources).plan();
    m_rootId = plan.rootId;
    m_rootLabel = plan.rootLabel;
    m_tree->setTabName(m_tabName);
    m_tree->setDirectDrop(sources.isEditable());

    Further further;
    if (m_tree->topLevelItemCount() == 0) {
        m_indexed = false;
        // At once, so that the view need not follow row by row.
        if (!plan.rows.empty())
            m_tree->addTopLevelItem(build(plan.rows.front(), &further));
        const QSignalBlocker quiet(m_tree);
        m_tree->setCurrentItem(m_tree->topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
    } else {
        const ViewState state(m_tree);
        // Drops and the menu have put rows into the tree themselves.
        m_indexed = false;
        index();
        QSet<const PointTreeWidgetItem *> planned;
        for (const FormatPlan::Row &row : plan.rows)
            planned.insert(row.source);
        destroyAllBut(planned);
        if (!plan.rows.empty())
            arrange(placeRow(nullptr, 0, plan.rows.front().source), plan.rows.front(), &further);
        m_indexed = false;
    }
    m_tree->setMergedSources(further);
    if (m_tree->topLevelItemCount() > 0)
        label(PointTreeWidgetItem::fromRow(m_tree->topLevelItem(0)));
    growColumns();
}

PointTreeWidgetItem *FormatTree::build(const FormatPlan::Row &planned, Further *further)
{
    const auto make = [further](const FormatPlan::Row *one) {
        auto *row = new PointTreeWidgetItem(*one->source);
        FormatFilling::label(row);
        for (PointTreeWidgetItem *source : one->further)
            further->insert(row, source);
        return row;
    };
    PointTreeWidgetItem *top = make(&planned);
    QVector<QPair<PointTreeWidgetItem *, const FormatPlan::Row *>> open { { top, &planned } };
    while (!open.isEmpty()) {
        const auto [row, one] = open.takeLast();
        for (const FormatPlan::Row *child : one->children) {
            PointTreeWidgetItem *below = make(child);
            row->addChild(below, false);
            row->QTreeWidgetItem::addChild(below);
            if (!child->children.isEmpty())
                open.append({ below, child });
        }
    }
    return top;
}

void FormatTree::arrange(PointTreeWidgetItem *top, const FormatPlan::Row &planned, Further *further)
{
    QVector<QPair<PointTreeWidgetItem *, const FormatPlan::Row *>> open { { top, &planned } };
    while (!open.isEmpty()) {
        const auto [row, one] = open.takeLast();
        for (PointTreeWidgetItem *source : one->further)
            further->insert(row, source);
        for (int i = 0; i < one->children.size(); ++i)
            placeRow(row, i, one->children.at(i)->source);
        // Below them only now: a row that belongs here may still stand under its sibling.
        for (int i = one->children.size() - 1; i >= 0; --i)
            open.append({ PointTreeWidgetItem::fromRow(row->child(i)), one->children.at(i) });
    }
}

PointTreeWidgetItem *FormatTree::placeRow(PointTreeWidgetItem *above, int index, PointTreeWidgetItem *source)
{
    QTreeWidgetItem *const parent = above ? static_cast<QTreeWidgetItem *>(above) : m_tree->invisibleRootItem();
    const auto shows = [&](int at) { return sourceOf(PointTreeWidgetItem::fromRow(parent->child(at))) == source; };
    // One row that has gone elsewhere is taken out of the way, so that those behind it need not be moved one by one.
    if (!shows(index) && parent->child(index) && shows(index + 1))
        takeOut(PointTreeWidgetItem::fromRow(parent->child(index)));
    PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(parent->child(index));
    if (!shows(index)) {
        row = m_rowBySource.value(source);
        const bool isNew = !row;
        if (isNew)
            row = new PointTreeWidgetItem(*source);
        else
            takeOut(row);
        parent->insertChild(index, row);
        if (above)
            above->insertIntoListOnly(index, row);
        if (isNew)
            FormatFilling::label(row);
    }
    row->assignFields(*source);
    if (row->properties() != source->properties()) {
        row->showProperties(source->properties());
        FormatFilling::label(row);
    }
    return row;
}

void FormatTree::takeOut(PointTreeWidgetItem *row)
{
    row->takeRow();
    if (PointTreeWidgetItem *above = row->parentItem())
        above->detachChild(row);
}

void FormatTree::destroyAllBut(const QSet<const PointTreeWidgetItem *> &planned)
{
    QVector<PointTreeWidgetItem *> stale;
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(*it);
        if (!planned.contains(sourceOf(row)) || m_rowBySource.value(sourceOf(row)) != row)
            stale.append(row);
    }
    // From the lowest one up, so that what stays can be taken out of it first.
    while (!stale.isEmpty()) {
        PointTreeWidgetItem *row = stale.takeLast();
        while (row->childCount() > 0)
            takeOut(PointTreeWidgetItem::fromRow(row->child(0)));
        PointTreeWidgetItem::destroySubtree(row);
    }
}

void FormatTree::follow(const ModelChange &change, const QString &name)
{
    if (!m_tree)
        return;
    const bool moves = std::any_of(change.edits.cbegin(), change.edits.cend(), [](const ModelChange::Edit &edit) {
        // The row of the root says what the roots say together.
        return decidesOnPlace(edit.key) || (edit.node && OwnRealizations::isRoot(edit.node));
    });
    if (change.structure || moves || name != m_tabName) {
        sync(name);
    } else {
        for (const ModelChange::Edit &edit : change.edits) {
            PointTreeWidgetItem *source = edit.node;
            index();
            if (PointTreeWidgetItem *row = source ? m_rowBySource.value(source).data() : nullptr) {
                row->showProperties(source->properties());
                label(row);
            }
        }
    }
    for (const QString &id : change.records) {
        const Nodes rows = rowsWithId(id);
        for (PointTreeWidgetItem *row : rows)
            label(row);
    }
}

void FormatTree::label(PointTreeWidgetItem *row)
{
    FormatFilling::label(row);
    if (row->parentItem())
        return;
    if (!m_rootId.isEmpty())
        row->QTreeWidgetItem::setText(0, m_rootId);
    if (row->text(1).isEmpty())
        row->QTreeWidgetItem::setText(1, m_rootLabel);
}

void FormatTree::complete(PointTreeWidgetItem *row)
{
    if (!contains(row))
        return;
    const QString texts[] = { row->text(0), row->text(1) };
    label(row);
    for (int column = 0; column < 2; ++column) {
        if (!texts[column].isEmpty())
            row->QTreeWidgetItem::setText(column, texts[column]);
    }
}

PointTreeWidgetItem *FormatTree::sourceOf(PointTreeWidgetItem *row)
{
    return row && row->link() != row ? row->link()->item() : nullptr;
}

void FormatTree::fitColumns()
{
    // The ids are what tells the rows apart, but the labels need some room as well.
    m_tree->resizeColumnToContents(0);
    const QAbstractItemView *view = m_tree;
    m_tree->setColumnWidth(
        0, firstOfTwoColumns(m_tree->viewport()->width(), m_tree->columnWidth(0), view->sizeHintForColumn(1)));
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

PointTreeWidgetItem *FormatTree::rowOf(const PointTreeWidgetItem *source) const
{
    index();
    return m_rowBySource.value(source);
}

void FormatTree::index() const
{
    if (m_indexed || !m_tree)
        return;
    m_indexed = true;
    m_rowsById.clear();
    m_rowBySource.clear();
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(*it);
        m_rowsById.insert(idOf(row), row);
        if (PointTreeWidgetItem *source = sourceOf(row))
            m_rowBySource.insert(source, row);
    }
}

void FormatTree::relabel()
{
    if (!m_tree)
        return;
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it)
        label(PointTreeWidgetItem::fromRow(*it));
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

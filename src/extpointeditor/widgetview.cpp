#include "widgetview.h"

#include <QApplication>
#include <QHash>
#include <QScrollBar>
#include <QSet>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

namespace PointEditor::Internal {

namespace {

const QString tabsKey = QStringLiteral("tabs");
const QString splittersKey = QStringLiteral("splitters");
const QString treesKey = QStringLiteral("trees");
const QString cellsKey = QStringLiteral("cells");
const QString scrollKey = QStringLiteral("scroll");
const QString focusKey = QStringLiteral("focus");
// Of one tree. The last is there in a second call only: what was current at the end of the first.
const QString expandedKey = QStringLiteral("expanded");
const QString selectedKey = QStringLiteral("selected");
const QString currentKey = QStringLiteral("current");
const QString reachedKey = QStringLiteral("reached");

/// The widgets of a kind that have a name which no other one has.
template <typename Widget>
QHash<QString, Widget *> named(const QWidget &form)
{
    QHash<QString, Widget *> found;
    QSet<QString> repeated;
    const auto widgets = form.findChildren<Widget *>();
    for (Widget *widget : widgets) {
        const QString name = widget->objectName();
        if (name.isEmpty() || name.startsWith(QLatin1String("qt_")))
            continue;
        if (found.contains(name))
            repeated.insert(name);
        found.insert(name, widget);
    }
    for (const QString &name : qAsConst(repeated))
        found.remove(name);
    return found;
}

/// Calls @p act with each named widget that @p values has something for, and keeps what it returns.
template <typename Widget, typename Act>
QVariantMap forNamed(const QWidget &form, const QVariant &values, Act act)
{
    QVariantMap left;
    const QVariantMap all = values.toMap();
    const QHash<QString, Widget *> widgets = named<Widget>(form);
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        Widget *widget = widgets.value(it.key());
        const QVariant rest = widget ? act(*widget, it.value()) : it.value();
        if (rest.isValid())
            left.insert(it.key(), rest);
    }
    return left;
}

// Rows ----------------------------------------------------------------------------------------------------------------

QTreeWidgetItem *childOf(const QTreeWidget &tree, const QTreeWidgetItem *parent, int index)
{
    return parent ? parent->child(index) : tree.topLevelItem(index);
}

int childCount(const QTreeWidget &tree, const QTreeWidgetItem *parent)
{
    return parent ? parent->childCount() : tree.topLevelItemCount();
}

/// From the top row on, each with its text and its number among the siblings of the same text.
QStringList pathOf(const QTreeWidget &tree, const QTreeWidgetItem *item)
{
    QStringList path;
    for (; item; item = item->parent()) {
        int number = 0;
        for (int i = 0; childOf(tree, item->parent(), i) != item; ++i)
            number += childOf(tree, item->parent(), i)->text(0) == item->text(0) ? 1 : 0;
        path = QStringList { item->text(0), QString::number(number) } + path;
    }
    return path;
}

QTreeWidgetItem *itemAt(const QTreeWidget &tree, const QStringList &path)
{
    QTreeWidgetItem *item = nullptr;
    for (int level = 0; level + 1 < path.size(); level += 2) {
        int number = path.at(level + 1).toInt();
        QTreeWidgetItem *next = nullptr;
        for (int i = 0; i < childCount(tree, item) && !next; ++i) {
            QTreeWidgetItem *candidate = childOf(tree, item, i);
            if (candidate->text(0) == path.at(level) && number-- == 0)
                next = candidate;
        }
        if (!next)
            return nullptr;
        item = next;
    }
    return item;
}

QList<QTreeWidgetItem *> expandedRows(QTreeWidget &tree)
{
    QList<QTreeWidgetItem *> rows;
    for (QTreeWidgetItemIterator it(&tree, QTreeWidgetItemIterator::HasChildren); *it; ++it) {
        if ((*it)->isExpanded())
            rows.append(*it);
    }
    return rows;
}

/// Calls @p act with the row of each path; returns the paths that lead to none.
template <typename Act>
QVariantList forRows(const QTreeWidget &tree, const QVariant &paths, Act act)
{
    QVariantList missing;
    const QVariantList all = paths.toList();
    for (const QVariant &path : all) {
        if (QTreeWidgetItem *item = itemAt(tree, path.toStringList()))
            act(item);
        else
            missing.append(path);
    }
    return missing;
}

QVariantMap stateOf(QTreeWidget &tree)
{
    const auto paths = [&tree](const QList<QTreeWidgetItem *> &items) {
        QVariantList list;
        for (const QTreeWidgetItem *item : items)
            list.append(pathOf(tree, item));
        return list;
    };
    return {
        { expandedKey, paths(expandedRows(tree)) },
        { selectedKey, paths(tree.selectedItems()) },
        { currentKey, pathOf(tree, tree.currentItem()) },
    };
}

/// Whether what is current is something else than what @p state, of the first call, has left it at.
bool isMovedByUser(const QTreeWidget &tree, const QVariantMap &state)
{
    // A tree that gets the focus makes its first row the current one, but does not select it as a user does.
    return tree.currentItem() && tree.currentItem()->isSelected()
        && state.value(reachedKey).toStringList() != pathOf(tree, tree.currentItem());
}

QVariant applyTo(QTreeWidget &tree, const QVariant &value)
{
    const QVariantMap state = value.toMap();
    const bool first = !state.contains(reachedKey);
    QVariantMap left;
    const QVariantList expanded = state.value(expandedKey).toList();
    if (first) {
        const QList<QTreeWidgetItem *> rows = expandedRows(tree);
        for (QTreeWidgetItem *row : rows) {
            if (!expanded.contains(pathOf(tree, row)))
                row->setExpanded(false);
        }
    }
    const QVariantList unexpanded = forRows(tree, expanded, [](QTreeWidgetItem *row) { row->setExpanded(true); });
    if (!unexpanded.isEmpty())
        left.insert(expandedKey, unexpanded);

    if (first || !isMovedByUser(tree, state)) {
        const QStringList current = state.value(currentKey).toStringList();
        QTreeWidgetItem *row = current.isEmpty() ? nullptr : itemAt(tree, current);
        if (row) {
            tree.setCurrentItem(row);
            const QVariantList selected = state.value(selectedKey).toList();
            row->setSelected(selected.contains(current));
            (void)forRows(tree, selected, [](QTreeWidgetItem *other) { other->setSelected(true); });
        } else if (!current.isEmpty()) {
            left.insert(currentKey, current);
            left.insert(selectedKey, state.value(selectedKey));
        }
    }
    if (left.isEmpty())
        return {};
    left.insert(reachedKey, pathOf(tree, tree.currentItem()));
    return left;
}

// Pages, tables, scrolling --------------------------------------------------------------------------------------------

/// @p wanted is the name of a page and, in a second call, of the one that was current at the end of the first.
QVariant showPage(QTabWidget &tabs, const QVariant &wanted)
{
    const QStringList names = wanted.toStringList();
    const QString current = tabs.currentWidget() ? tabs.currentWidget()->objectName() : QString();
    const QString reached = names.value(1);
    // The user has gone to another one meanwhile.
    if (!reached.isEmpty() && reached != current)
        return {};
    for (int i = 0; i < tabs.count(); ++i) {
        if (tabs.widget(i)->objectName() != names.value(0))
            continue;
        tabs.setCurrentIndex(i);
        return {};
    }
    return QStringList { names.value(0), current };
}

/// A table shows what is current in a tree, so it has its rows once the tree is where it was.
QVariant showCell(QTableWidget &table, const QVariant &value)
{
    const QPoint cell = value.toPoint();
    if (cell.y() >= table.rowCount() || cell.x() >= table.columnCount())
        return value;
    table.setCurrentCell(cell.y(), cell.x());
    return {};
}

QPoint scrolledTo(const QAbstractItemView &view)
{
    return { view.horizontalScrollBar()->value(), view.verticalScrollBar()->value() };
}

} // namespace

QVariantMap viewOf(const QWidget &form)
{
    QVariantMap tabs;
    QVariantMap splitters;
    QVariantMap trees;
    QVariantMap cells;
    QVariantMap scrolls;
    const auto tabWidgets = named<QTabWidget>(form);
    for (auto it = tabWidgets.cbegin(); it != tabWidgets.cend(); ++it) {
        if (const QWidget *page = it.value()->currentWidget())
            tabs.insert(it.key(), page->objectName());
    }
    const auto allSplitters = named<QSplitter>(form);
    for (auto it = allSplitters.cbegin(); it != allSplitters.cend(); ++it)
        splitters.insert(it.key(), it.value()->saveState());
    const auto views = named<QAbstractItemView>(form);
    for (auto it = views.cbegin(); it != views.cend(); ++it) {
        scrolls.insert(it.key(), scrolledTo(*it.value()));
        if (auto *tree = qobject_cast<QTreeWidget *>(it.value()))
            trees.insert(it.key(), stateOf(*tree));
        const auto *table = qobject_cast<QTableWidget *>(it.value());
        if (table && table->currentRow() >= 0)
            cells.insert(it.key(), QPoint(table->currentColumn(), table->currentRow()));
    }
    const QWidget *focus = QApplication::focusWidget();
    return {
        { tabsKey, tabs },
        { splittersKey, splitters },
        { treesKey, trees },
        { cellsKey, cells },
        { scrollKey, scrolls },
        { focusKey, focus && form.isAncestorOf(focus) ? focus->objectName() : QString() },
    };
}

ViewRestoration::ViewRestoration(const QVariantMap &view, QWidget *form, QObject *parent)
    : QObject(parent), m_form(form), m_scroll(view.value(scrollKey).toMap())
{
    (void)forNamed<QSplitter>(*form, view.value(splittersKey), [](QSplitter &splitter, const QVariant &state) {
        splitter.restoreState(state.toByteArray());
        return QVariant();
    });
    m_left = {
        { tabsKey, forNamed<QTabWidget>(*form, view.value(tabsKey), showPage) },
        { treesKey, forNamed<QTreeWidget>(*form, view.value(treesKey), applyTo) },
        { cellsKey, forNamed<QTableWidget>(*form, view.value(cellsKey), showCell) },
    };
    const QString focus = view.value(focusKey).toString();
    if (auto *widget = focus.isEmpty() ? nullptr : form->findChild<QWidget *>(focus))
        widget->setFocus(Qt::OtherFocusReason);
    // Once everything has its size.
    QTimer::singleShot(0, this, &ViewRestoration::scroll);
}

bool ViewRestoration::awaitsPage() const
{
    return !m_left.value(tabsKey).toMap().isEmpty();
}

void ViewRestoration::finish()
{
    if (!m_form)
        return;
    const QVariantMap left = std::exchange(m_left, {});
    // A table then shows what the user wants to see.
    bool userMoved = false;
    (void)forNamed<QTreeWidget>(
        *m_form, left.value(treesKey), [&userMoved](const QTreeWidget &tree, const QVariant &state) {
            userMoved = userMoved || isMovedByUser(tree, state.toMap());
            return QVariant();
        });
    (void)forNamed<QTabWidget>(*m_form, left.value(tabsKey), showPage);
    (void)forNamed<QTreeWidget>(*m_form, left.value(treesKey), applyTo);
    if (!userMoved)
        (void)forNamed<QTableWidget>(*m_form, left.value(cellsKey), showCell);
    scroll();
}

void ViewRestoration::scroll()
{
    if (!m_form)
        return;
    m_scroll = forNamed<QAbstractItemView>(*m_form, m_scroll, [this](QAbstractItemView &view, const QVariant &value) {
        const QString name = view.objectName();
        // The user's own scrolling stands.
        if (m_scrolledTo.contains(name) && m_scrolledTo.value(name).toPoint() != scrolledTo(view))
            return QVariant();
        view.doItemsLayout();
        view.horizontalScrollBar()->setValue(value.toPoint().x());
        view.verticalScrollBar()->setValue(value.toPoint().y());
        m_scrolledTo.insert(name, scrolledTo(view));
        return scrolledTo(view) == value.toPoint() ? QVariant() : value;
    });
}

} // namespace PointEditor::Internal

#include "pagemenus.h"

#include "form/drops/pointdrop.h"
#include "form/drops/tabledrop.h"
#include "form/realizationtablewidget.h"
#include "form/rowfilter.h"
#include "form/tabfocus.h"
#include "formatediting.h"
#include "formatmenu.h"
#include "formattree.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "realizationpagebuilder.h"
#include "recordtable.h"
#include "sheetpane.h"

#include <QMenu>
#include <QShortcut>

#include <utility>

using What = NodeClipboard::What;

PageMenus::PageMenus(FormatTree *tree, RealizationTreeWidget *points, RealizationTableWidget *table,
    RecordTable *records, SheetPane *sheet, RealizationPageBuilder *page)
    : QObject(page), m_tree(tree), m_points(points), m_table(table), m_records(records), m_sheet(sheet), m_page(page),
      m_clipboard(tree), m_formatMenu(new FormatMenu(this)), m_tableMenu(std::make_unique<QMenu>()),
      m_pointMenu(std::make_unique<QMenu>())
{
    createMenus();
    for (QAbstractItemView *view : std::initializer_list<QAbstractItemView *> { points, tree->widget(), table }) {
        view->setContextMenuPolicy(Qt::CustomContextMenu);
        m_menuKey.watch(view);
    }
    connect(points, &QWidget::customContextMenuRequested, this, &PageMenus::openForPoints);
    connect(tree->widget(), &QWidget::customContextMenuRequested, page, &RealizationPageBuilder::onFormatTreeMenu);
    connect(table, &QWidget::customContextMenuRequested, page, &RealizationPageBuilder::onTableShowMenu);
    createKeys();
}

PageMenus::~PageMenus() = default;

PointTreeWidgetItem *PageMenus::takeTarget()
{
    return std::exchange(m_target, nullptr);
}

QAction *PageMenus::add(QMenu *menu, const QString &text, const QKeySequence &key) const
{
    // The menu belongs to no widget, so that this says only which key it is.
    QAction *action = menu->addAction(text);
    action->setShortcut(key);
    return action;
}

void PageMenus::createMenus()
{
    QMenu *formats = m_formatMenu->menu();
    connect(m_formatMenu->deleteAction(), &QAction::triggered, m_page, &RealizationPageBuilder::formatItemDel);
    connect(add(formats, tr("Copy"), QKeySequence::Copy), &QAction::triggered, this,
        [this] { takeEntry(What::Entry, m_target); });
    m_cutEntry = add(formats, tr("Cut"), QKeySequence::Cut);
    connect(m_cutEntry, &QAction::triggered, this, [this] { takeEntry(What::CutEntry, m_target); });
    m_pasteEntry = add(formats, tr("Paste"), QKeySequence::Paste);
    connect(m_pasteEntry, &QAction::triggered, this, [this] { paste(m_target); });

    m_tableMenu->setObjectName(QStringLiteral("tableMenu"));
    m_deleteRecord = m_tableMenu->addAction(tr("Delete"));
    connect(m_deleteRecord, &QAction::triggered, m_page, &RealizationPageBuilder::tableItemDel);
    connect(m_tableMenu->addAction(QObject::tr("Meta")), &QAction::triggered, m_page, &RealizationPageBuilder::addMeta);
    m_createHere = add(m_tableMenu.get(), tr("Create Record"), Qt::Key_Insert);
    connect(m_createHere, &QAction::triggered, this, [this] { createRecord(m_records->point()); });
    m_copyRecord = add(m_tableMenu.get(), tr("Copy"), QKeySequence::Copy);
    connect(m_copyRecord, &QAction::triggered, this, [this] { copy(What::Record, m_target); });
    m_pasteRecord = add(m_tableMenu.get(), tr("Paste"), QKeySequence::Paste);
    connect(m_pasteRecord, &QAction::triggered, this, [this] { createRecord(m_clipboard.point()); });

    m_pointMenu->setObjectName(QStringLiteral("pointMenu"));
    m_createRecord = add(m_pointMenu.get(), tr("Create Record"), Qt::Key_Insert);
    connect(m_createRecord, &QAction::triggered, this, [this] { createRecord(m_point); });
    m_copyPoint = add(m_pointMenu.get(), tr("Copy"), QKeySequence::Copy);
    connect(m_copyPoint, &QAction::triggered, this, [this] { copy(What::Point, m_point); });
}

void PageMenus::createKeys()
{
    // Whatever is asked for comes after what is being typed.
    const auto onKey = [this](QWidget *widget, const QKeySequence &key, auto action) {
        connect(new QShortcut(key, widget, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
            [this, action] {
                m_sheet->commit();
                action();
            });
    };
    RealizationTreeWidget *tree = m_tree->widget();
    onKey(tree, Qt::Key_Delete, [this] { deleteEntry(); });
    onKey(tree, Qt::Key_Insert, [this] { createChild(); });
    onKey(tree, QKeySequence::Copy, [this] { takeEntry(What::Entry, currentEntry()); });
    onKey(tree, QKeySequence::Cut, [this] { takeEntry(What::CutEntry, currentEntry()); });
    onKey(tree, QKeySequence::Paste, [this] { paste(currentEntry()); });
    onKey(tree, Qt::ALT + Qt::Key_Up, [this] { moveEntry(-1); });
    onKey(tree, Qt::ALT + Qt::Key_Down, [this] { moveEntry(1); });
    onKey(m_table, Qt::Key_Delete, [this] { deleteRecord(); });
    onKey(m_table, Qt::Key_Insert, [this] { createRecord(m_records->point()); });
    onKey(m_table, QKeySequence::Copy, [this] { copy(What::Record, currentRecord()); });
    onKey(m_table, QKeySequence::Paste, [this] { createRecord(m_clipboard.point()); });
    onKey(m_points, Qt::Key_Insert, [this] { createRecord(currentPoint()); });
    onKey(m_points, QKeySequence::Copy, [this] { copy(What::Point, currentPoint()); });
    TabFocus::onArrival(m_table, [this] {
        const PointTreeWidgetItem *record = currentRecord();
        if (record && m_sheet->node() != record)
            m_page->onTableItemClicked(m_table->item(m_table->currentRow(), 0));
    });
    TabFocus::onArrival(tree, [this] {
        if (PointTreeWidgetItem *row = currentEntry())
            m_page->onFormatTreeItemClicked(row, 0);
    });
    for (QWidget *widget : std::initializer_list<QWidget *> { m_points, tree, m_table }) {
        onKey(widget, Qt::Key_F2, [this] {
            m_sheet->openEditor({ QStringLiteral("text"), QStringLiteral("title"), idKey });
        });
    }
}

PointTreeWidgetItem *PageMenus::currentPoint() const
{
    QTreeWidgetItem *row = m_points->currentItem();
    return isInSight(row) ? PointTreeWidgetItem::fromRow(row) : nullptr;
}

PointTreeWidgetItem *PageMenus::currentEntry() const
{
    QTreeWidgetItem *row = m_tree->widget()->currentItem();
    return isInSight(row) ? PointTreeWidgetItem::fromRow(row) : nullptr;
}

PointTreeWidgetItem *PageMenus::currentRecord() const
{
    const int row = m_table->currentRow();
    return row >= 0 && !m_table->isRowHidden(row) ? m_records->record(row) : nullptr;
}

void PageMenus::deleteEntry()
{
    m_target = currentEntry();
    m_formatMenu->fitTo(m_target);
    // One that is disabled takes no keys, not even those that close it.
    if (m_menuKey.isByKey() && !m_formatMenu->menu()->isEnabled())
        return;
    if (m_target && m_formatMenu->deleteAction()->isEnabled() && m_target->isSelected())
        m_page->formatItemDel();
}

void PageMenus::createChild()
{
    m_target = currentEntry();
    if (!m_target)
        return;
    RealizationTreeWidget *tree = m_tree->widget();
    tree->scrollToItem(m_target);
    m_formatMenu->fitTo(m_target);
    const QPoint place = tree->visualItemRect(m_target).bottomLeft();
    if (m_formatMenu->childTypeMenu()->isEnabled())
        openFormatMenu(m_formatMenu->childTypeMenu(), tree->viewport()->mapToGlobal(place));
}

void PageMenus::moveEntry(int step)
{
    const QPointer<PointTreeWidgetItem> row(currentEntry());
    if (!FormatEditing::moveByOne(row, step))
        return;
    Controller::instance()->flushChanges();
    if (m_tree->contains(row)) {
        // The view selects a neighbour while the row is out of it.
        m_tree->widget()->setCurrentItem(row, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        m_tree->widget()->scrollToItem(row);
    }
    Q_EMIT m_page->modified(true);
}

void PageMenus::deleteRecord()
{
    m_target = currentRecord();
    m_page->tableItemDel();
}

void PageMenus::createRecord(PointTreeWidgetItem *point)
{
    if (!TableDrop::takes(point))
        return;
    // As in a drag, where the press has shown its records.
    if (point != m_points->currentItem())
        m_points->setCurrentItem(point);
    m_table->drop(point);
    m_table->setFocus(Qt::OtherFocusReason);
}

void PageMenus::copy(What what, PointTreeWidgetItem *node)
{
    if (what != What::Point || PointDrop::takes(node))
        m_clipboard.take(what, node);
}

void PageMenus::takeEntry(What what, PointTreeWidgetItem *row)
{
    PointTreeWidgetItem *source = FormatTree::sourceOf(row);
    // An entry of somebody else's can be named, but not taken away.
    if (what == What::Entry || FormatEditing::isDeletable(row))
        m_clipboard.take(what, source ? source : row);
}

void PageMenus::paste(PointTreeWidgetItem *row)
{
    const QPointer<PointTreeWidgetItem> copied(m_clipboard.pasteOnto(row));
    if (!copied)
        return;
    Controller::instance()->flushChanges();
    m_page->showEntry(m_tree->rowOf(copied));
    Q_EMIT m_page->modified(true);
}

void PageMenus::openForPoints(const QPoint &pos)
{
    m_point = PointTreeWidgetItem::fromRow(m_points->itemAt(pos));
    m_sheet->commit();
    if (!m_point)
        return;
    m_createRecord->setEnabled(TableDrop::takes(m_point));
    m_copyPoint->setEnabled(PointDrop::takes(m_point));
    m_pointMenu->addActions(m_points->actions());
    m_pointMenu->exec(m_menuKey.place());
}

void PageMenus::openForTree(const QPoint &pos)
{
    // The row may move by what is committed, but it is the one that was meant.
    const QPointer<PointTreeWidgetItem> row(PointTreeWidgetItem::fromRow(m_tree->widget()->itemAt(pos)));
    m_sheet->commit();
    m_target = row;
    if (!m_target)
        return;
    m_formatMenu->fitTo(m_target);
    m_cutEntry->setEnabled(FormatEditing::isDeletable(m_target));
    m_pasteEntry->setEnabled(m_clipboard.fits(m_target));
    openFormatMenu(m_formatMenu->menu(), m_menuKey.place());
}

void PageMenus::openFormatMenu(QMenu *menu, const QPoint &globalPos)
{
    const QList<QAction *> types = m_formatMenu->childTypeMenu()->actions();
    for (QAction *type : types)
        connect(type, &QAction::triggered, m_page, &RealizationPageBuilder::onCreatType);
    menu->exec(globalPos);
}

void PageMenus::openForTable(const QPoint &pos)
{
    const QModelIndex index = m_table->indexAt(pos);
    const QPointer<PointTreeWidgetItem> record(index.isValid() ? m_records->record(index.row()) : nullptr);
    m_sheet->commit();
    m_target = record;
    m_deleteRecord->setEnabled(m_target != nullptr);
    m_copyRecord->setEnabled(m_target != nullptr);
    m_createHere->setEnabled(TableDrop::takes(m_records->point()));
    m_pasteRecord->setEnabled(TableDrop::takes(m_clipboard.point()));
    // What others offer for the row.
    m_tableMenu->addActions(m_table->actions());
    m_tableMenu->exec(m_menuKey.place());
}

#include "pagemenus.h"

#include "formatmenu.h"
#include "formattree.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "realizationpagebuilder.h"
#include "recordtable.h"
#include "sheetpane.h"

#include <QCursor>
#include <QMenu>
#include <QShortcut>
#include <QTableWidget>

#include <utility>

PageMenus::PageMenus(
    FormatTree *tree, QTableWidget *table, RecordTable *records, SheetPane *sheet, RealizationPageBuilder *page)
    : QObject(page), m_tree(tree), m_table(table), m_records(records), m_sheet(sheet), m_page(page),
      m_formatMenu(new FormatMenu(this)), m_tableMenu(std::make_unique<QMenu>())
{
    connect(m_formatMenu->deleteAction(), &QAction::triggered, page, &RealizationPageBuilder::formatItemDel);
    m_tableMenu->setObjectName(QStringLiteral("tableMenu"));
    m_deleteRecord = m_tableMenu->addAction(QStringLiteral("Delete"));
    connect(m_deleteRecord, &QAction::triggered, page, &RealizationPageBuilder::tableItemDel);
    connect(m_tableMenu->addAction(QObject::tr("Meta")), &QAction::triggered, page, &RealizationPageBuilder::addMeta);

    tree->widget()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tree->widget(), &QWidget::customContextMenuRequested, page, &RealizationPageBuilder::onFormatTreeMenu);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table, &QWidget::customContextMenuRequested, page, &RealizationPageBuilder::onTableShowMenu);
    createKeys();
}

PageMenus::~PageMenus() = default;

PointTreeWidgetItem *PageMenus::takeTarget()
{
    return std::exchange(m_target, nullptr);
}

void PageMenus::createKeys()
{
    const auto onKey = [this](QWidget *widget, const QKeySequence &key, auto action) {
        connect(new QShortcut(key, widget, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this, action);
    };
    RealizationTreeWidget *tree = m_tree->widget();
    onKey(tree, QKeySequence(Qt::Key_Delete), [this, tree] {
        m_sheet->commit();
        m_target = PointTreeWidgetItem::fromRow(tree->currentItem());
        m_formatMenu->fitTo(m_target);
        if (m_formatMenu->deleteAction()->isEnabled() && m_target->isSelected())
            m_page->formatItemDel();
    });
    onKey(tree, QKeySequence(Qt::Key_Insert), [this, tree] {
        m_sheet->commit();
        QTreeWidgetItem *current = tree->currentItem();
        if (!current || !current->isSelected())
            return;
        m_target = PointTreeWidgetItem::fromRow(current);
        m_formatMenu->fitTo(m_target);
        const QPoint place = tree->visualItemRect(current).bottomLeft();
        if (m_formatMenu->childTypeMenu()->isEnabled())
            openFormatMenu(m_formatMenu->childTypeMenu(), tree->viewport()->mapToGlobal(place));
    });
    onKey(m_table, QKeySequence(Qt::Key_Delete), [this] {
        m_sheet->commit();
        m_target = m_records->record(m_table->currentRow());
        m_page->tableItemDel();
    });
    for (QWidget *widget : { static_cast<QWidget *>(tree), static_cast<QWidget *>(m_table) }) {
        onKey(widget, QKeySequence(Qt::Key_F2), [this] {
            m_sheet->openEditor({ QStringLiteral("text"), QStringLiteral("title"), idKey });
        });
    }
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
    openFormatMenu(m_formatMenu->menu(), QCursor::pos());
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
    m_tableMenu->exec(QCursor::pos());
}

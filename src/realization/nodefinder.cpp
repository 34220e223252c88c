#include "nodefinder.h"

#include "formattabs.h"
#include "formattree.h"
#include "model/controller.h"
#include "model/keys.h"
#include "realizationpagebuilder.h"
#include "recordtable.h"
#include "sheetpane.h"

#include <QPointer>
#include <QTreeWidgetItemIterator>

void NodeFinder::show(PointTreeWidgetItem *node, const QString &key) const
{
    const QPointer<PointTreeWidgetItem> sought(node);
    sheet->commit();
    if (!sought)
        return;
    const bool isHolder = sought->isKind(QLatin1String("ExtData"));
    showPoint(isHolder ? sought->properties().text(idKey) : sought->pointId());
    if (!sought)
        return;
    if (isHolder) {
        if (sheet->node() != sought)
            sheet->show(SheetPane::Subject::Holder, sought);
    } else if (OwnRealizations::isRecord(sought)) {
        if (!showRecord(sought))
            sheet->show(SheetPane::Subject::Record, sought);
    } else if (!showEntry(sought)) {
        sheet->show(SheetPane::Subject::Entry, sought);
    }
    sheet->openEditor({ key });
}

void NodeFinder::showPoint(const QString &pointId) const
{
    PointTreeWidgetItem *point = Controller::instance()->definitions().first(pointId);
    if (!point || point->treeWidget() != ui->realizationTree)
        return;
    ui->realizationTree->setCurrentItem(point);
    ui->realizationTree->scrollToItem(point);
    page->onItemClicked(point, 0);
}

bool NodeFinder::showRecord(PointTreeWidgetItem *record) const
{
    const int row = records->row(record);
    if (row < 0)
        return false;
    ui->realizTable->setCurrentCell(row, 0);
    ui->realizTable->scrollToItem(ui->realizTable->item(row, 0));
    page->onTableItemClicked(ui->realizTable->item(row, 0));
    return sheet->node() == record;
}

bool NodeFinder::showEntry(PointTreeWidgetItem *entry) const
{
    PointTreeWidgetItem *root = entry;
    while (root && !OwnRealizations::isRoot(root))
        root = root->parentItem();
    if (!root)
        return false;
    const QPointer<PointTreeWidgetItem> sought(entry);
    tabs->show(root);
    for (QTreeWidgetItemIterator it(tree->widget()); sought && *it; ++it) {
        PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(*it);
        if (!row || row->master() != sought->master())
            continue;
        tree->widget()->setCurrentItem(row);
        tree->widget()->scrollToItem(row);
        page->onFormatTreeItemClicked(row, 0);
        return sheet->node() == sought;
    }
    return false;
}

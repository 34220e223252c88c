#include "entrydelegate.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

#include <QTreeWidget>
#include <QVarLengthArray>

namespace {

QTreeWidgetItem *itemAt(const QTreeWidget *tree, QModelIndex index)
{
    QVarLengthArray<int, 32> rows;
    for (; index.isValid(); index = index.parent())
        rows.append(index.row());
    QTreeWidgetItem *item = tree->invisibleRootItem();
    for (int level = rows.size() - 1; item && level >= 0; --level)
        item = item->child(rows.at(level));
    return item;
}

} // namespace

EntryDelegate::EntryDelegate(QTreeWidget *tree) : QStyledItemDelegate(tree), m_tree(tree) { }

void EntryDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(itemAt(m_tree, index));
    if (Controller::instance()->ownRealizations().isForeign(row))
        option->palette.setColor(QPalette::Text, option->palette.color(QPalette::Disabled, QPalette::Text));
}

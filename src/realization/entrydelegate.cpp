#include "entrydelegate.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

#include <QTreeWidget>

namespace {

QTreeWidgetItem *itemAt(const QTreeWidget *tree, const QModelIndex &index)
{
    if (!index.isValid())
        return tree->invisibleRootItem();
    const QTreeWidgetItem *above = itemAt(tree, index.parent());
    return above ? above->child(index.row()) : nullptr;
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

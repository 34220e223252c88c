#include "entrydelegate.h"

#include "form/problemmark.h"
#include "form/rowatindex.h"
#include "model/controller.h"
#include "propertybrowser/invalidmark.h"

EntryDelegate::EntryDelegate(QTreeWidget *tree) : QStyledItemDelegate(tree), m_tree(tree)
{
    ProblemMark::follow(tree);
}

void EntryDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    PointTreeWidgetItem *row = index.column() == 0 ? rowAtIndex(m_tree, index) : nullptr;
    const bool isMarked = !ProblemMark::reasons(row).isEmpty();
    QStyledItemDelegate::paint(painter, isMarked ? ProblemMark::paint(painter, option) : option, index);
}

void EntryDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    PointTreeWidgetItem *row = rowAtIndex(m_tree, index);
    if (Controller::instance()->ownRealizations().isForeign(row))
        option->palette.setColor(QPalette::Text,
            InvalidMark::paler(option->palette.color(QPalette::Base), option->palette.color(QPalette::Text)));
}

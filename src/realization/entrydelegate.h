#pragma once

#include <QStyledItemDelegate>

class QTreeWidget;

/// Paints the entries of siblings in a format tree greyed, since they can't be edited here; the opened plug-in's own
/// stand out, marked where they have a problem. Owned by its tree. GUI thread.
class EntryDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit EntryDelegate(QTreeWidget *tree);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    QTreeWidget *m_tree;
};

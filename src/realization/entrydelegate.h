#pragma once

#include <QStyledItemDelegate>

class QTreeWidget;

/// Paints the entries of siblings in a format tree greyed, since they can't be edited here; the opened plug-in's own
/// stand out. Owned by its tree. GUI thread.
class EntryDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit EntryDelegate(QTreeWidget *tree);

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    QTreeWidget *m_tree;
};

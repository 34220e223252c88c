#pragma once

#include <QObject>
#include <QPointer>

class QTreeWidget;
class QTreeWidgetItem;

/// Has the opened plug-in stand out among all others in the realization tree: in bold, unfolded, and in sight until the
/// product is read or the user goes elsewhere, whatever rows come in before it. Owned by the page builder; the tree is
/// the form's and may die first. GUI thread.
class OwnPluginRows final : public QObject
{
    Q_OBJECT

public:
    explicit OwnPluginRows(QTreeWidget *tree, QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Once for all rows that come in a turn of the event loop: each look at the tree may cost it a layout.
    void lookLater();
    void look();
    void keepInSight(QTreeWidgetItem *row);

    QPointer<QTreeWidget> m_tree;
    bool m_lookPending = false;
    bool m_following = true;
    int m_scrolledTo = 0;
};

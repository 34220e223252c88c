#pragma once

#include <QHash>
#include <QPointer>
#include <QString>
#include <QVector>

class PointTreeWidgetItem;

/// Merges format roots that name the same "target". Remembers what it has merged into each root, so that a product in
/// which every plug-in adds to one menu bar costs each plug-in what it brings, and not what all before it have brought.
/// Owned by the manager; owns no node. GUI thread.
class FormatMerger final
{
public:
    FormatMerger();
    ~FormatMerger();
    FormatMerger(const FormatMerger &) = delete;
    FormatMerger &operator=(const FormatMerger &) = delete;

    /// Moves what @p arrived brings into @p known, model and rows: the entries of its bars ("MenuBar", "ToolBars", in
    /// any letter case) into the bars of the same kind, and its other children as they are. Then every child of @p
    /// known that names a "parent" goes under the node with that id, see place().
    ///
    /// Once a bar's entries have been moved, the children of @p arrived that follow stay where they are: the flag that
    /// says so is never reset. They are shown all the same, since a tab also shows what is left under a merged root.
    void merge(PointTreeWidgetItem *known, PointTreeWidgetItem *arrived);

    void clear();

private:
    using Node = QPointer<PointTreeWidgetItem>;

    /// What is known of one root. Ids are folded to lower case.
    struct Root
    {
        QHash<QString, QVector<Node>> nodesOfId; ///< everything below the root that has an "id"
        QHash<QString, QVector<Node>> waiting;   ///< children of the root by the "parent" that they name
        QVector<Node> bars;
    };

    void takeIn(Root &root, PointTreeWidgetItem *node, QVector<QString> *newIds);
    void placeAll(
        PointTreeWidgetItem *known, Root &root, const QVector<Node> &newChildren, const QVector<QString> &newIds);

    /// Puts @p node, a child of @p known, under the nodes that the search for its "parent" finds. The search goes
    /// through the children in order; on a level it stops with the first match, but one branch may have a match of its
    /// own although another has given one. The node is taken out of the place that was searched, which is its own place
    /// only on the first level: deeper down it stays a child of @p known as well. A node is never put under itself or
    /// under one of its descendants.
    void place(PointTreeWidgetItem *known, const Root &root, PointTreeWidgetItem *node);

    QHash<PointTreeWidgetItem *, Root> m_roots;
};

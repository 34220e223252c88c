#pragma once

#include <memory>
#include <unordered_map>

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
    /// any letter case) into the first bar of the same kind, and its other children as they are. A bar whose entries
    /// there is no bar for, or that has none, is moved whole. A bar of @p known is every one that stands in its list,
    /// also where its "parent" has put it elsewhere as well.
    ///
    /// Once a bar's entries have been moved, the children of @p arrived that follow stay where they are: the flag that
    /// says so is never reset. They are shown all the same, since a tab also shows what is left under a merged root.
    ///
    /// Then every child of @p known that names a "parent" is put under the nodes with that id that a search finds. The
    /// search goes through the children in order; on a level it stops with the first match, but one branch may have a
    /// match of its own although another has given one. The node is taken out of the list that was searched, which is
    /// its own only on the first level: with a match deeper down it stays a child of @p known as well. A node is never
    /// put under itself or under one of its descendants; the search stops at such a match all the same.
    ///
    /// A merge that would take seconds, since thousands of children name an id that thousands of nodes have, leaves
    /// those that are still to be put somewhere where they are, and logs how many.
    void merge(PointTreeWidgetItem *known, PointTreeWidgetItem *arrived);

    void clear();

private:
    class Root;

    std::unordered_map<const PointTreeWidgetItem *, std::unique_ptr<Root>> m_roots;
};

#pragma once

#include "pointtreewidgetitem.h"

#include <QVarLengthArray>

/// Goes through @p top and all that stands below it in the lists of children, in document order: @p enter is called for
/// a node before what is below it, @p leave after that. A loop, since a file may be nested deeper than a stack carries.
template <typename Enter, typename Leave>
void walkSubtree(PointTreeWidgetItem *top, Enter enter, Leave leave)
{
    struct Level
    {
        PointTreeWidgetItem *node;
        int next; ///< among its children
    };
    QVarLengthArray<Level, 32> levels;
    enter(top);
    levels.append({ top, 0 });
    while (!levels.isEmpty()) {
        Level &level = levels.last();
        if (level.next >= level.node->children().size()) {
            leave(level.node);
            levels.removeLast();
            continue;
        }
        PointTreeWidgetItem *child = level.node->children().at(level.next++)->item();
        if (!child)
            continue;
        enter(child);
        levels.append({ child, 0 });
    }
}

template <typename Visitor>
void forSubtree(PointTreeWidgetItem *top, Visitor visit)
{
    walkSubtree(top, visit, [](PointTreeWidgetItem *) {});
}

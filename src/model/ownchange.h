#pragma once

#include <QString>

class OwnState;

/// What was done to the opened file between two states, as far as it can be said in one sentence: what belongs to it as
/// a consequence (what holds a first record, references that follow an id) is not told. Plain data.
struct OwnChange
{
    enum class What { Nothing, Removed, Added, Moved, Edited };

    What what = What::Nothing;
    bool definition = false; ///< on the side of the points
    bool root = false;       ///< about the plug-in itself
    QString kind;            ///< of the node: its element's name
    QString name;            ///< its "id", else its "key", else its "name"; may be empty
    QString key;             ///< of the attribute that was edited
    int number = 1;          ///< of nodes that were removed, added or moved; more than one leaves the names empty
    int below = 0;           ///< nodes that went with the removed one

    [[nodiscard]] static OwnChange between(const OwnState &before, const OwnState &after);
};

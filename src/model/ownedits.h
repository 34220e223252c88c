#pragma once

#include "ownrealizations.h"

/// Changes of the opened file's realization side that reach more than one node: lists, rows and references follow. Made
/// by the manager where it is needed; one made without a manager changes nothing. GUI thread.
class OwnEdits final
{
public:
    OwnEdits() = default;
    OwnEdits(const NodeIndexes *indexes, PointTreeWidgetItem *root, const OwnRealizations &own);

    /// The first "ExtDataSet"; it is made when there is none. Null only without a manager.
    [[nodiscard]] PointTreeWidgetItem *ensureDataSet() const;

    /// Puts @p node, made for the opened file, under @p parent in both trees; at the end or, with an @p index, before
    /// the child that stands there.
    static void insert(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index = -1);

    /// Moves @p node within the opened file, to the end of @p parent or, with an @p index counted after its removal,
    /// before the child that stands there. False, and nothing moved, when it would come to stand under itself.
    static bool move(PointTreeWidgetItem *node, PointTreeWidgetItem *parent, int index = -1);

    /// Stores the "id" of a record; the references to it in the opened file follow. An emptied id is not followed,
    /// since nothing would lead back.
    void renameRecord(PointTreeWidgetItem *record, const QString &id) const;

    /// The point @p old is called @p now: what the opened file holds for it follows, unless another point has one of
    /// the names or the file holds something for the new one already.
    void followPointId(const QString &old, const QString &now) const;

private:
    const NodeIndexes *m_indexes = nullptr;
    PointTreeWidgetItem *m_root = nullptr;
    OwnRealizations m_own;
};

#pragma once

#include "nodeindex.h"

#include <QHash>
#include <QString>

/// Finds the definitions of one key that belong to one point. Thousands of plug-ins use keys like "action" for sub
/// points of their own; the first question about such a key sorts its definitions by point, and from then on the order
/// is kept. Owned by NodeIndexes, which says what changes; owns no node. GUI thread only.
class DefinitionParts final
{
public:
    using Nodes = NodeIndex::Nodes;

    /// The nodes of @p points under @p key whose point id is @p pointId, compared without letter case, in the order of
    /// the index.
    [[nodiscard]] Nodes find(const NodeIndex &points, const QString &key, const QString &pointId) const;

    void added(const QString &key, PointTreeWidgetItem *node);
    void removed(const QString &key, PointTreeWidgetItem *node);

    /// The point id of @p node was @p oldPointId until now.
    void moved(PointTreeWidgetItem *node, const QString &oldPointId);

    /// Forgets the order of one key, or of all; the next question finds it again.
    void forget(const QString &key) { m_sorted.remove(key); }
    void reset() { m_sorted.clear(); }

private:
    mutable QHash<QString, QHash<QString, Nodes>> m_sorted; ///< by key, then by folded point id
};

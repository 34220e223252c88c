#pragma once

#include "definitionparts.h"
#include "nodeindex.h"

#include <array>

/// Every index of one manager, and the promise that a node which is destroyed stands in none of them.
/// GUI thread only; owns no node. Owned by its manager.
class NodeIndexes final
{
public:
    enum Name {
        Points,       ///< point key to definition node: a point under its "id", a sub point under its lower-cased "key"
        DataChildren, ///< "id" to a child of a scanned "ExtData"; one node per id, the last one that came
        Data,         ///< "id" to any other scanned realization node
        Targets,      ///< "target", or "id" without one, to the opened file's formats; see RealizationIndexing
        Realizations, ///< "id", or the tag name without one, to the opened file's realization nodes
        Layouts,      ///< the opened file's layouts, all under the empty key, in document order
        FormatTargets,  ///< "target" to the scanned format root seen first with it
        Formats,        ///< plug-in id to scanned format root
        SiblingFormats, ///< name of the tab to every scanned format root and layout that fills it
        NameCount
    };

    NodeIndexes() = default;
    NodeIndexes(const NodeIndexes &) = delete;
    NodeIndexes &operator=(const NodeIndexes &) = delete;
    ~NodeIndexes();

    void add(Name name, const QString &key, PointTreeWidgetItem *node);

    /// As add(), in the place that @p comesBefore gives it among the nodes under @p key.
    template <typename Before>
    void insert(Name name, const QString &key, PointTreeWidgetItem *node, Before comesBefore)
    {
        signOn(node);
        m_indexes[name].insert(key, node, comesBefore);
        if (name == Points)
            m_definitionParts.forget(key);
    }

    /// Makes @p node the only one under @p key.
    void replace(Name name, const QString &key, PointTreeWidgetItem *node);
    bool remove(Name name, const QString &key, PointTreeWidgetItem *node);

    /// Whether @p node stands in any index.
    [[nodiscard]] bool knows(const PointTreeWidgetItem *node) const;

    /// Takes @p node out of every index. Quick for a node whose attributes still say where it was entered; otherwise
    /// the indexes are searched, so nothing is left in any case.
    void forget(PointTreeWidgetItem *node);

    /// The definitions under @p key that belong to the point @p pointId, compared without letter case.
    [[nodiscard]] NodeIndex::Nodes definitions(const QString &key, const QString &pointId) const
    {
        return m_definitionParts.find(m_indexes[Points], key, pointId);
    }

    /// The point id of the indexed @p node was @p oldPointId until now.
    void pointIdHasChanged(PointTreeWidgetItem *node, const QString &oldPointId)
    {
        m_definitionParts.moved(node, oldPointId);
    }

    [[nodiscard]] const NodeIndex &operator[](Name name) const { return m_indexes[name]; }

    /// Empties everything at once, before the nodes of a whole model are destroyed.
    void clear();
    void clear(Name name);

private:
    void signOn(PointTreeWidgetItem *node);
    void signOff(PointTreeWidgetItem *node);

    std::array<NodeIndex, NameCount> m_indexes;
    DefinitionParts m_definitionParts;
};

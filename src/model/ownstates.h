#pragma once

#include "propertyhash.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

class PointTreeWidgetItem;

/// The opened file's own side at one moment: the nodes of both roots, with their attributes as they are, also those
/// that no file can carry. Immutable. What did not change from one state to the next is one and the same part of both,
/// so a state costs little more than what changed. It may outlive the nodes.
class OwnState final
{
public:
    struct Node;
    using Part = std::shared_ptr<const Node>;

    /// Which node this was. It stays so when the node is destroyed and made anew from a state.
    struct Identity
    {
        QPointer<PointTreeWidgetItem> node;
        std::weak_ptr<const Node> last; ///< what was taken of it last
    };

    struct Node
    {
        std::shared_ptr<Identity> identity;
        QString kind;
        QString basePath;
        PropertyHash properties;
        std::vector<Part> children;
    };

    [[nodiscard]] const Part &definitions() const { return m_definitions; }
    [[nodiscard]] const Part &realizations() const { return m_realizations; }
    /// Bytes, about: what is not shared with the state that was taken before it.
    [[nodiscard]] qint64 size() const { return m_size; }
    /// Whether nothing was changed between the two.
    [[nodiscard]] bool isSameAs(const OwnState &other) const
    {
        return m_definitions == other.m_definitions && m_realizations == other.m_realizations;
    }

private:
    friend class OwnStates;

    Part m_definitions;
    Part m_realizations;
    qint64 m_size = 0;
};

/// Takes states of the opened file's own side, and brings it back to one. Nodes that are in both stay the same nodes,
/// at which views and indexes go on looking; the others are destroyed or made. All of it happens by the operations that
/// any edit uses, so whatever follows the model follows this, too. Owned by the manager; GUI thread.
class OwnStates final
{
public:
    /// The two roots must live as long as this.
    OwnStates(PointTreeWidgetItem *definitions, PointTreeWidgetItem *realizations);

    [[nodiscard]] std::shared_ptr<const OwnState> take();
    /// The caller has the views told when it is done.
    void restore(const OwnState &state);

private:
    [[nodiscard]] OwnState::Part take(PointTreeWidgetItem *node, qint64 *size);
    void restoreSide(PointTreeWidgetItem *root, const OwnState::Part &wanted);
    /// Gives @p node the attributes and the children of @p wanted.
    void fill(PointTreeWidgetItem *node, const OwnState::Part &wanted);
    /// The node that was this; a new one, without anything of it yet, where that is gone.
    [[nodiscard]] PointTreeWidgetItem *nodeOf(const OwnState::Node &wanted);
    void forgetDead();

    QPointer<PointTreeWidgetItem> m_definitions;
    QPointer<PointTreeWidgetItem> m_realizations;
    QHash<const PointTreeWidgetItem *, std::shared_ptr<OwnState::Identity>> m_identities;
    QVector<PointTreeWidgetItem *> m_made; ///< while restoring
    int m_alive = 0;                       ///< nodes at the last take()
    bool m_definitionSide = false;         ///< of what is being restored
};

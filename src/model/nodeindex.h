#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

#include <algorithm>

class PointTreeWidgetItem;

/// A multi-map from a key to nodes. Nodes of one key are answered in the order in which they were added, which for
/// nodes that come from a file is the order of the file. GUI thread only; owns nothing.
class NodeIndex final
{
public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    void add(const QString &key, PointTreeWidgetItem *node);

    /// Adds @p node before the first node under @p key that it comes before; the nodes there are in that order.
    template <typename Before>
    void insert(const QString &key, PointTreeWidgetItem *node, Before comesBefore)
    {
        const Nodes known = nodes(key);
        // Files are read in order, so the end is where most belong.
        if (known.isEmpty() || !comesBefore(node, known.last())) {
            add(key, node);
            return;
        }
        const auto place = std::upper_bound(known.cbegin(), known.cend(), node, comesBefore);
        insertAt(key, int(place - known.cbegin()), node);
    }

    /// Makes @p node the only one under @p key, and answers those that stood there.
    [[nodiscard]] Nodes replace(const QString &key, PointTreeWidgetItem *node);

    /// Takes one entry out; false when @p node does not stand under @p key.
    bool remove(const QString &key, PointTreeWidgetItem *node);

    /// Takes every entry of @p node out, whatever its key, and says how many there were. Looks at every entry.
    int removeEverywhere(PointTreeWidgetItem *node);

    [[nodiscard]] Nodes nodes(const QString &key) const;
    [[nodiscard]] PointTreeWidgetItem *first(const QString &key) const;

    /// The first node under @p key for which @p holds is true; null without one.
    template <typename Predicate>
    [[nodiscard]] PointTreeWidgetItem *find(const QString &key, Predicate holds) const
    {
        PointTreeWidgetItem *node = first(key);
        if (!node || holds(node))
            return node;
        const auto further = m_further.constFind(key);
        if (further == m_further.constEnd())
            return nullptr;
        const auto found = std::find_if(further->cbegin(), further->cend(), holds);
        return found == further->cend() ? nullptr : *found;
    }
    [[nodiscard]] bool contains(const QString &key, const PointTreeWidgetItem *node) const;
    [[nodiscard]] QStringList sortedKeys() const;

    /// Every entry, ordered by key.
    [[nodiscard]] Nodes all() const;
    [[nodiscard]] int size() const { return m_size; }

    /// Calls @p visit with the node of every entry, in no particular order.
    template <typename Visitor>
    void forEach(Visitor visit) const
    {
        for (PointTreeWidgetItem *node : m_first)
            visit(node);
        for (const Nodes &nodes : m_further) {
            for (PointTreeWidgetItem *node : nodes)
                visit(node);
        }
    }
    void clear();

private:
    void insertAt(const QString &key, int index, PointTreeWidgetItem *node);

    // Nearly every key has one node, for which a list would be the larger part of the entry.
    QHash<QString, PointTreeWidgetItem *> m_first;
    QHash<QString, Nodes> m_further; ///< where there is more than one
    int m_size = 0;
};

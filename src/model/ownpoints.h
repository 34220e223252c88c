#pragma once

#include "announcement.h"
#include "nodewatcher.h"

#include <QPointer>
#include <QVector>

#include <functional>

class ModelChanges;
class NodeIndexes;
class PointTreeWidgetItem;

/// Offers the opened file's points among those of all plug-ins: what SiblingSink would make of the file as it stands,
/// kept so through every change of the definition side. Each definition links to the node that offers it, and this is
/// the only place that makes the link.
///
/// A set has one plug-in node. Properties reach the offered node by the link; what follows from them (text, plug-in,
/// point, place in the point index) is told anew by the same rules that read it. In the point index the opened file's
/// definitions come before all others of their key, in document order. Owned by the manager; GUI thread.
class OwnPoints final : public NodeWatcher
{
public:
    /// @p rootChanged is called after an attribute of the root has changed.
    OwnPoints(NodeIndexes *indexes, ModelChanges *changes, std::function<void()> rootChanged);
    ~OwnPoints() override;

    /// @p definitions is the opened file's root, @p points the one under which all plug-ins are offered. Both must live
    /// as long as this watches, which ends with stop().
    void watch(PointTreeWidgetItem *definitions, PointTreeWidgetItem *points);
    void stop();

    /// Offers every set afresh; nothing may be offered any more.
    void offerAll();
    void takeBackAll();

    /// Offers a definition that stands nowhere in the opened file under the plug-in or the point @p above.
    void offer(PointTreeWidgetItem *definition, PointTreeWidgetItem *above);

    /// Enters what is offered in the point index, in its place; also what a sibling declares.
    void enter(const QString &key, PointTreeWidgetItem *offered);

    /// The nodes that stand for the opened file, one for each of its sets.
    [[nodiscard]] QVector<PointTreeWidgetItem *> plugins() const;
    [[nodiscard]] int pluginCount() const { return m_sets.size(); }
    /// How many plug-in nodes stand behind all others since the scan has not come to their place yet.
    [[nodiscard]] int waiting() const { return m_sets.size() - m_placed; }
    /// The scan has come to the place of the next set.
    void place() { m_placed = qMin(m_placed + 1, m_sets.size()); }
    [[nodiscard]] int placed() const { return m_placed; }

    void childAdded(PointTreeWidgetItem *parent, PointTreeWidgetItem *child) override;
    void childRemoved(PointTreeWidgetItem *parent, PointTreeWidgetItem *child) override;
    void propertyChanged(PointTreeWidgetItem *node, const QString &key, const QVariant &old) override;
    void kindChanged(PointTreeWidgetItem *node, const QString &old) override;

private:
    struct OfferedSet
    {
        QPointer<PointTreeWidgetItem> set;
        QPointer<PointTreeWidgetItem> plugin;
    };

    void offerSet(PointTreeWidgetItem *set);
    [[nodiscard]] PointTreeWidgetItem *offeredOf(PointTreeWidgetItem *node) const;
    [[nodiscard]] bool isOwn(const PointTreeWidgetItem *offered) const;
    void deliver(ScannedFile *file);
    /// What is offered comes at the end; a definition that was put before others is offered before theirs.
    void putIntoPlace(PointTreeWidgetItem *definition, PointTreeWidgetItem *above);
    void describeOffered(PointTreeWidgetItem *offered);
    void followRoot();

    NodeIndexes *m_indexes;
    ModelChanges *m_changes;
    std::function<void()> m_rootChanged;
    QPointer<PointTreeWidgetItem> m_definitions;
    QPointer<PointTreeWidgetItem> m_points;
    QVector<OfferedSet> m_sets; ///< in document order
    int m_placed = 0;
};

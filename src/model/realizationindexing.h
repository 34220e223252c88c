#pragma once

#include "nodewatcher.h"

class ModelChanges;
class NodeIndexes;

/// Keeps the opened file's realization side as a fresh reading of the file would make it, whatever happens to its
/// nodes: the indexes, and what follows from the place of a node. Says what has happened.
///
/// | index        | key                           | nodes                                     |
/// |--------------|-------------------------------|-------------------------------------------|
/// | Realizations | "id", else the tag name       | all                                       |
/// | Targets      | "target", else "id"; or none  | "format" roots, in any letter case        |
/// | Layouts      | the same for all              | "layout" roots, in any letter case        |
///
/// The nodes of one key stand in the order of the document, but in Targets a "Format" that a drop has recorded comes
/// after every other one, so that it never takes the place of a root that somebody made (see isRecordedFormat()).
/// Owned by the manager; GUI thread.
class RealizationIndexing final : public NodeWatcher
{
public:
    RealizationIndexing(NodeIndexes *indexes, ModelChanges *changes) : m_indexes(indexes), m_changes(changes) { }

    void childAdded(PointTreeWidgetItem *parent, PointTreeWidgetItem *child) override;
    void childRemoved(PointTreeWidgetItem *parent, PointTreeWidgetItem *child) override;
    void propertyChanged(PointTreeWidgetItem *node, const QString &key, const QVariant &old) override;
    void kindChanged(PointTreeWidgetItem *node, const QString &old) override;

    /// Enters @p node under what its attributes and its kind say, unless it stands in an index already.
    void enter(PointTreeWidgetItem *node);

    /// Says anew what @p node and those under it are by where they stand, as reading the file would.
    static void describe(PointTreeWidgetItem *node);

    /// Whether @p node is what a drop makes to hold what is recorded: a "Format", spelled so, in an "ExtData".
    [[nodiscard]] static bool isRecordedFormat(const PointTreeWidgetItem *node);

private:
    struct Keys;

    void enter(PointTreeWidgetItem *node, const Keys &keys, bool atEnd = false);
    void leave(PointTreeWidgetItem *node, const Keys &keys);
    void noteRecord(const PointTreeWidgetItem *node, const PointTreeWidgetItem *above);

    NodeIndexes *m_indexes;
    ModelChanges *m_changes;
};

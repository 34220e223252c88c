#pragma once

#include <QString>
#include <QVector>

class NodeIndexes;
class PointTreeWidgetItem;

/// What the opened file realizes, and where in the product that is used: a view on the manager's indexes, made where it
/// is needed. One made without a manager knows nothing. GUI thread.
///
/// What a node is, its place says: a holder is an "ExtData"; a record is a child of one; a root is a format or a
/// layout (a record can be one, too); an entry stands somewhere under a root. A reference to a record is an entry that
/// has its "id". A namesake of another sort is none, a node without "id" is nobody's.
class OwnRealizations final
{
public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    OwnRealizations() = default;
    OwnRealizations(const NodeIndexes *indexes, PointTreeWidgetItem *root, PointTreeWidgetItem *siblings);

    /// Every node, by its key in the index (its "id" or, without one, its tag name), then in document order.
    [[nodiscard]] Nodes all() const;

    /// The children with an "id" of each node that stands under @p key in the index; with a @p kind only those of that
    /// kind, compared without letter case.
    [[nodiscard]] Nodes items(const QString &key, const QString &kind = QString()) const;

    /// The formats of the target map, the first of each target, by target, after the layouts in document order.
    [[nodiscard]] Nodes tabRoots() const;

    /// The opened file's nodes with this id, in document order.
    [[nodiscard]] Nodes withId(const QString &id) const;

    /// The first record with this id; null without one.
    [[nodiscard]] PointTreeWidgetItem *record(const QString &id) const;

    /// The record with this id, of the opened file or else of a sibling; null without one.
    [[nodiscard]] PointTreeWidgetItem *anyRecord(const QString &id) const;

    /// The "ExtData" for the point @p pointId, in document order.
    [[nodiscard]] Nodes holders(const QString &pointId) const;

    /// The records of a point or a sub point, in document order: all that its "ExtData" hold, of a sub point those of
    /// the kind that it stands for. Empty for any other node.
    [[nodiscard]] Nodes recordsOf(const PointTreeWidgetItem *definition) const;

    /// The opened file's nodes that stand for the record @p id, in document order.
    [[nodiscard]] Nodes references(const QString &id) const;

    /// The opened file's formats and layouts that fill the tab @p name: those whose "target" is the name, then those
    /// whose "id" is, then the "Format"s that drops have recorded, each in document order, then those that share the
    /// target of one that goes by its "id". One that stands under another of them is part of that one and not listed.
    [[nodiscard]] Nodes formats(const QString &name) const;

    [[nodiscard]] static bool isRecord(const PointTreeWidgetItem *node);
    [[nodiscard]] static bool isRoot(const PointTreeWidgetItem *node);
    [[nodiscard]] static bool isEntry(const PointTreeWidgetItem *node);

    /// The siblings' format roots and layouts that fill the tab @p name, in the order in which they came.
    [[nodiscard]] Nodes siblingFormats(const QString &name) const;

    /// True when the node that @p node stands for in the end belongs to another file.
    [[nodiscard]] bool isForeign(PointTreeWidgetItem *node) const;

    /// True when it belongs to the opened file.
    [[nodiscard]] bool isOwn(PointTreeWidgetItem *node) const;

    /// "target", else "id": the name of the tab that a format of a sibling fills; a layout goes by its "id" first.
    [[nodiscard]] static QString tabName(const PointTreeWidgetItem *root);

private:
    const NodeIndexes *m_indexes = nullptr;
    PointTreeWidgetItem *m_root = nullptr;
    PointTreeWidgetItem *m_siblings = nullptr;
};

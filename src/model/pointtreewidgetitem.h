#pragma once

#include "pointobject.h"

#include <QObject>
#include <QString>
#include <QTreeWidgetItem>

#include <array>

class NodeIndexes;
class NodeWatcher;

/// The one node type of every tree: model object and tree row at once.
///
/// Who destroys a node: the SourceDataManager destroys its five trees when it goes, and whatever was handed to its
/// retire(); until then a node is destroyed by the operation that deletes it, always through destroySubtree(). Trees
/// only borrow rows: ExtPointWidget takes them out before its trees die. A row destroys the rows under it, so a bare
/// delete is right only for a node without children.
///
/// A node that is destroyed leaves nothing behind that points to it (see PointObject), leaves its view while it is
/// still whole, and leaves every index of its manager. Pages remember nodes in QPointers.
class PointTreeWidgetItem final : public QObject, public PointObject, public QTreeWidgetItem
{
    Q_OBJECT

public:
    explicit PointTreeWidgetItem(const QString &text, QObject *parentObject = nullptr);

    /// A mirror of @p source: the row's texts and flags, the fields and the properties, but no children.
    PointTreeWidgetItem(const PointTreeWidgetItem &source);
    PointTreeWidgetItem &operator=(const PointTreeWidgetItem &) = delete;
    ~PointTreeWidgetItem() override;

    // Each of these names stands in more than one base.
    using PointObject::addChild;
    using PointObject::children;
    using PointObject::insertChild;
    using PointObject::parent;
    using PointObject::property;
    using PointObject::removeChild;
    using PointObject::setProperty;
    using PointObject::setText;

    /// The row's text as it is; of a very long one QTreeWidgetItem::text(), which is what views show, is the beginning.
    [[nodiscard]] QString text(int column) const
    {
        return isKeptText(column, Qt::EditRole) ? m_texts[size_t(column)] : data(column, Qt::EditRole).toString();
    }

    /// Point id, plug-in id, kind, base path, @p hasFormat and @p isNew of @p other; deliberately not @p isDroppedCopy,
    /// nor properties, children or link.
    void assignFields(const PointTreeWidgetItem &other);

    [[nodiscard]] const QString &pointId() const { return m_pointId; }
    void setPointId(const QString &pointId);
    [[nodiscard]] const QString &pluginId() const { return m_pluginId; }
    void setPluginId(const QString &pluginId) { m_pluginId = pluginId; }
    /// The element's name.
    [[nodiscard]] const QString &kind() const { return m_kind; }
    void setKind(const QString &kind);
    /// Compares the kind without regard to letter case.
    [[nodiscard]] bool isKind(QLatin1String kind) const;
    /// The directory of the file that the node was read from, with a trailing "/"; empty on definition nodes of
    /// siblings and on created ones.
    [[nodiscard]] const QString &basePath() const { return m_basePath; }
    void setBasePath(const QString &basePath) { m_basePath = basePath; }
    [[nodiscard]] bool hasFormat() const { return m_hasFormat; }
    void setHasFormat(bool hasFormat) { m_hasFormat = hasFormat; }
    void setIsNew(bool isNew) { m_isNew = isNew; }
    void setIsDroppedCopy(bool isDroppedCopy) { m_isDroppedCopy = isDroppedCopy; }

    /// Has @p watcher, which must outlive this, told of every change under this root; null ends that.
    void setWatcher(NodeWatcher *watcher) { m_watcher = watcher; }

    [[nodiscard]] PointTreeWidgetItem *item() override { return this; }
    [[nodiscard]] PointTreeWidgetItem *parentItem() const;

    /// The node that a row is part of; null for no row and for a row that is none of ours.
    [[nodiscard]] static PointTreeWidgetItem *fromRow(QTreeWidgetItem *row);

    // The texts of the first two columns are kept here: as a rule they are attributes and share their strings, where
    // the row would make three blocks of memory of the first one alone. Qt::EditRole has the whole text.
    [[nodiscard]] QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant &value) override;

    /// Takes the row out of the row or the tree that it stands in.
    void takeRow();

    /// The row that is to be current when this one goes: the one after it, before it or above it; null at the top.
    [[nodiscard]] PointTreeWidgetItem *neighbour() const;

    /// Destroys @p node, the rows under it and the model children under it that have no other parent. Null is allowed.
    /// Where one of the rows is the current one of its tree, none is current afterwards: a neighbour that became so by
    /// itself would be taken for one that the user has gone to.
    static void destroySubtree(PointTreeWidgetItem *node);

protected:
    [[nodiscard]] PointObject *makeCopy() const override;
    void setRowText(int column, const QString &text) override;
    void destroy() override;
    void childAdded(PointObject *child) override;
    void childRemoved(PointObject *child) override;
    void propertyChanged(const QString &key, const QVariant &old) override;

private:
    friend class NodeIndexes;
    friend struct PointTreeWidgetItemTestAccess;

    static constexpr int keptTexts = 2;
    [[nodiscard]] static bool isKeptText(int column, int role);
    /// Of the tree that the node stands in; null as a rule.
    [[nodiscard]] NodeWatcher *watcher() const;

    std::array<QString, keptTexts> m_texts;
    QString m_pointId;
    QString m_pluginId;
    QString m_kind;
    QString m_basePath;
    bool m_hasFormat = false;
    bool m_isNew = false;
    bool m_isDroppedCopy = false;
    bool m_doomed = false;
    int m_indexEntries = 0;
    NodeIndexes *m_indexes = nullptr;
    NodeWatcher *m_watcher = nullptr;
};

#pragma once

#include "propertyhash.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

class PointTreeWidgetItem;

/// The data side of a node: its attributes, its place in the model tree and the chain of nodes that it mirrors.
///
/// A node whose @p link is another node is a mirror; following @p link ends at the master, the first node that links to
/// itself. The model tree and the tree of rows are separate and are not kept in step automatically.
///
/// Lists never own what they name. Whatever names a node (the lists that hold it, its children's @p parent, its
/// source's @p copies, the nodes that link to it) forgets it when it is destroyed; nodes that linked to it become their
/// own masters. Built on any one thread, used on the GUI thread.
class PointObject
{
public:
    PointObject();

    /// A mirror of @p source: linked to it, sharing its properties, with no children and no parent. The new node is
    /// entered in the source's copies.
    PointObject(const PointObject &source);
    PointObject &operator=(const PointObject &) = delete;
    virtual ~PointObject();

    [[nodiscard]] const QList<PointObject *> &children() const { return m_children; }
    [[nodiscard]] PointObject *parent() const { return m_parent; }
    [[nodiscard]] const PropertyHash &properties() const { return m_properties; }
    [[nodiscard]] const QList<PointObject *> &copies() const { return m_copies; }
    [[nodiscard]] PointObject *link() const { return m_link; }
    [[nodiscard]] const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }

    /// Makes this node mirror @p link; itself makes it its own master. A link that would close a ring is refused, so
    /// every chain ends.
    void setLink(PointObject *link);

    /// The end of the link chain: this node when it is its own master.
    [[nodiscard]] PointObject *master();

    /// Appends @p child unless it is here already. On a mirror, and when @p mirror is set, the master gets a copy of
    /// the child that is its own master, and the child links to that copy. A node is never put under itself or under
    /// one of its descendants.
    void addChild(PointObject *child, bool mirror);

    /// Inserts @p child at @p index (clamped) unless it is here already. Different from addChild() on purpose: on a
    /// mirror it is the child itself that also enters the master's list, so its parent names the master, and the copy
    /// that the child links to stands in no list. That copy is destroyed with the child.
    void insertChild(int index, PointObject *child);

    /// Into this list alone, at @p index or at the end with -1: what this node mirrors is left out of it.
    void insertIntoListOnly(int index, PointObject *child);

    /// Takes @p child out of the list and clears its parent. On a mirror the node that it links to, or the end of the
    /// chain, loses its first child with the same "id".
    void removeChild(PointObject *child);

    /// Takes @p child out of this list only; its parent is cleared when it was this node.
    void detachChild(PointObject *child);

    /// The value stored under @p key. Where there is none, a value found under the lower-case form of the key is moved
    /// to @p key first. On the definition side, whose names are lowered on reading, the lower-case one wins over one
    /// that stands under @p key, since only a later write can have put it beside it.
    QVariant property(const QString &key);

    /// Stores in this node and in every node of the link chain; on the realization side under the name that property()
    /// would find in each.
    void setProperty(const QString &key, const QVariant &value);
    void setProperties(const PropertyHash &properties);

    /// Says of this node alone how the file has its values.
    void setOrigin(const QString &key, PropertyHash::Origin origin) { m_properties.setOrigin(key, origin); }

    /// Has this node alone show @p properties, which are those of the node that it mirrors.
    void showProperties(const PropertyHash &properties) { m_properties = properties; }

    /// The node declares something. Its children are of the same side.
    void setDefinitionSide() { m_definitionSide = true; }

    /// Sets the row text of this node and of every node of the link chain.
    void setText(int column, const QString &text);

    /// Destroys the node that this one mirrors, with what hangs under it; this node is its own master afterwards.
    /// Nothing happens on a master.
    void unlink();

    /// True when this node is @p sought or a walk through the lists of children comes to it. A node can stand in
    /// several lists and has just one parent, so its parents alone do not tell.
    [[nodiscard]] bool reaches(const PointObject *sought) const;

    /// True when this node stands in the list of children of @p holder.
    [[nodiscard]] bool isHeldBy(const PointObject *holder) const;

    /// The whole node when this is the data side of one, null for a bare PointObject.
    [[nodiscard]] virtual PointTreeWidgetItem *item() { return nullptr; }

protected:
    [[nodiscard]] virtual PointObject *makeCopy() const;
    virtual void setRowText(int column, const QString &text);
    virtual void destroy();

    // What has just happened to this node, for whoever watches over its tree.
    virtual void childAdded(PointObject * /*child*/) { }
    virtual void childRemoved(PointObject * /*child*/) { }
    virtual void propertyChanged(const QString & /*key*/, const QVariant & /*old*/) { }

    /// The copies that insertChild() made of this node and that have found no place since; they go with it.
    [[nodiscard]] QList<PointObject *> ownedCopies() const;

    /// Empties the list of children in one go and ends the node's being owned by its source, as a tree that is
    /// destroyed whole needs it.
    void releaseChildren();

private:
    [[nodiscard]] bool mayTake(const PointObject *child) const;
    void addHolder(PointObject *holder);
    void removeHolder(PointObject *holder);
    void makeMirrorOfCopy(PointObject *copy);
    /// Into the list, unless it is there already.
    void take(int index, PointObject *child);
    void store(const QString &key, const QVariant &value);
    void replaceProperties(const PropertyHash &properties);

    QList<PointObject *> m_children;
    QList<PointObject *> m_copies;
    PointObject *m_parent = nullptr;
    PropertyHash m_properties;
    QString m_name;
    PointObject *m_link = this;

    // The reverse of the above: who names this node. The first holder stands apart since most nodes have just one.
    PointObject *m_holder = nullptr;
    QVector<PointObject *> m_otherHolders;
    QVector<PointObject *> m_linkedFrom;
    PointObject *m_source = nullptr;
    bool m_ownedBySource = false;
    bool m_definitionSide = false;
};

#include "pointobject.h"

#include "model/keys.h"
#include "modellog.h"

#include <QSet>
#include <QVarLengthArray>

#include <utility>

PointObject::PointObject() = default;

PointObject::PointObject(const PointObject &source)
    : m_properties(source.m_properties), m_name(source.m_name), m_source(const_cast<PointObject *>(&source)),
      m_definitionSide(source.m_definitionSide)
{
    m_source->m_copies.append(this);
    setLink(m_source);
}

PointObject::~PointObject()
{
    if (m_holder)
        m_holder->m_children.removeOne(this);
    for (PointObject *holder : qAsConst(m_otherHolders))
        holder->m_children.removeOne(this);
    releaseChildren();

    setLink(this);
    const QVector<PointObject *> followers = m_linkedFrom;
    for (PointObject *follower : followers)
        follower->setLink(follower);

    if (m_source)
        m_source->m_copies.removeOne(this);
    // One copy may take another with it, so the list is read afresh for each.
    while (!m_copies.isEmpty()) {
        PointObject *copy = m_copies.takeFirst();
        copy->m_source = nullptr;
        if (copy->m_ownedBySource)
            copy->destroy();
    }
}

void PointObject::setLink(PointObject *link)
{
    if (link == m_link)
        return;
    for (const PointObject *node = link; node && node != this; node = node->m_link) {
        if (node->m_link == node)
            break;
        if (node->m_link == this) {
            qCWarning(modelLog, "A link that would close a ring of mirrors was refused.");
            return;
        }
    }
    if (m_link && m_link != this)
        m_link->m_linkedFrom.removeOne(this);
    m_link = link;
    if (m_link && m_link != this)
        m_link->m_linkedFrom.append(this);
}

PointObject *PointObject::master()
{
    PointObject *node = this;
    while (node->m_link && node->m_link != node)
        node = node->m_link;
    return node;
}

void PointObject::addChild(PointObject *child, bool mirror)
{
    if (!mayTake(child))
        return;
    const PointObject *before = child->m_link;
    take(m_children.size(), child);
    // What is watched over may have its counterpart already.
    if (m_link == this || !m_link || !mirror || child->m_link != before)
        return;
    PointObject *copy = child->makeCopy();
    child->makeMirrorOfCopy(copy);
    m_link->addChild(copy, false);
}

void PointObject::insertChild(int index, PointObject *child)
{
    if (!mayTake(child))
        return;
    take(qBound(0, index, m_children.size()), child);
    if (m_link == this || !m_link)
        return;
    PointObject *copy = child->makeCopy();
    child->makeMirrorOfCopy(copy);
    copy->m_ownedBySource = true;
    m_link->insertChild(index, child);
}

void PointObject::insertIntoListOnly(int index, PointObject *child)
{
    if (mayTake(child))
        take(index < 0 ? m_children.size() : qMin(index, m_children.size()), child);
}

void PointObject::take(int index, PointObject *child)
{
    if (child->isHeldBy(this))
        return;
    m_children.insert(index, child);
    child->addHolder(this);
    child->m_parent = this;
    child->m_definitionSide = child->m_definitionSide || m_definitionSide;
    childAdded(child);
}

void PointObject::removeChild(PointObject *child)
{
    if (!child)
        return;
    const bool held = m_children.removeOne(child);
    if (held)
        child->removeHolder(this);
    child->m_parent = nullptr;
    if (held)
        childRemoved(child);
    if (m_link == this || !m_link)
        return;
    // The end of the chain is asked where the node in between, itself a mirror, holds nothing of the kind.
    const QString id = child->property(idKey).toString();
    for (PointObject *holder : { m_link, master() }) {
        const QList<PointObject *> candidates = holder->m_children;
        for (PointObject *candidate : candidates) {
            if (candidate->property(idKey).toString() == id) {
                holder->removeChild(candidate);
                return;
            }
        }
    }
}

void PointObject::detachChild(PointObject *child)
{
    if (!child || !m_children.removeOne(child))
        return;
    child->removeHolder(this);
    if (child->m_parent == this)
        child->m_parent = nullptr;
    childRemoved(child);
}

QVariant PointObject::property(const QString &key)
{
    const QVariant exact = m_properties.value(key);
    if (!m_definitionSide && !exact.isNull())
        return exact;
    const QString lowered = key.toLower();
    const QVariant other = lowered == key ? QVariant() : m_properties.value(lowered);
    if (other.isNull())
        return exact;
    m_properties.rename(lowered, key);
    return other;
}

void PointObject::setProperty(const QString &key, const QVariant &value)
{
    PointObject *node = this;
    node->store(key, value);
    while (node->m_link && node->m_link != node) {
        node = node->m_link;
        node->store(key, value);
    }
}

void PointObject::store(const QString &key, const QVariant &value)
{
    QString name = key;
    if (!m_definitionSide && m_properties.value(key).isNull()) {
        const QString lowered = key.toLower();
        if (!m_properties.value(lowered).isNull())
            name = lowered;
    }
    const QVariant old = m_properties.value(name);
    m_properties.insert(name, value);
    propertyChanged(name, old);
}

void PointObject::setProperties(const PropertyHash &properties)
{
    PointObject *node = this;
    node->replaceProperties(properties);
    while (node->m_link && node->m_link != node) {
        node = node->m_link;
        node->replaceProperties(properties);
    }
}

void PointObject::replaceProperties(const PropertyHash &properties)
{
    const PropertyHash before = std::exchange(m_properties, properties);
    // A node that is just being made has nobody to tell.
    if (!m_parent && before.isEmpty())
        return;
    for (const PropertyHash::Entry &entry : before) {
        if (!PropertyHash::isSame(properties.value(entry.key), entry.value))
            propertyChanged(entry.key, entry.value);
    }
    for (const PropertyHash::Entry &entry : properties) {
        if (!before.contains(entry.key))
            propertyChanged(entry.key, QVariant());
    }
}

void PointObject::setText(int column, const QString &text)
{
    PointObject *node = this;
    node->setRowText(column, text);
    while (node->m_link && node->m_link != node) {
        node = node->m_link;
        node->setRowText(column, text);
    }
}

void PointObject::unlink()
{
    // The dying master makes this node its own master. Nothing may follow here: a node that hangs under its own master
    // goes with it.
    if (m_link && m_link != this)
        m_link->destroy();
    else
        setLink(this);
}

PointObject *PointObject::makeCopy() const
{
    return new PointObject(*this);
}

void PointObject::setRowText(int, const QString &) { }

void PointObject::destroy()
{
    delete this;
}

QList<PointObject *> PointObject::ownedCopies() const
{
    QList<PointObject *> owned;
    for (PointObject *copy : m_copies) {
        if (copy->m_ownedBySource)
            owned.append(copy);
    }
    return owned;
}

void PointObject::releaseChildren()
{
    m_ownedBySource = false;
    const QList<PointObject *> children = std::exchange(m_children, {});
    for (PointObject *child : children) {
        child->removeHolder(this);
        if (child->m_parent == this)
            child->m_parent = nullptr;
    }
}

bool PointObject::reaches(const PointObject *sought) const
{
    // Upwards, where there is one way as a rule. Only what stands in several lists is come to more than once.
    QSet<const PointObject *> shared;
    QVarLengthArray<const PointObject *, 16> open;
    open.append(sought);
    while (!open.isEmpty()) {
        const PointObject *node = open.last();
        open.removeLast();
        if (node == this)
            return true;
        if (!node->m_otherHolders.isEmpty()) {
            if (shared.contains(node))
                continue;
            shared.insert(node);
            for (const PointObject *holder : node->m_otherHolders)
                open.append(holder);
        }
        if (node->m_holder)
            open.append(node->m_holder);
    }
    return false;
}

bool PointObject::mayTake(const PointObject *child) const
{
    if (!child)
        return false;
    // A fresh node has nothing under it, and one that stands here already closed no ring: neither needs a walk.
    if (child == this || (!child->m_children.isEmpty() && !child->isHeldBy(this) && child->reaches(this))) {
        qCWarning(modelLog, "A node can't be put under itself.");
        return false;
    }
    return true;
}

bool PointObject::isHeldBy(const PointObject *holder) const
{
    return m_holder == holder || m_otherHolders.contains(const_cast<PointObject *>(holder));
}

void PointObject::addHolder(PointObject *holder)
{
    m_ownedBySource = false;
    if (m_holder)
        m_otherHolders.append(holder);
    else
        m_holder = holder;
}

void PointObject::removeHolder(PointObject *holder)
{
    if (m_holder == holder)
        m_holder = m_otherHolders.isEmpty() ? nullptr : m_otherHolders.takeLast();
    else
        m_otherHolders.removeOne(holder);
}

void PointObject::makeMirrorOfCopy(PointObject *copy)
{
    copy->setLink(copy);
    setLink(copy);
}

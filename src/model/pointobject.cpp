#include "pointobject.h"

#include "modellog.h"

#include <utility>

PointObject::PointObject() = default;

PointObject::PointObject(const PointObject &source)
    : m_properties(source.m_properties), m_name(source.m_name), m_source(const_cast<PointObject *>(&source))
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
    if (!child->isHeldBy(this)) {
        m_children.append(child);
        child->addHolder(this);
        child->m_parent = this;
    }
    if (m_link == this || !m_link || !mirror)
        return;
    PointObject *copy = child->makeCopy();
    child->makeMirrorOfCopy(copy);
    m_link->addChild(copy, false);
}

void PointObject::insertChild(int index, PointObject *child)
{
    if (!mayTake(child))
        return;
    if (!child->isHeldBy(this)) {
        m_children.insert(qBound(0, index, m_children.size()), child);
        child->addHolder(this);
        child->m_parent = this;
    }
    if (m_link == this || !m_link)
        return;
    PointObject *copy = child->makeCopy();
    child->makeMirrorOfCopy(copy);
    copy->m_ownedBySource = true;
    m_link->insertChild(index, child);
}

void PointObject::removeChild(PointObject *child)
{
    if (!child)
        return;
    if (m_children.removeOne(child))
        child->removeHolder(this);
    child->m_parent = nullptr;
    if (m_link == this || !m_link)
        return;
    const QString id = child->property(QStringLiteral("id")).toString();
    const QList<PointObject *> candidates = m_link->m_children;
    for (PointObject *candidate : candidates) {
        if (candidate->property(QStringLiteral("id")).toString() == id) {
            m_link->removeChild(candidate);
            return;
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
}

QVariant PointObject::property(const QString &key)
{
    const QString lowered = key.toLower();
    if (lowered != key) {
        const QVariant value = m_properties.value(lowered);
        if (!value.isNull()) {
            m_properties.rename(lowered, key);
            return value;
        }
    }
    return m_properties.value(key);
}

void PointObject::setProperty(const QString &key, const QVariant &value)
{
    PointObject *node = this;
    node->m_properties.insert(key, value);
    while (node->m_link && node->m_link != node) {
        node = node->m_link;
        node->m_properties.insert(key, value);
    }
}

void PointObject::setProperties(const PropertyHash &properties)
{
    PointObject *node = this;
    node->m_properties = properties;
    while (node->m_link && node->m_link != node) {
        node = node->m_link;
        node->m_properties = properties;
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
    QVector<const PointObject *> open { this };
    while (!open.isEmpty()) {
        const PointObject *node = open.takeLast();
        if (node == sought)
            return true;
        for (const PointObject *child : node->m_children) {
            if (!child->m_children.isEmpty() || child == sought)
                open.append(child);
        }
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

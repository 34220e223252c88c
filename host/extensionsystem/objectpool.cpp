#include "extensionsystem/objectpool.h"

#include <QThread>

#include <algorithm>

namespace ExtensionSystem {

void ObjectPool::add(QObject *obj, const IPlugin *bringer)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (!obj || indexOf(obj) >= 0)
        return;
    m_entries.append({ obj, bringer });
    connect(obj, &QObject::destroyed, this, &ObjectPool::remove);
    emit objectAdded(obj);
}

void ObjectPool::remove(QObject *obj)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (indexOf(obj) < 0)
        return;
    disconnect(obj, &QObject::destroyed, this, &ObjectPool::remove);
    emit aboutToRemoveObject(obj);
    // Whoever was told may have changed the pool, so the place is looked up once more.
    const int index = indexOf(obj);
    if (index >= 0)
        m_entries.removeAt(index);
}

void ObjectPool::removeAllOf(const IPlugin *bringer)
{
    for (;;) {
        const auto last = std::find_if(
            m_entries.crbegin(), m_entries.crend(), [bringer](const Entry &entry) { return entry.bringer == bringer; });
        if (last == m_entries.crend())
            return;
        remove(last->object);
    }
}

void ObjectPool::clear()
{
    while (!m_entries.isEmpty())
        remove(m_entries.constLast().object);
}

QVector<QObject *> ObjectPool::objects() const
{
    QVector<QObject *> result;
    result.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        result.append(entry.object);
    return result;
}

int ObjectPool::indexOf(const QObject *obj) const
{
    const auto found
        = std::find_if(m_entries.cbegin(), m_entries.cend(), [obj](const Entry &entry) { return entry.object == obj; });
    return found == m_entries.cend() ? -1 : static_cast<int>(found - m_entries.cbegin());
}

} // namespace ExtensionSystem

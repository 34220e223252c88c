#include "propertyhash.h"

#include <algorithm>

PropertyHash::PropertyHash(std::initializer_list<std::pair<QString, QVariant>> entries)
{
    for (const auto &entry : entries)
        insert(entry.first, entry.second);
}

QVariant PropertyHash::value(const QString &key) const
{
    const int index = indexOf(key);
    return index < 0 ? QVariant() : m_entries.at(index).value;
}

QString PropertyHash::text(const QString &key) const
{
    const int index = indexOf(key);
    return index < 0 ? QString() : m_entries.at(index).value.toString();
}

void PropertyHash::insert(const QString &key, const QVariant &value)
{
    const bool isNullText = value.userType() == QMetaType::QString && value.isNull();
    const QVariant kept = isNullText ? QVariant(QStringLiteral("")) : value;
    const int index = indexOf(key);
    if (index < 0)
        m_entries.append({ key, kept, Origin::Made });
    else
        m_entries[index].value = kept;
}

void PropertyHash::append(const QString &key, const QString &value, Origin origin)
{
    m_entries.append({ key, QVariant(value.isNull() ? QStringLiteral("") : value), origin });
}

void PropertyHash::setOrigin(const QString &key, Origin origin)
{
    const int index = indexOf(key);
    if (index >= 0)
        m_entries[index].origin = origin;
}

bool PropertyHash::remove(const QString &key)
{
    const int index = indexOf(key);
    if (index < 0)
        return false;
    m_entries.remove(index);
    return true;
}

void PropertyHash::rename(const QString &from, const QString &to)
{
    if (from == to || !contains(from))
        return;
    remove(to);
    m_entries[indexOf(from)].key = to;
}

QStringList PropertyHash::keys() const
{
    QStringList keys;
    keys.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        keys.append(entry.key);
    return keys;
}

int PropertyHash::indexOf(const QString &key) const
{
    const Entry *const entries = m_entries.constData();
    for (int i = 0; i < m_entries.size(); ++i) {
        if (entries[i].key.size() == key.size() && entries[i].key == key)
            return i;
    }
    return -1;
}

bool operator==(const PropertyHash &left, const PropertyHash &right)
{
    if (left.m_entries.constData() == right.m_entries.constData())
        return true;
    if (left.size() != right.size())
        return false;
    for (const PropertyHash::Entry &entry : left) {
        if (!right.contains(entry.key) || !PropertyHash::isSame(right.value(entry.key), entry.value))
            return false;
    }
    return true;
}

bool PropertyHash::isIdenticalTo(const PropertyHash &other) const
{
    // Copies share what they hold.
    if (m_entries.constData() == other.m_entries.constData())
        return true;
    return std::equal(m_entries.cbegin(), m_entries.cend(), other.m_entries.cbegin(), other.m_entries.cend(),
        [](const Entry &left, const Entry &right) {
            return left.key == right.key && left.origin == right.origin && isSame(left.value, right.value);
        });
}

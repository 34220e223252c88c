#include "core/id.h"

#include <QHash>
#include <QVector>

#include <mutex>

namespace Core {

namespace {

/// The names given out so far. Never shrinks: an id stays valid for the life of the process.
class NameTable
{
public:
    int numberOf(const QByteArray &name)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto known = m_numbers.constFind(name);
        if (known != m_numbers.constEnd())
            return known.value();
        m_names.append(name);
        const int number = m_names.size();
        m_numbers.insert(name, number);
        return number;
    }

    QByteArray nameOf(int number)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return number > 0 ? m_names.at(number - 1) : QByteArray();
    }

private:
    std::mutex m_mutex;
    QHash<QByteArray, int> m_numbers;
    QVector<QByteArray> m_names;
};

NameTable &nameTable()
{
    static NameTable table;
    return table;
}

} // namespace

Id::Id(const char *name) : Id(fromName(QByteArray(name))) { }

Id Id::fromName(const QByteArray &name)
{
    Id id;
    if (!name.isEmpty())
        id.m_number = nameTable().numberOf(name);
    return id;
}

Id Id::fromString(const QString &name)
{
    return fromName(name.toUtf8());
}

QByteArray Id::name() const
{
    return nameTable().nameOf(m_number);
}

QString Id::toString() const
{
    return QString::fromUtf8(name());
}

} // namespace Core

#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <initializer_list>
#include <utility>

/// The attributes of one node: a hash-like container that keeps its keys in the order of their first insertion, so that
/// a file comes back with its attributes where they were and a property sheet keeps its rows between runs.
///
/// An element has a handful of attributes, so they are stored flat and looked up by comparison. Implicitly shared:
/// copying is cheap and a copy is detached by its first change. Not thread-safe beyond that.
class PropertyHash final
{
public:
    /// Where an entry comes from; a new value does not change it.
    enum class Origin : quint8 {
        Made,         ///< in the editor
        Read,         ///< in a file
        ReadWithMarks ///< the same, with the marks of translatable text, which are not part of the value
    };

    struct Entry
    {
        QString key;
        QVariant value;
        Origin origin = Origin::Made;
    };
    using const_iterator = QVector<Entry>::const_iterator;

    PropertyHash() = default;
    PropertyHash(std::initializer_list<std::pair<QString, QVariant>> entries);

    /// The value stored under @p key; an invalid variant when there is none.
    [[nodiscard]] QVariant value(const QString &key) const;
    /// The same as a text, empty when there is none.
    [[nodiscard]] QString text(const QString &key) const;
    [[nodiscard]] bool contains(const QString &key) const { return indexOf(key) >= 0; }

    /// Replaces the value of a known key in its place; a new key goes last. A text is never null: an attribute that is
    /// empty is there all the same, whoever made it.
    void insert(const QString &key, const QVariant &value);

    /// As insert(), for a key that is known to be new.
    void append(const QString &key, const QString &value, Origin origin = Origin::Made);

    /// Does nothing where there is no such key.
    void setOrigin(const QString &key, Origin origin);

    /// True when there was such a key.
    bool remove(const QString &key);

    /// Gives the value of @p from the key @p to, in the place of @p from; a value that stood under @p to is gone.
    void rename(const QString &from, const QString &to);

    [[nodiscard]] QStringList keys() const;
    [[nodiscard]] int size() const { return m_entries.size(); }
    [[nodiscard]] bool isEmpty() const { return m_entries.isEmpty(); }
    void reserve(int size) { m_entries.reserve(size); }

    [[nodiscard]] const_iterator begin() const { return m_entries.constBegin(); }
    [[nodiscard]] const_iterator end() const { return m_entries.constEnd(); }

    /// Whether both are one value of one type; else a text and a truth value could be equal, which no file takes them
    /// for.
    [[nodiscard]] static bool isSame(const QVariant &left, const QVariant &right)
    {
        return left.userType() == right.userType() && left == right;
    }

    /// Same keys, values and origins in one order.
    [[nodiscard]] bool isIdenticalTo(const PropertyHash &other) const;

    /// Same keys with equal values; the order does not matter.
    friend bool operator==(const PropertyHash &left, const PropertyHash &right);

private:
    [[nodiscard]] int indexOf(const QString &key) const;

    QVector<Entry> m_entries;
};

inline bool operator!=(const PropertyHash &left, const PropertyHash &right)
{
    return !(left == right);
}

Q_DECLARE_TYPEINFO(PropertyHash::Entry, Q_MOVABLE_TYPE);

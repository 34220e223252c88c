#pragma once

#include <QObject>
#include <QVector>

namespace ExtensionSystem {

class IPlugin;

/// The objects through which plug-ins meet, in the order of adding, each with the plug-in that brought it (or none).
/// Owns none of them; one that is destroyed leaves by itself. Owned by the plug-in manager; GUI thread only.
class ObjectPool final : public QObject
{
    Q_OBJECT
public:
    /// Does nothing for null and for an object that is in the pool.
    void add(QObject *obj, const IPlugin *bringer);
    /// Does nothing for an object that isn't in the pool.
    void remove(QObject *obj);
    /// Takes out what \a bringer brought, the last added first.
    void removeAllOf(const IPlugin *bringer);
    void clear();

    QVector<QObject *> objects() const;

signals:
    void objectAdded(QObject *obj);
    void aboutToRemoveObject(QObject *obj);

private:
    struct Entry
    {
        QObject *object = nullptr;
        const IPlugin *bringer = nullptr;
    };

    int indexOf(const QObject *obj) const;

    QVector<Entry> m_entries;
};

} // namespace ExtensionSystem

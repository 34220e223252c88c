#include "extensionsystem/iplugin.h"

#include "extensionsystem/pluginmanager.h"

#include <QPointer>
#include <QVector>

#include <algorithm>

namespace ExtensionSystem {

class IPlugin::Private
{
public:
    struct Added
    {
        QPointer<QObject> object;
        bool autoReleased = false;
    };

    void add(QObject *obj, bool autoReleased)
    {
        remove(obj);
        added.append({ obj, autoReleased });
        PluginManager::addObject(obj);
    }

    void remove(QObject *obj)
    {
        const auto isIt = [obj](const Added &entry) { return entry.object == obj; };
        added.erase(std::remove_if(added.begin(), added.end(), isIt), added.end());
    }

    QVector<Added> added;
};

IPlugin::IPlugin() : d(std::make_unique<Private>()) { }

IPlugin::~IPlugin()
{
    releaseObjects();
}

QObject *IPlugin::remoteCommand(
    const QStringList & /*options*/, const QString & /*workingDirectory*/, const QStringList & /*arguments*/)
{
    return nullptr;
}

void IPlugin::addAutoReleasedObject(QObject *obj)
{
    d->add(obj, true);
}

void IPlugin::addObject(QObject *obj)
{
    d->add(obj, false);
}

void IPlugin::removeObject(QObject *obj)
{
    d->remove(obj);
    PluginManager::removeObject(obj);
}

void IPlugin::releaseObjects()
{
    while (!d->added.isEmpty()) {
        const Private::Added last = d->added.takeLast();
        PluginManager::removeObject(last.object);
        if (last.autoReleased)
            delete last.object.data();
    }
}

} // namespace ExtensionSystem

#include "extensionsystem/iplugin.h"

#include "extensionsystem/pluginmanager.h"
#include "extensionsystem/pluginmanager_p.h"

#include <QPointer>
#include <QVector>

namespace ExtensionSystem {

class IPlugin::Private
{
public:
    QVector<QPointer<QObject>> autoReleased;
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
    if (!obj || d->autoReleased.contains(obj))
        return;
    d->autoReleased.append(obj);
    addObject(obj);
}

void IPlugin::addObject(QObject *obj)
{
    if (PluginManager *manager = PluginManager::instance())
        manager->d->pool.add(obj, this);
}

void IPlugin::removeObject(QObject *obj)
{
    d->autoReleased.removeAll(obj);
    PluginManager::removeObject(obj);
}

void IPlugin::releaseObjects()
{
    while (!d->autoReleased.isEmpty()) {
        const QPointer<QObject> obj = d->autoReleased.takeLast();
        PluginManager::removeObject(obj);
        delete obj.data();
    }
    if (PluginManager *manager = PluginManager::instance())
        manager->d->pool.removeAllOf(this);
}

} // namespace ExtensionSystem

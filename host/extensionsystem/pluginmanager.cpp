#include "extensionsystem/pluginmanager.h"

#include "extensionsystem/iplugin.h"
#include "extensionsystem/plugindirectory.h"
#include "extensionsystem/pluginmanager_p.h"

#include <algorithm>

namespace ExtensionSystem {

namespace {

PluginManager *theManager = nullptr;

} // namespace

PluginManager::PluginManager() : d(std::make_unique<Private>(this))
{
    Q_ASSERT_X(!theManager, "PluginManager", "there is one already");
    theManager = this;
}

PluginManager::~PluginManager()
{
    shutdown();
    theManager = nullptr;
}

PluginManager *PluginManager::instance()
{
    return theManager;
}

void PluginManager::setPluginPaths(const QStringList &paths)
{
    if (d->loadingBegun)
        return;
    d->paths = pluginDirectories(paths);
    d->infos = readPluginDirectories(d->paths);
}

QStringList PluginManager::pluginPaths() const
{
    return d->paths;
}

void PluginManager::loadPlugins(const QStringList &arguments)
{
    if (d->loadingBegun)
        return;
    d->loadingBegun = true;
    d->plugins.resize(static_cast<std::size_t>(d->infos.size()));
    d->order = resolveDependencies(d->infos);
    const QVector<int> forward = d->order.loadOrder;
    for (const int index : forward)
        d->load(index);
    Q_EMIT librariesLoaded();
    for (const int index : forward)
        d->initialize(index, arguments);
    for (auto it = forward.crbegin(); it != forward.crend(); ++it)
        d->extensionsInitialized(*it);
    for (const PluginInfo &info : qAsConst(d->infos)) {
        if (info.hasError())
            qCWarning(
                extensionSystemLog, "%ls: %ls", qUtf16Printable(info.filePath), qUtf16Printable(info.errorString));
    }
    d->delayedTimer.start(0);
}

void PluginManager::shutdown()
{
    if (d->shuttingDown)
        return;
    // Stays set: after a shutdown nothing can be loaded any more, since the plug-ins' code is still in memory.
    d->shuttingDown = true;
    d->loadingBegun = true;
    d->delayedTimer.stop();
    d->delayed.clear();
    d->aboutToShutdown();
    for (auto it = d->order.loadOrder.crbegin(); it != d->order.loadOrder.crend(); ++it)
        d->destroy(*it);
    d->pool.clear();
}

int PluginManager::shutdownTimeout() const
{
    return d->shutdownTimeout;
}

void PluginManager::setShutdownTimeout(int milliseconds)
{
    d->shutdownTimeout = milliseconds;
}

QVector<PluginInfo> PluginManager::plugins() const
{
    return d->infos;
}

bool PluginManager::hasErrors() const
{
    return std::any_of(d->infos.cbegin(), d->infos.cend(), [](const PluginInfo &info) { return info.hasError(); });
}

void PluginManager::addObject(QObject *obj)
{
    if (theManager)
        theManager->d->pool.add(obj, theManager->d->active);
}

void PluginManager::removeObject(QObject *obj)
{
    if (theManager)
        theManager->d->pool.remove(obj);
}

QVector<QObject *> PluginManager::allObjects()
{
    return theManager ? theManager->d->pool.objects() : QVector<QObject *>();
}

} // namespace ExtensionSystem

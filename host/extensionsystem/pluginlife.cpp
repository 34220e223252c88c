#include "extensionsystem/iplugin.h"
#include "extensionsystem/pluginmanager_p.h"

#include <QEventLoop>
#include <QLoggingCategory>
#include <QPluginLoader>
#include <QScopedValueRollback>
#include <QSet>

#include <exception>

namespace ExtensionSystem {

namespace {

/// The pause after a delayedInitialize() that took its time, in milliseconds: room for a repaint and for input.
constexpr int LongTurn = 20;

} // namespace

Q_LOGGING_CATEGORY(extensionSystemLog, "extensionsystem")

PluginManager::Private::Private(PluginManager *manager) : q(manager)
{
    delayedTimer.setSingleShot(true);
    QObject::connect(&pool, &ObjectPool::objectAdded, q, &PluginManager::objectAdded);
    QObject::connect(&pool, &ObjectPool::aboutToRemoveObject, q, &PluginManager::aboutToRemoveObject);
    QObject::connect(&delayedTimer, &QTimer::timeout, q, [this] { nextDelayedInitialize(); });
}

PluginManager::Private::~Private() = default;

void PluginManager::Private::load(int index)
{
    if (failsWithDependency(index))
        return;
    QPluginLoader loader(infos.at(index).filePath);
    // All symbols are resolved now, so that a missing one is a reason to list and not a crash later. The code stays in
    // memory for good: meta objects, strings and posted events of a plug-in may outlive its root object. Symbols stay
    // local, so that equal names in two plug-ins don't meet; what plug-ins share, they link.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    QObject *root = nullptr;
    if (const std::optional<QString> thrown = call(nullptr, [&] { root = loader.instance(); })) {
        fail(index, PluginManager::tr("creating the plug-in threw: %1").arg(*thrown));
        return;
    }
    if (!root) {
        fail(index, loader.errorString());
        return;
    }
    auto *plugin = qobject_cast<IPlugin *>(root);
    if (!plugin) {
        delete root;
        fail(index, PluginManager::tr("the root object is not a plug-in"));
        return;
    }
    plugins[static_cast<std::size_t>(index)].reset(plugin);
    infos[index].state = PluginInfo::Loaded;
}

void PluginManager::Private::initialize(int index, const QStringList &arguments)
{
    IPlugin *plugin = plugins[static_cast<std::size_t>(index)].get();
    if (!plugin || failsWithDependency(index))
        return;
    bool done = false;
    QString reason;
    if (const std::optional<QString> thrown = call(plugin, [&] { done = plugin->initialize(arguments, &reason); })) {
        fail(index, PluginManager::tr("initializing threw: %1").arg(*thrown));
        return;
    }
    if (!done) {
        fail(index,
            reason.isEmpty() ? PluginManager::tr("initializing failed for a reason that the plug-in did not tell")
                             : PluginManager::tr("initializing failed: %1").arg(reason));
        return;
    }
    infos[index].state = PluginInfo::Initialized;
}

void PluginManager::Private::extensionsInitialized(int index)
{
    IPlugin *plugin = plugins[static_cast<std::size_t>(index)].get();
    if (!plugin)
        return;
    if (const std::optional<QString> thrown = call(plugin, [plugin] { plugin->extensionsInitialized(); })) {
        // Those that depend on it are running by now, so it stays, at the state it has reached.
        infos[index].errorString = PluginManager::tr("taking up extensions threw: %1").arg(*thrown);
        return;
    }
    infos[index].state = PluginInfo::Running;
    delayed.append(index);
}

void PluginManager::Private::nextDelayedInitialize()
{
    if (delayed.isEmpty()) {
        emit q->initializationDone();
        return;
    }
    const int index = delayed.takeFirst();
    IPlugin *plugin = plugins[static_cast<std::size_t>(index)].get();
    bool tookTime = false;
    if (const std::optional<QString> thrown = call(plugin, [&] { tookTime = plugin->delayedInitialize(); }))
        qCWarning(extensionSystemLog, "%ls: delayed initializing threw: %ls", qUtf16Printable(infos.at(index).filePath),
            qUtf16Printable(*thrown));
    // A plug-in may run an event loop of its own, in which the program is told to quit.
    if (!shuttingDown)
        delayedTimer.start(tookTime ? LongTurn : 0);
}

void PluginManager::Private::aboutToShutdown()
{
    QSet<IPlugin *> awaited;
    QEventLoop loop;
    for (auto it = order.loadOrder.crbegin(); it != order.loadOrder.crend(); ++it) {
        IPlugin *plugin = plugins[static_cast<std::size_t>(*it)].get();
        if (!plugin)
            continue;
        // A plug-in may finish before aboutToShutdown() has even returned.
        bool finished = false;
        const QMetaObject::Connection early = QObject::connect(
            plugin, &IPlugin::asynchronousShutdownFinished, plugin, [&finished] { finished = true; });
        IPlugin::ShutdownFlag flag = IPlugin::SynchronousShutdown;
        if (const std::optional<QString> thrown = call(plugin, [&] { flag = plugin->aboutToShutdown(); }))
            qCWarning(extensionSystemLog, "%ls: shutting down threw: %ls", qUtf16Printable(infos.at(*it).filePath),
                qUtf16Printable(*thrown));
        QObject::disconnect(early);
        if (flag != IPlugin::AsynchronousShutdown || finished)
            continue;
        awaited.insert(plugin);
        QObject::connect(plugin, &IPlugin::asynchronousShutdownFinished, &loop, [&awaited, &loop, plugin] {
            awaited.remove(plugin);
            if (awaited.isEmpty())
                loop.quit();
        });
    }
    if (awaited.isEmpty())
        return;
    QTimer::singleShot(shutdownTimeout, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    for (const int index : qAsConst(order.loadOrder)) {
        if (awaited.contains(plugins[static_cast<std::size_t>(index)].get()))
            qCWarning(extensionSystemLog, "%ls: did not shut down within %d ms",
                qUtf16Printable(infos.at(index).filePath), shutdownTimeout);
    }
}

void PluginManager::Private::destroy(int index)
{
    std::unique_ptr<IPlugin> &plugin = plugins[static_cast<std::size_t>(index)];
    if (!plugin)
        return;
    // While the derived object is whole: what it registered may still call it.
    plugin->releaseObjects();
    plugin.reset();
    if (!infos.at(index).hasError())
        infos[index].state = PluginInfo::Stopped;
}

void PluginManager::Private::fail(int index, const QString &reason)
{
    infos[index].errorString = reason;
    destroy(index);
}

bool PluginManager::Private::failsWithDependency(int index)
{
    for (const ResolvedDependency &dependency : qAsConst(order.dependencies[index])) {
        const PluginInfo &needed = infos.at(dependency.index);
        if (dependency.optional || !needed.hasError())
            continue;
        fail(index, failedDependencyText(needed.metaData));
        return true;
    }
    return false;
}

std::optional<QString> PluginManager::Private::call(IPlugin *plugin, const std::function<void()> &code)
{
    const QScopedValueRollback<const IPlugin *> rollback(active, plugin);
    try {
        code();
    } catch (const std::exception &exception) {
        return QString::fromLocal8Bit(exception.what());
    } catch (...) {
        return PluginManager::tr("something unknown");
    }
    return std::nullopt;
}

} // namespace ExtensionSystem

#include "extensionsystem/pluginmanager.h"

#include "extensionsystem/dependencyorder.h"
#include "extensionsystem/iplugin.h"
#include "extensionsystem/plugindirectory.h"

#include <QFile>
#include <QLoggingCategory>
#include <QPluginLoader>
#include <QTimer>

#include <vector>

namespace ExtensionSystem {

namespace {

Q_LOGGING_CATEGORY(extensionSystemLog, "extensionsystem")

/// The pause after a delayedInitialize() that took its time, in milliseconds: room for a repaint and for input.
constexpr int LongTurn = 20;

PluginManager *theManager = nullptr;

/// The loader says of a machine that it doesn't know that there is no such file.
bool isForAnotherMachine(const QString &path)
{
    const auto machineOf = [](const QString &name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) && file.seek(18) ? file.read(2) : QByteArray(); // ELF: e_machine
    };
    return machineOf(path) != machineOf(QStringLiteral("/proc/self/exe"));
}

} // namespace

/// The state of the one plug-in manager and the steps of the plug-ins' life, one function each. Owns the plug-in
/// objects.
class PluginManager::Private final
{
public:
    std::unique_ptr<IPlugin> &plugin(int index) { return plugins[static_cast<std::size_t>(index)]; }

    void load(int index);
    void initialize(int index, const QStringList &arguments);
    void extensionsInitialized(int index);
    void delayedInitialize();
    void destroy(int index);

    /// Marks a plug-in as failed and deletes it and what it registered.
    void fail(int index, const QString &reason);
    /// True when something that it can't do without has failed; it is marked as failed then.
    bool failsWithDependency(int index);

    QVector<QObject *> pool;
    QVector<PluginInfo> infos;
    /// By the same index as infos; filled once loading has begun.
    std::vector<std::unique_ptr<IPlugin>> plugins;
    DependencyOrder order;
    QVector<int> delayed;
    QTimer delayedTimer;
    bool loadingBegun = false;
    bool shuttingDown = false;
};

void PluginManager::Private::load(int index)
{
    if (failsWithDependency(index))
        return;
    QPluginLoader loader(infos.at(index).filePath);
    // All symbols are resolved now, so that a missing one is a reason to list and not a crash later. The code stays in
    // memory for good: meta objects, strings and posted events of a plug-in may outlive its root object. Symbols stay
    // local, so that equal names in two plug-ins don't meet; what plug-ins share, they link.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    QObject *root = loader.instance();
    auto *loaded = qobject_cast<IPlugin *>(root);
    if (loaded) {
        plugin(index).reset(loaded);
        infos[index].state = PluginInfo::Loaded;
        return;
    }
    delete root;
    if (root)
        fail(index, PluginManager::tr("the root object is not a plug-in"));
    else if (isForAnotherMachine(loader.fileName()))
        fail(index, PluginManager::tr("the file was built for another machine"));
    else
        fail(index, loader.errorString());
}

void PluginManager::Private::initialize(int index, const QStringList &arguments)
{
    if (!plugin(index) || failsWithDependency(index))
        return;
    QString reason;
    if (plugin(index)->initialize(arguments, &reason))
        infos[index].state = PluginInfo::Initialized;
    else if (reason.isEmpty())
        fail(index, PluginManager::tr("initializing failed for a reason that the plug-in did not tell"));
    else
        fail(index, PluginManager::tr("initializing failed: %1").arg(reason));
}

void PluginManager::Private::extensionsInitialized(int index)
{
    if (!plugin(index))
        return;
    plugin(index)->extensionsInitialized();
    infos[index].state = PluginInfo::Running;
    delayed.append(index);
}

void PluginManager::Private::delayedInitialize()
{
    bool tookTime = false;
    while (!tookTime && !delayed.isEmpty())
        tookTime = plugin(delayed.takeFirst())->delayedInitialize();
    if (!delayed.isEmpty())
        delayedTimer.start(LongTurn);
}

void PluginManager::Private::destroy(int index)
{
    if (!plugin(index))
        return;
    // While the derived object is whole: what it registered may still call it.
    plugin(index)->releaseObjects();
    plugin(index).reset();
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

PluginManager::PluginManager() : d(std::make_unique<Private>())
{
    Q_ASSERT_X(!theManager, "PluginManager", "there is one already");
    theManager = this;
    d->delayedTimer.setSingleShot(true);
    connect(&d->delayedTimer, &QTimer::timeout, this, [this] { d->delayedInitialize(); });
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
    if (!d->loadingBegun)
        d->infos = readPluginDirectories(pluginDirectories(paths));
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
    const QVector<int> forward = d->order.loadOrder;
    for (auto it = forward.crbegin(); it != forward.crend(); ++it)
        if (d->plugin(*it))
            d->plugin(*it)->aboutToShutdown();
    for (auto it = forward.crbegin(); it != forward.crend(); ++it)
        d->destroy(*it);
    d->pool.clear();
}

QVector<PluginInfo> PluginManager::plugins() const
{
    return d->infos;
}

void PluginManager::addObject(QObject *obj)
{
    if (!theManager || !obj || theManager->d->pool.contains(obj))
        return;
    theManager->d->pool.append(obj);
    connect(obj, &QObject::destroyed, theManager, &PluginManager::removeObject);
}

void PluginManager::removeObject(QObject *obj)
{
    if (theManager)
        theManager->d->pool.removeAll(obj);
}

QVector<QObject *> PluginManager::allObjects()
{
    return theManager ? theManager->d->pool : QVector<QObject *>();
}

} // namespace ExtensionSystem

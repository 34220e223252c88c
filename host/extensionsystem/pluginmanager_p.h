#pragma once

#include "extensionsystem/dependencyorder.h"
#include "extensionsystem/objectpool.h"
#include "extensionsystem/pluginmanager.h"

#include <QList>
#include <QLoggingCategory>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace ExtensionSystem {

class IPlugin;

Q_DECLARE_LOGGING_CATEGORY(extensionSystemLog)

/// The state of the one plug-in manager and the steps of the plug-ins' life, one function each. Owned by the manager;
/// owns the plug-in objects. GUI thread only.
class PluginManager::Private final
{
public:
    explicit Private(PluginManager *manager);
    ~Private();

    void load(int index);
    void initialize(int index, const QStringList &arguments);
    void extensionsInitialized(int index);
    void nextDelayedInitialize();
    void aboutToShutdown();
    void destroy(int index);

    /// Marks a plug-in as failed and deletes it and what it registered.
    void fail(int index, const QString &reason);
    /// True when something that it can't do without has failed; it is marked as failed then.
    bool failsWithDependency(int index);
    /// Calls into plug-in code. What the plug-in puts into the pool meanwhile counts as its own. Returns what an
    /// escaped exception said.
    std::optional<QString> call(IPlugin *plugin, const std::function<void()> &code);

    PluginManager *q;
    ObjectPool pool;
    QStringList paths;
    QVector<PluginInfo> infos;
    /// By the same index as infos; filled once loading has begun.
    std::vector<std::unique_ptr<IPlugin>> plugins;
    DependencyOrder order;
    QList<int> delayed;
    QTimer delayedTimer;
    const IPlugin *active = nullptr;
    int shutdownTimeout = 30000;
    bool loadingBegun = false;
    bool shuttingDown = false;
};

} // namespace ExtensionSystem

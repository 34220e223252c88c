#pragma once

#include "extensionsystem/pluginmanager.h"

#include <QVector>

namespace ExtensionSystem {

/// One edge of the dependency graph: the place of the needed plug-in in the list, and whether it can be done without.
struct ResolvedDependency
{
    int index = -1;
    bool optional = false;
};

/// The result of resolving: a plain record, places refer to the list that was resolved.
struct DependencyOrder
{
    /// The plug-ins that can be loaded, each after everything it depends on; otherwise in the order of the list.
    QVector<int> loadOrder;
    /// For every plug-in of the list what it depends on, so far as it is there.
    QVector<QVector<ResolvedDependency>> dependencies;
};

/// Finds what each plug-in of state Read in @p plugins depends on. Those that can be loaded become Resolved; the others
/// stay Read and are told why: a dependency that is missing, of an unfit version, part of a cycle (given with its whole
/// path), or itself not loadable.
DependencyOrder resolveDependencies(QVector<PluginInfo> &plugins);

/// The reason given to a plug-in that needs @p dependency when that one failed.
QString failedDependencyText(const PluginMetaData &dependency);

} // namespace ExtensionSystem

#pragma once

#include "extensionsystem/pluginmanager.h"

namespace ExtensionSystem {

/// Turns the directories given by the program into one absolute, existing path each, the first of equal ones kept;
/// empty entries are dropped, since the loader would take them for the current directory.
QStringList pluginDirectories(const QStringList &paths);

/// Reads the metadata of every plug-in file in @p directories; loads no code. Damaged files and further plug-ins of a
/// name that was found already are listed with the reason.
QVector<PluginInfo> readPluginDirectories(const QStringList &directories);

} // namespace ExtensionSystem

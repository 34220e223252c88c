#pragma once

#include <QtGlobal>

#if defined(EXTENSIONSYSTEM_LIBRARY)
#define EXTENSIONSYSTEM_EXPORT Q_DECL_EXPORT
#else
#define EXTENSIONSYSTEM_EXPORT Q_DECL_IMPORT
#endif

/// The interface id that a plug-in names in Q_PLUGIN_METADATA. Its number changes whenever plug-ins built before would
/// no longer work, so that they are refused before their code is loaded.
#define EXTENSIONSYSTEM_PLUGIN_IID "org.extpoint.host.Plugin/1.0"

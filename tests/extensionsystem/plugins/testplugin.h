#pragma once

#include "extensionsystem/iplugin.h"

#if defined(TESTPLUGIN_NO_IPLUGIN)

/// A root object that carries the right metadata and is no plug-in.
class TestPlugin final : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "testplugin.json")
};

#else

/// Writes every call into the list property "calls" of the application object. With TESTPLUGIN_REGISTERS it puts three
/// objects into the pool, two of them auto-released; with TESTPLUGIN_FAILS it can't be initialized.
class TestPlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "testplugin.json")
public:
    TestPlugin();
    ~TestPlugin() override;

    bool initialize(const QStringList &arguments, QString *errorString) override;
    void extensionsInitialized() override;
    bool delayedInitialize() override;
    void aboutToShutdown() override;
};

#endif

#pragma once

#include "extensionsystem/iplugin.h"

#include <QLocalServer>

#include <memory>

class QLocalSocket;

/// Tells the end-to-end tests, from inside the running workbench, what its windows show and where: a JSON object per
/// line in, one per line out, over the local socket that EXTPOINT_PROBE_SOCKET names. It only looks; whatever changes
/// comes from the pointer and the keys. It knows the editor by object names alone, like any other plug-in of the host.
class EndToEndProbe final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "endtoendprobe.json")

public:
    ~EndToEndProbe() override;

    bool initialize(const QStringList &arguments, QString *errorString) override;
    void extensionsInitialized() override;
    void aboutToShutdown() override;

private:
    void serve();
    void answer(QLocalSocket *client);

    std::unique_ptr<QLocalServer> m_server;
};

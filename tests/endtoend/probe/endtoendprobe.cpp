#include "probe/questions.h"

#include "extensionsystem/iplugin.h"

#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>

#include <memory>

namespace {

QJsonObject answerTo(const QJsonObject &request)
{
    const QString ask = request.value(QLatin1String("ask")).toString();
    const bool isPlace = ask == QLatin1String("place");
    return isPlace                      ? Probe::place(request)
        : ask == QLatin1String("lines") ? Probe::lines(request)
                                        : Probe::state(request);
}

} // namespace

/// Tells the end-to-end tests, from inside the running workbench, what its windows show and where: a JSON object per
/// line in, one per line out, over the local socket that EXTPOINT_PROBE_SOCKET names. It only looks; whatever changes
/// comes from the pointer and the keys. It knows the editor by object names alone, like any other plug-in of the host.
class EndToEndProbe final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "endtoendprobe.json")

public:
    bool initialize(const QStringList &arguments, QString *errorString) override;
    void extensionsInitialized() override { }
    void aboutToShutdown() override;

private:
    void serve();
    void answer(QLocalSocket *client);

    std::unique_ptr<QLocalServer> m_server;
};

bool EndToEndProbe::initialize(const QStringList & /*arguments*/, QString *errorString)
{
    m_server = std::make_unique<QLocalServer>();
    connect(m_server.get(), &QLocalServer::newConnection, this, &EndToEndProbe::serve);
    const bool listens = m_server->listen(qEnvironmentVariable("EXTPOINT_PROBE_SOCKET"));
    if (!listens)
        *errorString = m_server->errorString();
    return listens;
}

void EndToEndProbe::aboutToShutdown()
{
    // What is asked from now on would find windows half gone.
    m_server.reset();
}

void EndToEndProbe::serve()
{
    while (QLocalSocket *client = m_server->nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] { answer(client); });
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
    }
}

void EndToEndProbe::answer(QLocalSocket *client)
{
    while (client->canReadLine()) {
        const QJsonObject reply = answerTo(QJsonDocument::fromJson(client->readLine()).object());
        client->write(QJsonDocument(reply).toJson(QJsonDocument::Compact) + '\n');
        client->flush();
    }
}

#include "endtoendprobe.moc"

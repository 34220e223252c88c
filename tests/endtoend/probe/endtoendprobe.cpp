#include "probe/endtoendprobe.h"

#include "probe/questions.h"

#include <QJsonDocument>
#include <QLocalSocket>

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

EndToEndProbe::~EndToEndProbe() = default;

bool EndToEndProbe::initialize(const QStringList & /*arguments*/, QString *errorString)
{
    m_server = std::make_unique<QLocalServer>();
    connect(m_server.get(), &QLocalServer::newConnection, this, &EndToEndProbe::serve);
    const bool listens = m_server->listen(qEnvironmentVariable("EXTPOINT_PROBE_SOCKET"));
    if (!listens)
        *errorString = m_server->errorString();
    return listens;
}

void EndToEndProbe::extensionsInitialized() { }

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

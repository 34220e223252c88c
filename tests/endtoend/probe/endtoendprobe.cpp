#include "probe/endtoendprobe.h"

#include "probe/itemquestions.h"
#include "probe/questions.h"
#include "probe/sheetquestions.h"
#include "probe/windowquestions.h"

#include <QJsonDocument>
#include <QLocalSocket>

namespace {

using Question = QJsonObject (*)(const QJsonObject &request);

QJsonObject answerTo(const QJsonObject &request)
{
    static const QHash<QString, Question> questions {
        { QStringLiteral("state"), &Probe::state },
        { QStringLiteral("dialogs"), &Probe::dialogs },
        { QStringLiteral("menus"), &Probe::menus },
        { QStringLiteral("widget"), &Probe::widget },
        { QStringLiteral("tab"), &Probe::tab },
        { QStringLiteral("tabs"), &Probe::tabs },
        { QStringLiteral("tree"), &Probe::tree },
        { QStringLiteral("rows"), &Probe::rows },
        { QStringLiteral("table"), &Probe::table },
        { QStringLiteral("item"), &Probe::item },
        { QStringLiteral("sheet"), &Probe::sheet },
        { QStringLiteral("sheetRow"), &Probe::sheetRow },
    };
    const QString ask = request.value(QLatin1String("ask")).toString();
    const Question question = questions.value(ask);
    return question ? question(request) : Probe::error(QStringLiteral("no question \"%1\"").arg(ask));
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

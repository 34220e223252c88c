#include "processes.h"

#include "samples/sample.h"
#include "watchedapplication.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

#include <limits>

namespace {

constexpr int longestSample = 900'000; // milliseconds
constexpr int longestStart = 60'000;   // milliseconds

QProcessEnvironment environment(const QString &home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_ACCESSIBILITY"), QStringLiteral("0"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("HOME"), home);
    for (const char *kind : { "CONFIG", "DATA", "STATE", "CACHE" })
        environment.insert(QStringLiteral("XDG_%1_HOME").arg(QLatin1String(kind)), home);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    return environment;
}

} // namespace

Processes::Processes(const QString &home) : m_home(home)
{
    QDir().mkpath(home);
    // Qt warns of a runtime directory that others can read.
    QFile::setPermissions(home, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QJsonObject Processes::sample(const QString &name, const QJsonObject &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment(m_home));
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
        { QStringLiteral("--sample"), name,
            QString::fromUtf8(QJsonDocument(arguments).toJson(QJsonDocument::Compact)) });
    if (!process.waitForFinished(longestSample)) {
        process.kill();
        process.waitForFinished();
        return Samples::failure(QStringLiteral("%1 did not end").arg(name));
    }
    const QJsonDocument answer = QJsonDocument::fromJson(process.readAllStandardOutput());
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 || !answer.isObject())
        return Samples::failure(QStringLiteral("%1 crashed").arg(name));
    return answer.object();
}

double Processes::startToPaint(const QString &program, const QStringList &arguments, const QString &target) const
{
    const QString answer = m_home + QLatin1String("/painted");
    QFile::remove(answer);
    QProcessEnvironment variables = environment(m_home);
    variables.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(EXTPOINT_BENCH_PLUGINS));
    variables.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("extpointpaintprobe"));
    variables.insert(QStringLiteral("EXTPOINT_PAINT_FILE"), answer);
    variables.insert(QStringLiteral("EXTPOINT_PAINT_TARGET"), target);
    QProcess process;
    process.setProcessEnvironment(variables);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const qint64 start = WatchedApplication::now();
    process.start(program, arguments);
    if (!process.waitForFinished(longestStart)) {
        process.kill();
        process.waitForFinished();
        return std::numeric_limits<double>::quiet_NaN();
    }
    QFile file(answer);
    const qint64 painted = file.open(QIODevice::ReadOnly) ? file.readAll().toLongLong() : 0;
    return painted ? double(painted - start) / 1e6 : std::numeric_limits<double>::quiet_NaN();
}

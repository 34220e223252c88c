#include "program.h"

#include "product.h"

#include <QDir>
#include <QFile>

#include <csignal>
#include <unistd.h>

namespace {

constexpr uid_t Nobody = 65534;

} // namespace

Program::Program() : m_environment(QProcessEnvironment::systemEnvironment())
{
    if (!m_home.isValid())
        qFatal("no temporary directory");
    m_environment.insert(s("HOME"), m_home.path());
    for (const char *name :
        { "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR" }) {
        const QString directory = m_home.filePath(s(name));
        if (!QDir().mkdir(directory))
            qFatal("%s cannot be created", qPrintable(directory));
        setMode(directory, 0700);
        m_environment.insert(s(name), directory);
    }
    m_environment.insert(s("EXTPOINT_PROBE_SOCKET"), socketName());
}

Program::~Program()
{
    if (isRunning()) {
        m_process->kill();
        m_process->waitForFinished(Patience);
    }
}

void Program::laysDownRoot()
{
    if (::getuid() != 0)
        return;
    const QFileInfoList own = QDir(m_home.path()).entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoDotDot);
    for (const QFileInfo &directory : own)
        if (::chown(QFile::encodeName(directory.filePath()).constData(), Nobody, Nobody) != 0)
            qFatal("the owner of %s cannot be changed", qPrintable(directory.filePath()));
    m_wrapper = QStringList { s("setpriv"), s("--reuid=65534"), s("--regid=65534"), s("--clear-groups") };
}

void Program::limitMemory(int mebibytes)
{
    m_wrapper = QStringList { s("prlimit"), s("--as=%1").arg(qint64(mebibytes) * 1024 * 1024) };
}

void Program::holdBack(const QString &file)
{
    preloadSlowDisk();
    writeFile(gate(), QByteArray());
    setVariable(s("EXTPOINT_HELD_FILE"), file);
    setVariable(s("EXTPOINT_HELD_WHILE"), gate());
}

void Program::slowDown(int milliseconds)
{
    preloadSlowDisk();
    setVariable(s("EXTPOINT_SLOW_FILES"), QString::number(milliseconds));
}

void Program::preloadSlowDisk()
{
    setVariable(s("LD_PRELOAD"), s(EXTPOINT_BINARY_DIR "/tests/endtoend/libslowdisk.so"));
    // A sanitizer's library wants to be the first one; "open" is none of the functions that it watches.
    setVariable(s("ASAN_OPTIONS"), m_environment.value(s("ASAN_OPTIONS")) + s(":verify_asan_link_order=0"));
}

bool Program::start(const QStringList &arguments)
{
    m_error.clear();
    // A program that was killed has left its own behind.
    QFile::remove(socketName());
    m_process = std::make_unique<QProcess>();
    m_process->setProcessEnvironment(m_environment);
    QStringList command = m_wrapper
        + QStringList { s(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench"),
              s("--plugin-path=" EXTPOINT_BINARY_DIR "/lib/extpoint/plugins"),
              s("--plugin-path=" EXTPOINT_BINARY_DIR "/tests/endtoend/plugins") }
        + arguments;
    const QString program = command.takeFirst();
    m_process->start(program, command);
    return m_process->waitForStarted(Patience);
}

bool Program::isRunning() const
{
    return m_process && m_process->state() != QProcess::NotRunning;
}

bool Program::signal(int number)
{
    return isRunning() && ::kill(pid_t(processId()), number) == 0 && m_process->waitForFinished(Patience);
}

QStringList Program::recoveryCopies() const
{
    return QDir(m_home.filePath(s("XDG_STATE_HOME/extpoint-workbench/recovery"))).entryList({ s("*.recovery") });
}

Program::Result Program::result()
{
    Result result;
    const bool ended = !isRunning() || m_process->waitForFinished(Patience);
    result.error = errorOutput();
    if (ended && m_process->exitStatus() == QProcess::NormalExit)
        result.code = m_process->exitCode();
    result.output = m_process->readAllStandardOutput();
    return result;
}

Program::Result Program::run(const QStringList &arguments)
{
    return start(arguments) ? result() : Result();
}

QByteArray Program::errorOutput()
{
    if (!m_process)
        return m_error;
    m_process->waitForReadyRead(0);
    m_error += m_process->readAllStandardError();
    QByteArray shown;
    const QList<QByteArray> lines = m_error.split('\n');
    for (int i = 0; i < lines.size(); ++i)
        if (!lines.at(i).startsWith("QXcbConnection: XCB error: 3 (BadWindow)"))
            shown += lines.at(i) + (i + 1 < lines.size() ? "\n" : "");
    // Said on any seed but 0, and without the end of the line.
    return shown.replace("QT_HASH_SEED: forced seed value is not 0, cannot guarantee that the hashing functions will "
                         "produce a stable value.",
        "");
}

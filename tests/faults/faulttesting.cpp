#include "faulttesting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

#include <csignal>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace FaultTesting {

namespace {

constexpr uid_t nobody = 65534;

QMutex logMutex;
QStringList logLines;

void keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    const QMutexLocker locker(&logMutex);
    if (context.category && qstrncmp(context.category, "extpoint.", 9) == 0)
        logLines.append(text);
}

void demand(bool holds, const QString &path)
{
    if (!holds)
        qFatal("%s: %s", qPrintable(path), std::strerror(errno));
}

/// To the kernel, about this process.
bool tell(const char *what, const QByteArray &text)
{
    QFile file(QStringLiteral("/proc/self/") + QLatin1String(what));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
}

QByteArray encoded(const QString &path)
{
    return QFile::encodeName(path);
}

} // namespace

void WorkClock::start()
{
    m_wall.start();
    m_workedAtStart = qint64(std::clock());
}

qint64 WorkClock::restart()
{
    const qint64 passed = elapsed();
    start();
    return passed;
}

qint64 WorkClock::elapsed() const
{
    constexpr int hangs = 10;
    const qint64 wall = m_wall.elapsed();
    const qint64 worked = (qint64(std::clock()) - m_workedAtStart) * 1000 / CLOCKS_PER_SEC;
    return wall > hangs * patienceMs() ? wall : qMin(wall, worked);
}

qint64 patienceMs()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 2'000 * 6;
#else
    return 2'000;
#endif
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable/>");
}

void makeFile(const QString &path, const QByteArray &bytes, mode_t mode)
{
    QFile file(path);
    demand(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush(), path);
    setMode(path, mode);
}

void makeLink(const QByteArray &aim, const QString &path)
{
    demand(::symlink(aim.constData(), encoded(path).constData()) == 0, path);
}

void makeHardLink(const QString &existing, const QString &path)
{
    demand(::link(encoded(existing).constData(), encoded(path).constData()) == 0, path);
}

void makePipe(const QString &path)
{
    demand(::mkfifo(encoded(path).constData(), 0666) == 0, path);
}

void makeSocket(const QString &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, encoded(path).constData(), sizeof(address.sun_path));
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    demand(::bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0, path);
    ::close(descriptor);
}

void makeSparse(const QString &path, qint64 size)
{
    makeFile(path, QByteArray());
    demand(::truncate(encoded(path).constData(), size) == 0, path);
}

void makeDirectory(const QString &path, mode_t mode)
{
    demand(::mkdir(encoded(path).constData(), 0755) == 0, path);
    setMode(path, mode);
}

void setMode(const QString &path, mode_t mode)
{
    demand(::chmod(encoded(path).constData(), mode) == 0, path);
}

void giveAway(const QString &path)
{
    if (::geteuid() == 0)
        demand(::lchown(encoded(path).constData(), nobody, nobody) == 0, path);
}

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    ::lstat(encoded(path).constData(), &status);
    return status;
}

QStringList namesIn(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

QByteArray documentOf(int size, char letter)
{
    const QByteArray head = "<Plugin id=\"p\"><ExtPointSet><ExtPoint id=\"a\" tips=\"";
    const QByteArray tail = "\"/></ExtPointSet></Plugin>\n";
    return head + QByteArray(size - head.size() - tail.size(), letter) + tail;
}

Log::Log()
{
    logLines.clear();
    m_before = qInstallMessageHandler(keep);
}

Log::~Log()
{
    qInstallMessageHandler(m_before);
}

QStringList Log::lines() const
{
    const QMutexLocker locker(&logMutex);
    return logLines;
}

void limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit { bytes, RLIM_INFINITY };
    demand(::setrlimit(RLIMIT_FSIZE, &limit) == 0, QStringLiteral("RLIMIT_FSIZE"));
}

bool Child::mountDisk() const
{
    // In a namespace of the child's own the disk goes with it, whatever ends it. A user who is not root gets the right
    // to mount from a namespace of users, in which they have to stay who they are.
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    const bool root = user == "0";
    const QByteArray options = "mode=777,size=" + QByteArray::number(diskKiB) + "k";
    return ::unshare(root ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) == 0
        && (root
            || (tell("setgroups", "deny") && tell("uid_map", user + ' ' + user + " 1")
                && tell("gid_map", group + ' ' + group + " 1")))
        && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && ::mount("tmpfs", encoded(disk).constData(), "tmpfs", 0, options.constData()) == 0;
}

QString Child::body() const
{
    if (!disk.isEmpty() && !mountDisk())
        return QStringLiteral("no disk could be mounted: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
    if (prepare)
        prepare();
    if (::geteuid() == 0
        && (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0
            || ::setresuid(nobody, nobody, nobody) != 0))
        return QStringLiteral("the rights of root could not be laid down");
    WorkClock clock;
    clock.start();
    const QString wrong = act();
    if (wrong.isEmpty() && clock.elapsed() > patienceMs())
        return QStringLiteral("it took %1 ms").arg(clock.elapsed());
    return wrong;
}

QString Child::run() const
{
    int pipe[2];
    demand(::pipe2(pipe, O_CLOEXEC) == 0, QStringLiteral("pipe"));
    const pid_t child = ::fork();
    if (child == 0) {
        const QByteArray wrong = body().toUtf8();
        const bool told = ::write(pipe[1], wrong.constData(), size_t(wrong.size())) == wrong.size();
        ::_exit(told ? 0 : 1);
    }
    ::close(pipe[1]);
    QByteArray told;
    // Beyond what preparing may take, this is a hang, which the child itself can't tell of.
    QElapsedTimer clock;
    clock.start();
    const qint64 longest = 60'000;
    bool hung = false;
    for (;;) {
        pollfd waiting { pipe[0], POLLIN, 0 };
        if (::poll(&waiting, 1, int(qMax<qint64>(0, longest - clock.elapsed()))) == 0) {
            hung = true;
            ::kill(child, SIGKILL);
            break;
        }
        char buffer[4096];
        const ssize_t count = ::read(pipe[0], buffer, sizeof(buffer));
        if (count <= 0)
            break;
        told.append(buffer, int(count));
    }
    ::close(pipe[0]);
    int status = -1;
    ::waitpid(child, &status, 0);
    if (hung)
        return QStringLiteral("it hung");
    if (WIFSIGNALED(status))
        return QStringLiteral("it crashed by signal %1").arg(WTERMSIG(status));
    if (WEXITSTATUS(status) != 0)
        return QStringLiteral("it ended with %1").arg(WEXITSTATUS(status));
    return QString::fromUtf8(told);
}

} // namespace FaultTesting

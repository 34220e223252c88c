#include "core/processidentity.h"

#include <QFile>
#include <QList>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace Core {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Entry
{
    char state = 0;
    quint64 start = 0;
};

/// What the system's table says of a process; all zero when it says nothing.
Entry entryOf(qint64 pid)
{
    const QByteArray line = contentOf(QStringLiteral("/proc/%1/stat").arg(pid));
    // The second field is the program's name in brackets, and may itself hold blanks and brackets.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    constexpr int StateField = 0;
    constexpr int StartField = 19;
    return line.isEmpty() || fields.size() <= StartField
        ? Entry()
        : Entry { fields.at(StateField).isEmpty() ? char(0) : fields.at(StateField).at(0),
              fields.at(StartField).toULongLong() };
}

QByteArray bootId()
{
    return contentOf(QStringLiteral("/proc/sys/kernel/random/boot_id")).trimmed();
}

} // namespace

ProcessIdentity ProcessIdentity::current()
{
    const qint64 pid = ::getpid();
    return { pid, entryOf(pid).start, bootId() };
}

bool ProcessIdentity::isAlive() const
{
    if (pid <= 0 || boot != bootId() || (::kill(pid_t(pid), 0) != 0 && errno != EPERM))
        return false;
    const Entry entry = entryOf(pid);
    // A process that is dead and only waits for its parent to notice writes nothing any more.
    return entry.state != 'Z' && entry.state != 'X' && (start == 0 || entry.start == 0 || entry.start == start);
}

} // namespace Core

#include "extensionfile/regularfile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

bool fail(RegularFileProblem *problem, RegularFileProblem::Kind kind, const QString &reason)
{
    problem->kind = kind;
    problem->reason = reason;
    return false;
}

bool failBySystem(RegularFileProblem *problem)
{
    const bool missing = errno == ENOENT || errno == ENOTDIR;
    const auto kind = missing ? RegularFileProblem::Kind::Missing : RegularFileProblem::Kind::Failed;
    return fail(problem, kind, systemReason());
}

bool failNotRegular(RegularFileProblem *problem)
{
    return fail(problem, RegularFileProblem::Kind::NotRegular, QStringLiteral("Not a regular file."));
}

} // namespace

FileIdentity FileIdentity::of(const QString &path)
{
    struct stat status;
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return { quint64(status.st_dev), quint64(status.st_ino) };
}

FileDescriptor::~FileDescriptor()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool FileDescriptor::close()
{
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    return ::close(descriptor) == 0;
}

bool readRegularFile(const QString &path, qint64 maximumSize, QByteArray *bytes, RegularFileProblem *problem)
{
    if (path.isEmpty() || path.contains(QChar(QChar::Null)))
        return fail(problem, RegularFileProblem::Kind::Missing, QStringLiteral("Not a file name."));
    const QByteArray name = QFile::encodeName(path);
    struct stat status;
    // Opening a device may already do something to it, so the look comes first; the second look is for a file that was
    // replaced in between, and O_NONBLOCK for the pipe that it was replaced by.
    if (::stat(name.constData(), &status) != 0)
        return failBySystem(problem);
    if (!S_ISREG(status.st_mode))
        return failNotRegular(problem);
    const FileDescriptor file(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return failBySystem(problem);
    if (!S_ISREG(status.st_mode))
        return failNotRegular(problem);
    if (!readDescriptor(file.get(), status.st_size, maximumSize, bytes))
        return fail(problem, RegularFileProblem::Kind::Failed, systemReason());
    return true;
}

bool readDescriptor(int descriptor, qint64 expected, qint64 maximumSize, QByteArray *bytes)
{
    const qint64 mostBytes = maximumSize + 1;
    const qint64 growth = 64 * 1024;
    bytes->clear();
    qint64 length = 0;
    // One byte of room beyond the expected size lets the second call see the end.
    qint64 room = std::min(expected + 1, mostBytes);
    for (;;) {
        bytes->resize(int(room));
        const ssize_t count = ::read(descriptor, bytes->data() + length, size_t(room - length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        length += count;
        if (count == 0 || length == mostBytes)
            break;
        if (length == room)
            room = std::min(room + growth, mostBytes);
    }
    bytes->resize(int(length));
    return true;
}

QString systemReason()
{
    return qt_error_string(errno);
}

} // namespace ExtensionFile

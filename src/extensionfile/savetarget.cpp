#include "extensionfile/savetarget.h"

#include "extensionfile/regularfile.h"

#include <QFile>

#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

bool refuse(QString *reason, const QString &text)
{
    *reason = text;
    return false;
}

QByteArray directoryOf(const QByteArray &path)
{
    const int slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

bool readLink(QByteArray *path)
{
    QByteArray aim(PATH_MAX, '\0');
    const ssize_t length = ::readlink(path->constData(), aim.data(), size_t(aim.size()));
    if (length < 0)
        return false;
    aim.truncate(int(length));
    *path = aim.startsWith('/') ? aim : directoryOf(*path) + '/' + aim;
    return true;
}

/// Ends with `path` being no link. `exists` is false at the end of a dangling one.
bool followLinks(QByteArray *path, bool *exists, struct stat *status, QString *reason)
{
    const int maximumLinks = 40; // as many as the kernel follows
    for (int links = 0; links <= maximumLinks; ++links) {
        *exists = ::lstat(path->constData(), status) == 0;
        if (!*exists)
            return errno == ENOENT || refuse(reason, systemReason());
        if (!S_ISLNK(status->st_mode))
            return true;
        if (!readLink(path))
            return refuse(reason, systemReason());
    }
    return refuse(reason, qt_error_string(ELOOP));
}

} // namespace

bool findSaveTarget(const QString &path, SaveTarget *target, QString *reason)
{
    if (path.isEmpty() || path.contains(QChar(QChar::Null)))
        return refuse(reason, QStringLiteral("Not a file name."));
    bool exists = false;
    target->path = QFile::encodeName(path);
    if (!followLinks(&target->path, &exists, &target->status, reason))
        return false;
    if (QFile::encodeName(QFile::decodeName(target->path)) != target->path)
        return refuse(reason, QStringLiteral("The name of the file is not in the encoding of the system."));
    target->directory = directoryOf(target->path);
    if (!exists)
        return true;
    const auto isRegular
        = [&] { return S_ISREG(target->status.st_mode) || refuse(reason, QStringLiteral("Not a regular file.")); };
    // Opening a device may already do something to it.
    if (!isRegular())
        return false;
    // Replacing would need no right to the file itself, but whoever took that right away meant it.
    target->file = std::make_unique<FileDescriptor>(untilUninterrupted(
        [&] { return ::open(target->path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!target->file->isOpen() || ::fstat(target->file->get(), &target->status) != 0)
        return refuse(reason, systemReason());
    return isRegular();
}

} // namespace ExtensionFile

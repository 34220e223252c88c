#include "extensionfile/savetarget.h"

#include "extensionfile/regularfile.h"

#include <QFile>
#include <QVector>

#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
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

bool mayAccess(const QByteArray &path, int rights)
{
    return ::faccessat(AT_FDCWD, path.constData(), rights, AT_EACCESS) == 0;
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

bool isOwnGroup(gid_t group)
{
    if (group == ::getegid())
        return true;
    QVector<gid_t> groups(qMax(0, ::getgroups(0, nullptr)));
    const int count = ::getgroups(groups.size(), groups.data());
    groups.resize(qMax(0, count));
    return groups.contains(group);
}

/// What is to replace a file bears its name and seven characters more for a moment.
bool leavesRoomInName(const QByteArray &path, const QByteArray &directory)
{
    const long longest = ::pathconf(directory.constData(), _PC_NAME_MAX);
    return longest < 0 || path.size() - path.lastIndexOf('/') - 1 + 7 <= longest;
}

/// Whether a new file can be given the owner, the group and the rights of the present one. An access list can't be put
/// on by the mode alone.
bool canBeReplacedAlike(const QByteArray &path, const struct stat &status)
{
    const bool ownerKept = ::geteuid() == 0 || (status.st_uid == ::geteuid() && isOwnGroup(status.st_gid));
    return ownerKept && ::getxattr(path.constData(), "system.posix_acl_access", nullptr, 0) <= 0;
}

} // namespace

bool findSaveTarget(const QString &path, SaveTarget *target, QString *reason)
{
    if (path.isEmpty() || path.contains(QChar(QChar::Null)))
        return refuse(reason, QStringLiteral("Not a file name."));
    struct stat status = {};
    target->path = QFile::encodeName(path);
    if (!followLinks(&target->path, &target->exists, &status, reason))
        return false;
    if (QFile::encodeName(QFile::decodeName(target->path)) != target->path)
        return refuse(reason, QStringLiteral("The name of the file is not in the encoding of the system."));
    target->directory = directoryOf(target->path);
    const bool directoryWritable = mayAccess(target->directory, W_OK | X_OK);
    if (!target->exists)
        return directoryWritable || refuse(reason, systemReason());
    if (!S_ISREG(status.st_mode))
        return refuse(reason, QStringLiteral("Not a regular file."));
    // Replacing would need no right to the file itself, but whoever took that right away meant it.
    if (!mayAccess(target->path, W_OK))
        return refuse(reason, systemReason());
    const bool replaceable = directoryWritable && status.st_nlink == 1
        && leavesRoomInName(target->path, target->directory) && canBeReplacedAlike(target->path, status);
    target->way = replaceable ? SaveTarget::Way::Replace : SaveTarget::Way::InPlace;
    target->mode = status.st_mode & 07777;
    target->owner = status.st_uid;
    target->group = status.st_gid;
    return true;
}

} // namespace ExtensionFile

#include "extensionfile/inplacesave.h"

#include "extensionfile/backup.h"
#include "extensionfile/logging.h"
#include "extensionfile/regularfile.h"

#include <QFile>

#include <cerrno>

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

bool replaceContents(int descriptor, const QByteArray &bytes, qint64 *written)
{
    return writeFromStart(descriptor, bytes, written) && ::ftruncate(descriptor, bytes.size()) == 0
        && syncToDisk(descriptor);
}

/// What a disk took and what it gives back need not be the same.
bool contains(int descriptor, const QByteArray &bytes)
{
    QByteArray found;
    return ::lseek(descriptor, 0, SEEK_SET) == 0 && readDescriptor(descriptor, bytes.size(), bytes.size(), &found)
        && found == bytes;
}

/// Writes back only what was overwritten: whatever stopped the writing would stop it at the same place again.
bool putBack(int descriptor, const QByteArray &old, qint64 overwritten)
{
    struct stat status;
    qint64 written = 0;
    if (!writeFromStart(descriptor, old.left(int(overwritten)), &written) || ::fstat(descriptor, &status) != 0)
        return false;
    // Cutting comes last, after all bytes; if it has taken place, they are all to be written again.
    if (status.st_size < old.size() && !writeFromStart(descriptor, old, &written))
        return false;
    return (status.st_size <= old.size() || ::ftruncate(descriptor, old.size()) == 0) && syncToDisk(descriptor)
        && contains(descriptor, old);
}

/// Leaves a part of the growth behind when it fails in the middle.
bool takeRoom(int descriptor, qint64 oldSize, qint64 newSize, QString *reason)
{
    if (newSize <= oldSize)
        return true;
    const int failure = ::posix_fallocate(descriptor, oldSize, newSize - oldSize);
    if (failure == 0)
        return true;
    *reason = qt_error_string(failure);
    return false;
}

void reportKept(const QString &path)
{
    const QStringList kept = Backup::keptOf(path);
    for (const QString &backup : kept)
        qCWarning(fileLog, "%s: an earlier save was interrupted; what was there before it is kept in %s",
            qUtf8Printable(oneLine(path)), qUtf8Printable(backup));
}

QString keptIn(const Backup &backup)
{
    return QStringLiteral(" The old contents are kept in %1").arg(backup.fileName());
}

/// Always false, for the sake of its callers.
bool giveBack(int descriptor, const QByteArray &old, qint64 overwritten, Backup *backup, QString *reason)
{
    if (putBack(descriptor, old, overwritten))
        backup->remove();
    else
        *reason += QStringLiteral(" The old contents could not be put back.") + keptIn(*backup);
    return false;
}

} // namespace

bool writeInPlace(const QByteArray &path, const QByteArray &bytes, QString *reason)
{
    const qint64 maximumOldSize = 1024 * 1024 * 1024;
    FileDescriptor file(::open(path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status;
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return refuse(reason, systemReason());
    if (!S_ISREG(status.st_mode))
        return refuse(reason, QStringLiteral("Not a regular file."));
    QByteArray old;
    if (status.st_size > maximumOldSize)
        return refuse(reason, QStringLiteral("The file is too large to be kept while it is written."));
    if (!readDescriptor(file.get(), status.st_size, maximumOldSize, &old))
        return refuse(reason, systemReason());
    reportKept(QFile::decodeName(path));
    Backup backup(path);
    if (!backup.make(old, reason))
        return false;
    if (!takeRoom(file.get(), old.size(), bytes.size(), reason)) {
        // It may have been lengthened all the same.
        return giveBack(file.get(), old, 0, &backup, reason);
    }
    qint64 written = 0;
    if (!replaceContents(file.get(), bytes, &written)) {
        *reason = systemReason();
        return giveBack(file.get(), old, written, &backup, reason);
    }
    if (!contains(file.get(), bytes)) {
        *reason = QStringLiteral("The file does not hold what was written.");
        return giveBack(file.get(), old, bytes.size(), &backup, reason);
    }
    if (!file.close()) {
        *reason = systemReason();
        *reason += keptIn(backup);
        return false;
    }
    backup.remove();
    return true;
}

bool writeFromStart(int descriptor, const QByteArray &bytes, qint64 *written)
{
    *written = 0;
    while (*written < bytes.size()) {
        const ssize_t count
            = ::pwrite(descriptor, bytes.constData() + *written, size_t(bytes.size() - *written), off_t(*written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        *written += count;
    }
    return true;
}

bool syncToDisk(int descriptor)
{
    return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP || errno == ENOSYS;
}

} // namespace ExtensionFile

#include "core/filestamp.h"

#include "utils/pathtext.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <time.h>
#include <unistd.h>

namespace Core {

namespace {

// The coarse kernel clock that stamps files ticks every 10 ms at the slowest (CONFIG_HZ=100).
constexpr qint64 FileClockTick = 10'000'000;

QString text(const char *source)
{
    return QCoreApplication::translate("Core::FileStamp", source);
}

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

FileStamp FileStamp::of(const QString &path)
{
    FileStamp stamp;
    struct stat data = {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &data) != 0)
        return stamp;
    stamp.exists = true;
    stamp.device = data.st_dev;
    stamp.inode = data.st_ino;
    stamp.size = data.st_size;
    stamp.modified = nanoseconds(data.st_mtim);
    stamp.changed = nanoseconds(data.st_ctim);
    return stamp;
}

FileStamp FileStamp::settled(const QString &path)
{
    FileStamp stamp = of(path);
    for (int round = 0; round < 8 && stamp.exists; ++round) {
        timespec now = {};
        ::clock_gettime(CLOCK_REALTIME, &now);
        const qint64 age = nanoseconds(now) - stamp.changed;
        // A stamp from the future comes from another machine's clock; waiting would not help.
        if (age > FileClockTick || age < 0)
            break;
        QThread::msleep(5);
        stamp = of(path);
    }
    return stamp;
}

QString whyNotReadable(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat data = {};
    if (::stat(name.constData(), &data) != 0) {
        const int code = errno;
        if (code == ENOENT && QFileInfo(path).isSymLink())
            return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file is a link to something that does not exist."));
        if (code == ENOENT && Utils::isMisencoded(path))
            return text(QT_TRANSLATE_NOOP("Core::FileStamp",
                "The name of the file, or of a directory above it, is not in the encoding of the system."));
        if (code == ENOENT)
            return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file does not exist."));
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file cannot be reached: %1.")).arg(qt_error_string(code));
    }
    if (S_ISDIR(data.st_mode))
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "This is a directory, not a file."));
    if (!S_ISREG(data.st_mode))
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "This is not a regular file."));
    if (::access(name.constData(), R_OK) != 0)
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file cannot be read: %1.")).arg(qt_error_string(errno));
    return QString();
}

QString whyNotWritten(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray directory = QFile::encodeName(QFileInfo(path).absolutePath());
    if (::access(directory.constData(), F_OK) != 0)
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The directory of the file does not exist."));
    if (::access(name.constData(), F_OK) == 0 && ::access(name.constData(), W_OK) != 0)
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file cannot be written: %1."))
            .arg(qt_error_string(errno));
    struct statvfs space = {};
    if (::statvfs(directory.constData(), &space) == 0 && space.f_bavail == 0 && space.f_blocks > 0)
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file cannot be written: %1."))
            .arg(qt_error_string(ENOSPC));
    rlimit limit = {};
    if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        return text(QT_TRANSLATE_NOOP("Core::FileStamp",
                        "The file cannot be written: this process may write no more than %1 bytes to a file."))
            .arg(qulonglong(limit.rlim_cur));
    if (::access(directory.constData(), W_OK) != 0)
        return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The directory of the file cannot be written: %1."))
            .arg(qt_error_string(errno));
    return text(QT_TRANSLATE_NOOP("Core::FileStamp", "The file on disk was not changed."));
}

} // namespace Core

#include "extensionfile/regularfile.h"

#include "extensionfile/words.h"

#include <QFile>

#include <algorithm>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

bool failBySystem(ReadError *error)
{
    const bool missing = errno == ENOENT || errno == ENOTDIR;
    return error->fail(missing ? ReadError::Kind::Missing : ReadError::Kind::Unreadable, systemReason());
}

bool isRegular(const struct stat &status, ReadError *error)
{
    return S_ISREG(status.st_mode)
        || error->fail(ReadError::Kind::NotRegular, say(QT_TRANSLATE_NOOP("ExtensionFile", "Not a regular file.")));
}

} // namespace

FileIdentity FileIdentity::of(const QString &path)
{
    return FileStamp::of(path).identity;
}

FileStamp FileStamp::of(const QString &path)
{
    struct stat status;
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    const auto nanoseconds = [](const timespec &time) { return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec; };
    return { { quint64(status.st_dev), quint64(status.st_ino) }, qint64(status.st_size), nanoseconds(status.st_mtim),
        nanoseconds(status.st_ctim) };
}

FileDescriptor::~FileDescriptor()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool readRegularFile(const QString &path, qint64 maximumSize, QByteArray *bytes, ReadError *error)
{
    if (path.isEmpty() || path.contains(QChar(QChar::Null)))
        return error->fail(ReadError::Kind::Missing, say(QT_TRANSLATE_NOOP("ExtensionFile", "Not a file name.")));
    const QByteArray name = QFile::encodeName(path);
    struct stat status;
    // Opening a device may already do something to it, so the look comes first; the second look is for a file that was
    // replaced in between, and O_NONBLOCK for the pipe that it was replaced by.
    if (::stat(name.constData(), &status) != 0)
        return failBySystem(error);
    if (!isRegular(status, error))
        return false;
    const FileDescriptor file(
        untilUninterrupted([&] { return ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); }));
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return failBySystem(error);
    if (!isRegular(status, error))
        return false;
    return readDescriptor(file.get(), maximumSize, bytes) || error->fail(ReadError::Kind::Unreadable, systemReason());
}

bool readDescriptor(int descriptor, qint64 maximumSize, QByteArray *bytes)
{
    const qint64 block = 16 * 1024;
    qint64 length = 0;
    for (ssize_t count = 1; count > 0 && length <= maximumSize; length += count) {
        bytes->resize(int(std::min(2 * length + block, maximumSize + 1)));
        count = untilUninterrupted(
            [&] { return ::read(descriptor, bytes->data() + length, size_t(bytes->size() - length)); });
        if (count < 0)
            return false;
    }
    bytes->resize(int(length));
    return true;
}

bool writePart(int descriptor, const QByteArray &bytes, qint64 begin, qint64 end, qint64 *reached)
{
    *reached = begin;
    while (*reached < end) {
        const ssize_t count = untilUninterrupted([&] {
            return ::pwrite(descriptor, bytes.constData() + *reached, size_t(end - *reached), off_t(*reached));
        });
        // A disk that takes nothing will not take it the next time.
        if (count == 0)
            errno = EIO;
        if (count <= 0)
            return false;
        *reached += count;
    }
    return true;
}

bool contains(int descriptor, const QByteArray &bytes)
{
    char piece[16 * 1024];
    qint64 place = 0;
    for (;;) {
        const ssize_t count
            = untilUninterrupted([&] { return ::pread(descriptor, piece, sizeof(piece), off_t(place)); });
        if (count == 0)
            return place == bytes.size();
        if (count < 0 || count > bytes.size() - place
            || std::memcmp(piece, bytes.constData() + place, size_t(count)) != 0)
            return false;
        place += count;
    }
}

bool syncToDisk(int descriptor)
{
    if (untilUninterrupted([&] { return ::fsync(descriptor); }) != 0 && errno != EINVAL && errno != ENOTSUP
        && errno != ENOSYS)
        return false;
    const int other = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return other >= 0 && ::close(other) == 0;
}

bool syncDirectory(const QByteArray &directory)
{
    const FileDescriptor descriptor(::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.isOpen() && syncToDisk(descriptor.get());
}

QString systemReason()
{
    return qt_error_string(errno);
}

bool refuse(QString *reason, const QString &text)
{
    *reason = text;
    return false;
}

} // namespace ExtensionFile

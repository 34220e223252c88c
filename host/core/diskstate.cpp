#include "core/diskstate.h"

#include "core/filestamp.h"

#include <QCryptographicHash>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Core {

namespace {

constexpr qint64 LargestHashed = 64 * 1024 * 1024; // bytes

} // namespace

DiskState DiskState::of(const QString &path)
{
    DiskState state;
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        state.kind = errno == ENOENT || errno == ENOTDIR ? Missing : Unreadable;
        return state;
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        state.kind = Unreadable;
        return state;
    }
    struct stat data = {};
    if (::fstat(descriptor, &data) != 0 || !S_ISREG(data.st_mode)) {
        state.kind = Unreadable;
        return state;
    }
    if (data.st_size > LargestHashed) {
        const FileStamp stamp = FileStamp::of(path);
        state.kind = Regular;
        state.hash = QByteArray::number(stamp.size) + '@' + QByteArray::number(stamp.modified);
        return state;
    }
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&file)) {
        state.kind = Unreadable;
        return state;
    }
    state.kind = Regular;
    state.hash = hash.result().toHex();
    return state;
}

} // namespace Core

#include "core/diskstate.h"

#include "core/filestamp.h"

#include <QFile>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Core {

namespace {

constexpr qint64 LargestHashed = 64 * 1024 * 1024; // bytes
constexpr qint64 PieceSize = 64 * 1024;            // bytes

/// Empty when the file can't be read to its end.
QByteArray hashOf(QFile &file)
{
    XXH3_state_t state;
    XXH3_128bits_reset(&state);
    QByteArray piece(int(PieceSize), Qt::Uninitialized);
    qint64 length = 0;
    while ((length = file.read(piece.data(), piece.size())) > 0)
        XXH3_128bits_update(&state, piece.constData(), std::size_t(length));
    if (length < 0)
        return {};
    XXH128_canonical_t digest;
    XXH128_canonicalFromHash(&digest, XXH3_128bits_digest(&state));
    return QByteArray(reinterpret_cast<const char *>(digest.digest), sizeof digest.digest).toHex();
}

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
    if (!file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
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
    state.hash = hashOf(file);
    state.kind = state.hash.isEmpty() ? Unreadable : Regular;
    return state;
}

} // namespace Core

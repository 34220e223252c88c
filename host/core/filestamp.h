#pragma once

#include "core/core_global.h"

#include <QString>
#include <QtGlobal>

namespace Core {

/// What identifies one state of a file on disk: two stamps of a path that are equal mean that nobody wrote it between.
/// A plain value.
struct CORE_EXPORT FileStamp
{
    bool exists = false;
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;     ///< Bytes.
    qint64 modified = 0; ///< Of the content, nanoseconds since 1970.
    qint64 changed = 0;  ///< Of content or attributes, nanoseconds since 1970.

    /// Follows symbolic links. A path that can't be looked at counts as not existing.
    [[nodiscard]] static FileStamp of(const QString &path);

    /// As of(), but waits (at most 40 ms) until the stamp is older than the tick of the file system's clock: a file
    /// written twice within one tick would otherwise have the same stamp twice.
    [[nodiscard]] static FileStamp settled(const QString &path);

    friend bool operator==(const FileStamp &a, const FileStamp &b)
    {
        return a.exists == b.exists && a.device == b.device && a.inode == b.inode && a.size == b.size
            && a.modified == b.modified && a.changed == b.changed;
    }
    friend bool operator!=(const FileStamp &a, const FileStamp &b) { return !(a == b); }
};

/// Why the file can't be read, as a sentence to show; empty when nothing stands in the way.
[[nodiscard]] CORE_EXPORT QString whyNotReadable(const QString &path);

/// The likely reason why a file was not written, as a sentence to show. Never empty.
[[nodiscard]] CORE_EXPORT QString whyNotWritten(const QString &path);

} // namespace Core

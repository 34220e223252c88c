#pragma once

#include "core/core_global.h"

#include <QByteArray>
#include <QString>

namespace Core {

/// What stands under a path on disk, seen by its content: a file that was written again with the same bytes is in the
/// same state. A plain value.
struct CORE_EXPORT DiskState
{
    enum Kind {
        Missing,
        Unreadable, ///< Not permitted, or not a regular file.
        Regular
    };

    Kind kind = Missing;
    /// XXH3 of the content, 128 bits in hexadecimal: it tells accidents apart, not attacks, and costs next to nothing
    /// while a file is opened. Empty unless it is a regular file. A file beyond 64 MB, which no editor reads at one go,
    /// is told by size and time instead.
    QByteArray hash;

    /// Follows symbolic links and never blocks on a pipe or a device.
    [[nodiscard]] static DiskState of(const QString &path);

    friend bool operator==(const DiskState &a, const DiskState &b) { return a.kind == b.kind && a.hash == b.hash; }
    friend bool operator!=(const DiskState &a, const DiskState &b) { return !(a == b); }
};

} // namespace Core

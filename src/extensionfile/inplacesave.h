#pragma once

#include <QByteArray>
#include <QString>

namespace ExtensionFile {

// Which files are written in place, and why. A file with further hard links: whoever made them wants one content under
// several names, and a new file would take one name and silently leave the others with the old content. A file in a
// directory that takes no new file. A file whose owner, group or access list a new file could not be given. A file
// whose name is too long for the longer one of what would replace it. None of these can be exchanged at once, so their
// old bytes are brought to disk elsewhere first.

/// Overwrites the existing regular file `path` (in the encoding of file names). The old bytes are kept as a Backup
/// until the new ones were read back from the file; without a backup nothing is written. Room for what the file grows
/// by is taken before the first old byte is touched; if writing fails all the same, the old bytes are written back.
/// Where even that fails, the backup stays and the reason names it. Not atomic: whoever looks meanwhile, or kills the
/// process, finds part of the new contents.
///
/// False on failure, with the reason.
[[nodiscard]] bool writeInPlace(const QByteArray &path, const QByteArray &bytes, QString *reason);

/// Writes from the file's first byte on, wherever `descriptor` stands. `written` tells how far it came, on failure too;
/// errno is set then.
[[nodiscard]] bool writeFromStart(int descriptor, const QByteArray &bytes, qint64 *written);

/// Brings `descriptor` to disk. A file system that knows no such thing is no failure.
[[nodiscard]] bool syncToDisk(int descriptor);

} // namespace ExtensionFile

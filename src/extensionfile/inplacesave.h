#pragma once

#include <QByteArray>
#include <QString>

namespace ExtensionFile {

// Which files are written in place, and why. A file with further hard links: whoever made them wants one content under
// several names, and a new file would take one name and silently leave the others with the old content. A file whose
// directory takes no new file, that is a mount point of its own, or whose owner, rights or attributes a new file could
// not be given. None of these can be exchanged at once, so their old bytes are brought to disk elsewhere first.

/// Overwrites the existing regular file @p path (in the encoding of file names), which is open for reading and writing
/// as @p descriptor. The old bytes are kept as a Backup until the new ones are on disk and were read back; without a
/// backup nothing is written. What the file grows by is on disk before the first old byte is touched. If anything fails
/// all the same, the old bytes and time stamps are put back. Where even that fails, the backup stays and the reason
/// names it. Not atomic: whoever looks meanwhile, or kills the process, finds part of the new contents.
///
/// False on failure, with the reason.
[[nodiscard]] bool writeInPlace(int descriptor, const QByteArray &path, const QByteArray &bytes, QString *reason);

} // namespace ExtensionFile

#pragma once

#include <QByteArray>
#include <QString>

namespace ExtensionFile {

/// Puts @p bytes in the place of the file @p path, which is created if it is missing (its directory is not). The bytes
/// are read once more first, so that nothing is written that would not open again; only the instruction alone is let
/// through. The exchange is atomic where it can be, and on disk when this returns. A link stays a link, and what it
/// leads to is written; mode, owner, group, extended attributes of the user and access list stay. Where a new file
/// could not keep them or can't take the name, or the file has further hard links, it is written in place, with a
/// backup meanwhile (see inplacesave.h).
///
/// False on failure (read-only, not a regular file, no space, ...) with "path: reason" in one line of the log and
/// in @p error (may be null): the old bytes are still there. Blocks for as long as the disk takes; any thread.
[[nodiscard]] bool saveFile(const QString &path, const QByteArray &bytes, QString *error);

} // namespace ExtensionFile

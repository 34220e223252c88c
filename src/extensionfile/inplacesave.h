#pragma once

#include <QByteArray>
#include <QString>

namespace ExtensionFile {

/// Overwrites the existing regular file `path` (in the encoding of file names). Room for what it grows by is taken
/// before the first old byte is touched; if writing fails all the same, the old bytes are written back. Not atomic: for
/// files that can't be replaced. False on failure, with the reason.
[[nodiscard]] bool writeInPlace(const QByteArray &path, const QByteArray &bytes, QString *reason);

/// Brings `descriptor` to disk. A file system that knows no such thing is no failure.
[[nodiscard]] bool syncToDisk(int descriptor);

} // namespace ExtensionFile

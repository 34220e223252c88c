#pragma once

#include "utils/utils_global.h"

#include <QString>

namespace Utils {

/// @p text fit for one line of a log or a stream: control characters and line separators, of which the name of a file
/// may hold any, are replaced by "?". Any thread.
[[nodiscard]] UTILS_EXPORT QString oneLine(const QString &text);

/// True for a path that the system never gave like this: some of its bytes, or of its letters, have no counterpart in
/// the encoding of file names, so nothing is found under it although the file may well be there. Doesn't look at the
/// disk. Any thread.
[[nodiscard]] UTILS_EXPORT bool isMisencoded(const QString &path);

} // namespace Utils

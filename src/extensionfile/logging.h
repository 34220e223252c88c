#pragma once

#include <QLoggingCategory>

namespace ExtensionFile {

/// "extpoint.file": what could not be read or written, one line each. Missing files are debug messages, off by default.
Q_DECLARE_LOGGING_CATEGORY(fileLog)

/// @p text fit for one line of a log: control characters (a path or a piece of a damaged file may hold any) are
/// replaced by "?", and what is over 500 characters is cut.
[[nodiscard]] QString oneLine(const QString &text);

} // namespace ExtensionFile

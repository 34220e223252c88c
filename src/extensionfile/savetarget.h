#pragma once

#include "extensionfile/regularfile.h"

#include <QByteArray>
#include <QString>

#include <memory>

#include <sys/stat.h>

namespace ExtensionFile {

/// The file that a path leads to in the end.
struct SaveTarget
{
    QByteArray path; ///< in the encoding of file names, no link
    QByteArray directory;
    std::unique_ptr<FileDescriptor> file; ///< open for reading and writing; null if there is no file yet
    struct stat status = {};              ///< of the file
};

/// Follows the links from `path` and opens what is at their end, by the rights of the effective user. False, with a
/// reason, if it can't or must not be written.
[[nodiscard]] bool findSaveTarget(const QString &path, SaveTarget *target, QString *reason);

} // namespace ExtensionFile

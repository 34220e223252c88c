#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace ExtensionFile {

/// The file that a path leads to in the end, and how it can be written.
struct SaveTarget
{
    enum class Way {
        Replace, ///< a new file takes its name
        InPlace  ///< only its contents can change
    };

    QByteArray path; ///< in the encoding of file names, no link
    QByteArray directory;
    bool exists = false;
    Way way = Way::Replace;
    mode_t mode = 0; ///< permission bits, if it exists
    uid_t owner = 0;
    gid_t group = 0;
};

/// Follows the links from `path` and looks at what is at their end, by the rights of the effective user. False, with a
/// reason, if it can't or must not be written.
[[nodiscard]] bool findSaveTarget(const QString &path, SaveTarget *target, QString *reason);

} // namespace ExtensionFile

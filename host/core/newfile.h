#pragma once

#include "core/core_global.h"

#include <QString>

namespace Core {

/// What an extension file begins with: the plug-in that it is of, and nothing declared yet. A plain value.
struct CORE_EXPORT NewFile
{
    QString place;     ///< The directory that holds a directory for each plug-in.
    QString directory; ///< The name of the plug-in's directory.
    QString id;
    QString name;
    QString vendor; ///< May be empty.

    [[nodiscard]] QString path() const;
    /// What stands against it, a sentence; empty when the file can be made. Looks at the disk.
    [[nodiscard]] QString objection() const;
    /// Makes the plug-in's directory, if need be, and the file in it. Never touches a file that is there. False with
    /// the reason in @p error; nothing is left behind then.
    [[nodiscard]] bool create(QString *error) const;

    /// The name of a directory for a plug-in: the last part of its id.
    [[nodiscard]] static QString directoryFor(const QString &id);
};

} // namespace Core

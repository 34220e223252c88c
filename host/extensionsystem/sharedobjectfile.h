#pragma once

#include <QString>

namespace ExtensionSystem {

/// What a look at a file's bytes says about it, before any loader sees it: a plain record.
struct SharedObjectFile
{
    enum Kind {
        Other,   ///< no shared object, or one without plug-in metadata
        Damaged, ///< begins like a shared object and is not a whole one for this machine; reason says why
        Plugin   ///< a whole shared object that carries plug-in metadata
    };

    Kind kind = Other;
    QString reason;

    /// Reads the headers of the file \a path; loads no code.
    static SharedObjectFile inspect(const QString &path);
};

} // namespace ExtensionSystem

#pragma once

#include <QString>

namespace Core {

/// A file and, where one is wanted, a place in it. A plain value.
struct FileTarget
{
    QString path;
    int line = 0;   ///< Counts from 1; 0 for none.
    int column = 0; ///< As @p line; characters.

    /// Reads "path", "path:line" or "path:line:column", with a colon more at the end as messages have it. A file that
    /// is there under such a name is that file: looks at the disk. @p error says what is wrong with the numbers, and is
    /// left alone when nothing is.
    [[nodiscard]] static FileTarget of(const QString &argument, QString *error);
    /// What of() reads again.
    [[nodiscard]] QString toArgument() const;
};

} // namespace Core

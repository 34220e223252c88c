#pragma once

#include <QString>

namespace Core {

/// What an XML document says of itself in its root element. A plain value.
struct DocumentRoot
{
    QString tag;
    QString id; ///< The attribute of that name.

    /// Of the regular file @p path, of which no more is read than it takes, and 64 KiB at most; empty for anything
    /// else. Any thread.
    [[nodiscard]] static DocumentRoot of(const QString &path);
};

} // namespace Core

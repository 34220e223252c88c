#pragma once

#include "utils/utils_global.h"

#include <QFileInfo>
#include <QMetaType>
#include <QString>

namespace Utils {

/// The path of a file or directory: a value, cleaned once ("." and ".." resolved textually, one '/' between segments,
/// none at the end) so that equal paths compare equal. Touches the disk only where a function says so. Any thread.
class UTILS_EXPORT FileName final
{
public:
    FileName() = default;

    /// Cleans \a path. A null or empty string gives an empty name.
    static FileName fromString(const QString &path);

    QString toString() const { return m_path; }

    /// A file info of the path; it looks at the disk when asked.
    QFileInfo toFileInfo() const { return QFileInfo(m_path); }

    /// The last segment; empty for the root directory and for an empty name.
    QString fileName() const;

    /// The directory that holds this one; "." for a relative name of one segment; empty for the root and an empty name.
    FileName parentDir() const;

    /// Looks at the disk; false for an empty name and for a symbolic link that points nowhere.
    bool exists() const;

    bool isEmpty() const { return m_path.isEmpty(); }
    bool isNull() const { return m_path.isNull(); }

    /// This directory's entry \a path (which may have several segments, and is taken as relative even with a leading
    /// '/'). An empty \a path gives the name itself, an empty name \a path as it stands.
    [[nodiscard]] FileName appendPath(const QString &path) const;

    bool operator==(const FileName &other) const { return m_path == other.m_path; }
    bool operator!=(const FileName &other) const { return m_path != other.m_path; }
    bool operator<(const FileName &other) const { return m_path < other.m_path; }

private:
    QString m_path;
};

inline uint qHash(const FileName &name, uint seed = 0)
{
    return ::qHash(name.toString(), seed);
}

} // namespace Utils

Q_DECLARE_METATYPE(Utils::FileName)

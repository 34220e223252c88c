#pragma once

#include "utils/utils_global.h"

#include <QMetaType>
#include <QString>

namespace Utils {

/// The path of a file or directory: a value, cleaned once ("." and ".." resolved textually, one '/' between segments,
/// none at the end) so that equal paths compare equal. Never looks at the disk. Any thread.
class UTILS_EXPORT FileName final
{
public:
    FileName() = default;

    /// Cleans @p path. A null or empty string gives an empty name.
    static FileName fromString(const QString &path);

    QString toString() const { return m_path; }

    bool isEmpty() const { return m_path.isEmpty(); }

    bool operator==(const FileName &other) const { return m_path == other.m_path; }
    bool operator!=(const FileName &other) const { return m_path != other.m_path; }

private:
    QString m_path;
};

} // namespace Utils

Q_DECLARE_METATYPE(Utils::FileName)

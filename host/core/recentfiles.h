#pragma once

#include "core/core_global.h"

#include <QStringList>
#include <QTimer>

class QSettings;

namespace Core {

/// The files opened last, the newest first, kept in the settings and shared by all windows. Does not own the settings.
class CORE_EXPORT RecentFiles final
{
public:
    static constexpr int Limit = 10;

    explicit RecentFiles(QSettings &settings);
    RecentFiles(const RecentFiles &) = delete;
    RecentFiles &operator=(const RecentFiles &) = delete;
    ~RecentFiles();

    /// Those that still exist, at most Limit. What other processes added is seen.
    [[nodiscard]] QStringList files() const;

    /// Is known here at once, and to others a moment later: the file that was opened is shown before the disk is asked
    /// to remember it.
    void add(const QString &path);
    void clear();

private:
    void write();

    QSettings &m_settings;
    QStringList m_added; ///< the newest first, not written yet
    QTimer m_later;
};

} // namespace Core

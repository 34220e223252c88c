#pragma once

#include "core/core_global.h"

#include <QStringList>

class QSettings;

namespace Core {

/// The files opened last, the newest first, kept in the settings and shared by all windows. Does not own the settings.
class CORE_EXPORT RecentFiles final
{
public:
    static constexpr int Limit = 10;

    explicit RecentFiles(QSettings &settings);

    /// Those that still exist, at most Limit. What other processes added is seen.
    [[nodiscard]] QStringList files() const;
    void add(const QString &path);
    void clear();

private:
    QSettings &m_settings;
};

} // namespace Core

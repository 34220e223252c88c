#pragma once

#include "core/core_global.h"

#include <QStringList>

#include <memory>

namespace Core {

/// Collects, for as long as it lives, the warnings that the process logs. A document that fails without a word has
/// mostly logged the reason, and so the host can show it.
///
/// Made and destroyed on one thread, collects from all. Collectors may be nested; every one sees every warning.
/// The warnings are held back and passed on to the earlier message handler at the end, but for those that the owner
/// says were shown to the user.
class CORE_EXPORT LogCollector final
{
public:
    LogCollector();
    ~LogCollector();
    LogCollector(const LogCollector &) = delete;
    LogCollector &operator=(const LogCollector &) = delete;

    /// Every warning and critical message so far, the oldest first.
    [[nodiscard]] QStringList lines() const;
    /// The lines that name \a path; if there is none, those logged by the thread of this collector.
    [[nodiscard]] QStringList linesAbout(const QString &path) const;

    /// \a shown was told to the user: these lines are not passed on, and no outer collector keeps them.
    void discard(const QStringList &shown);

    struct Private;

private:
    std::unique_ptr<Private> d;
};

} // namespace Core

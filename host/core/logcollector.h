#pragma once

#include "core/core_global.h"

#include <QStringList>

#include <memory>

namespace Core {

/// Collects, for as long as it lives, the warnings that the process logs. A document that fails without a word has
/// mostly logged the reason, and so the host can show it.
///
/// Made and destroyed on one thread, collects from all. Of nested collectors the innermost one collects. The warnings
/// are held back and logged again at the end, but for those that the owner says were shown to the user.
class CORE_EXPORT LogCollector final
{
public:
    LogCollector();
    ~LogCollector();
    Q_DISABLE_COPY_MOVE(LogCollector)

    /// The lines that name @p path, the oldest first; if there is none, those logged by the thread of this collector.
    [[nodiscard]] QStringList linesAbout(const QString &path) const;

    /// @p shown was told to the user: these lines are not passed on.
    void discard(const QStringList &shown);

    struct Private;

private:
    std::unique_ptr<Private> d;
};

} // namespace Core

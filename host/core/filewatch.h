#pragma once

#include "core/core_global.h"
#include "core/diskstate.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace Core {

/// Watches one file for changes of its content by others. It watches the directories on the way to it, too, and those
/// on the way behind links: a file that is replaced by renaming is another file to the system, and so is one whose
/// directory is exchanged or whose link is turned; a removed one may come back. Owned by FileCare; GUI thread.
class CORE_EXPORT FileWatch final : public QObject
{
    Q_OBJECT

public:
    /// @p known is the state that its user has taken in. One that differs from the disk is noticed, too.
    FileWatch(const QString &path, const DiskState &known, QObject *parent = nullptr);

    /// How long no further change must come before the file is looked at, in milliseconds. After four times as long it
    /// is looked at in any case.
    void setSettleTime(int milliseconds) { m_settleTime = milliseconds; }

    [[nodiscard]] const DiskState &known() const { return m_known; }
    /// What stood there when changed() was emitted last, or known().
    [[nodiscard]] const DiskState &seen() const { return m_seen; }
    void setKnown(const DiskState &state);

    /// Looks at once, without waiting for news from the system.
    void look();
    /// The same a moment later, when nothing has come meanwhile.
    void lookSoon();

Q_SIGNALS:
    /// The disk is in another state than it was seen in last; it may be back in the known one.
    void changed(const Core::DiskState &now);

private:
    void watch();

    const QString m_path;
    DiskState m_known;
    DiskState m_seen;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
    QElapsedTimer m_sinceNews; ///< Since the first one that has not been looked at.
    int m_settleTime = 0;
};

} // namespace Core

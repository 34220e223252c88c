#pragma once

#include "core/core_global.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <vector>

namespace Core {

/// The unsaved content of a document, as a process left it behind. A plain value.
struct RecoveryCopy
{
    QString fileName;        ///< Where the copy lies.
    QByteArray originalHash; ///< DiskState::hash of the file that was changed; empty when there was none.
    QDateTime time;          ///< When it was written.
    QByteArray data;
};

/// The directory with the recovery copies of this user. Each process has at most one copy of a file, under a name made
/// of the file's canonical path and of the process; a header names both, so that a copy is only offered once its
/// process is gone. Directory and copies are readable to the user alone, and a copy is replaced at once or not at all.
/// Without state of its own: any thread.
class CORE_EXPORT RecoveryStore final
{
public:
    /// The directory is made when it is needed.
    explicit RecoveryStore(const QString &directory = defaultDirectory());

    /// "extpoint-workbench/recovery" in $XDG_STATE_HOME, or in ~/.local/state where that is no absolute path.
    [[nodiscard]] static QString defaultDirectory();

    /// By which the copies of a file are found. To be asked for once, while the file is there: it follows links.
    [[nodiscard]] static QByteArray keyOf(const QString &path);

    /// Brings this process's copy to disk, in place of an earlier one. False on failure, with the reason in \a error,
    /// and the earlier one is still there.
    [[nodiscard]] bool write(
        const QByteArray &key, const QByteArray &originalHash, const QByteArray &data, QString *error) const;
    /// Removes this process's copy, if there is one.
    void drop(const QByteArray &key) const;

    /// Copies of processes that are gone, the newest first. Damaged ones are logged and left where they are; what was
    /// left half written is removed.
    [[nodiscard]] std::vector<RecoveryCopy> abandoned(const QByteArray &key) const;
    void remove(const RecoveryCopy &copy) const;

private:
    [[nodiscard]] QString ownFile(const QByteArray &key) const;
    void removeUnfinished(const QByteArray &key) const;

    const QString m_directory;
};

} // namespace Core

#pragma once

#include "core/core_global.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <vector>

class QJsonObject;

namespace Core {

/// What the copies of a file are found by. A plain value.
struct RecoveryKey
{
    QByteArray hash;  ///< Of the canonical path.
    QString path;     ///< Absolute, as it was opened; empty when a copy doesn't tell.
    QString document; ///< What an XML document calls itself: its root element and that one's "id". May be empty.
};

/// The unsaved content of a document, as a process left it behind. A plain value.
struct RecoveryCopy
{
    QString fileName; ///< Where the copy lies.
    RecoveryKey key;
    QByteArray originalHash; ///< DiskState::hash of the file that was changed; empty when there was none.
    QDateTime time;          ///< When it was written.
    QByteArray data;         ///< Of a damaged copy whatever there is.
    bool damaged = false;
};

/// The directory with the recovery copies of this user. Each process has at most one copy of a file, under a name made
/// of the file's canonical path and of the process; a header names both, so that a copy is only offered once its
/// process is gone, and found again where the path has come to mean another file or none. Directory and copies are
/// readable to the user alone, and a copy is replaced at once or not at all. Without state of its own: any thread.
class CORE_EXPORT RecoveryStore final
{
public:
    /// The directory is made when it is needed.
    explicit RecoveryStore(const QString &directory = defaultDirectory());

    /// "extpoint-workbench/recovery" in $XDG_STATE_HOME, or in ~/.local/state where that is no absolute path.
    [[nodiscard]] static QString defaultDirectory();

    /// To be asked for once, while the file is there: it follows links, and looks at the beginning of the content.
    [[nodiscard]] static RecoveryKey keyOf(const QString &path);

    /// Brings this process's copy to disk, in place of an earlier one. False on failure, with the reason in @p error,
    /// and the earlier one is still there.
    [[nodiscard]] bool write(
        const RecoveryKey &key, const QByteArray &originalHash, const QByteArray &data, QString *error) const;
    /// Removes this process's copy, if there is one.
    void drop(const RecoveryKey &key) const;

    /// The copies of all processes that are gone, the newest first. What was left half written is removed.
    [[nodiscard]] std::vector<RecoveryCopy> abandoned() const;
    /// Those of one file: of the same canonical path, opened under the same path, or, when nothing is left there, of a
    /// document that calls itself the same; its directory was renamed, then. Damaged ones are logged and left out.
    [[nodiscard]] std::vector<RecoveryCopy> abandoned(const RecoveryKey &key) const;
    /// Makes a copy of a process that is gone one of another file. False as write(), and it is what it was.
    [[nodiscard]] bool assign(const RecoveryCopy &copy, const RecoveryKey &key, QString *error) const;
    void remove(const RecoveryCopy &copy) const;

private:
    [[nodiscard]] QString fileOf(const RecoveryKey &key, const QString &writer) const;
    [[nodiscard]] QString ownFile(const RecoveryKey &key) const;
    [[nodiscard]] bool put(
        const QString &name, const QJsonObject &header, const QByteArray &data, QString *error) const;
    [[nodiscard]] std::vector<RecoveryCopy> collect(const std::function<bool(const RecoveryKey &)> &wanted) const;
    void removeUnfinished() const;

    const QString m_directory;
};

} // namespace Core

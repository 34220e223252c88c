#pragma once

#include "extensionfile/unfinishedfile.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace ExtensionFile {

/// The old bytes of one file, kept in the user's state directory for the time in which the file itself may be neither
/// old nor new. It outlives its object, and the process: only remove() takes it away. Owned by whoever writes the file;
/// any thread.
class Backup final
{
public:
    /// @p path: an existing file, in the encoding of file names.
    explicit Backup(const QByteArray &path) : m_path(path) { }

    /// Brings @p bytes to disk under a name of their own, readable by the user alone. A backup that an interrupted save
    /// has left behind is not touched. False on failure, with the reason; nothing is left behind then.
    [[nodiscard]] bool make(const QByteArray &bytes, QString *reason);
    void remove();

    /// Where the bytes are; empty when there is no backup.
    [[nodiscard]] const QString &fileName() const { return m_fileName; }

    /// What interrupted saves of the file @p path have left behind, in the order in which it was made. What a save that
    /// is going on in another process keeps is not among it.
    [[nodiscard]] static QStringList keptOf(const QString &path);
    /// Names each of them in a line of the log: whoever opens the file may be looking at half of it.
    static void reportKept(const QString &path);

    /// "extpoint-editor/backups" in $XDG_STATE_HOME, or in ~/.local/state where that is no absolute path.
    [[nodiscard]] static QString directory();

private:
    [[nodiscard]] bool takeName();

    const QByteArray m_path;
    std::unique_ptr<UnfinishedFile> m_file; ///< locked for as long as the save goes on
    QString m_fileName;
};

} // namespace ExtensionFile

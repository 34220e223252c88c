#pragma once

#include "extensionfile/regularfile.h"

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace ExtensionFile {

/// A new file that is to be written whole before it gets the name that it is for. Until then it has one that nobody
/// else would choose, and it is locked for as long as it lives, whatever name it has: what a killed process has left
/// behind is known by its free lock, and removed by the next one that is made in the directory. Process numbers would
/// tell nothing in another container or of another machine. Owned by whoever writes; any thread.
class UnfinishedFile final
{
public:
    /// Makes it in @p directory, with @p mode less the file-creation mask. isOpen() is false on failure, with errno
    /// set.
    UnfinishedFile(const QByteArray &directory, mode_t mode);
    /// Removes it, unless it has been given its name.
    ~UnfinishedFile();

    [[nodiscard]] bool isOpen() const { return m_file.isOpen(); }
    [[nodiscard]] int descriptor() const { return m_file.get(); }

    /// Brings all of @p bytes to disk and reads them back. False on failure, with the reason.
    [[nodiscard]] bool fill(const QByteArray &bytes, QString *reason);

    /// Gives it the name @p path; what had it is gone at once. False on failure, with errno set.
    [[nodiscard]] bool replace(const QByteArray &path);
    /// Gives it the name @p path, which must be free. False on failure, with errno set.
    [[nodiscard]] bool take(const QByteArray &path);

    /// 0 if no living process holds the file @p path as an unfinished one; EWOULDBLOCK if one does; else what hinders
    /// from telling.
    [[nodiscard]] static int probe(const QByteArray &path);

private:
    [[nodiscard]] int make(const QByteArray &directory, mode_t mode);

    QByteArray m_name; ///< empty once it has been given another one
    const FileDescriptor m_file;
};

} // namespace ExtensionFile

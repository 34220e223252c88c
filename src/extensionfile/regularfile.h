#pragma once

#include "extensionfile/readerror.h"

#include <QByteArray>

#include <cerrno>

namespace ExtensionFile {

/// A file descriptor that is closed with its owner. Not shared between threads.
class FileDescriptor final
{
public:
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) { }
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] int get() const { return m_descriptor; }

private:
    const int m_descriptor;
};

/// Calls the system again when a signal has interrupted it (it returns -1 with EINTR), but not for ever: a file system
/// may answer every call with that.
template <typename Call>
auto untilUninterrupted(Call call)
{
    constexpr int maximumTries = 100;
    auto result = call();
    for (int tries = 1; result == -1 && errno == EINTR && tries < maximumTries; ++tries)
        result = call();
    return result;
}

/// Which file it is, whatever path leads to it: links of any sort lead to the same one.
struct FileIdentity
{
    /// Of the file that @p path leads to; none for one that can't be reached.
    [[nodiscard]] static FileIdentity of(const QString &path);
    /// Whether both are one file; no file is none.
    [[nodiscard]] bool isSameAs(const FileIdentity &other) const
    {
        return inode != 0 && device == other.device && inode == other.inode;
    }

    quint64 device = 0;
    quint64 inode = 0;
};

/// What tells that a file was written since: equal stamps are of equal bytes, for all that a file system says. The
/// times are nanoseconds since 1970, as stat(2) has them.
struct FileStamp
{
    /// Of the file that @p path leads to; an empty one for one that can't be reached.
    [[nodiscard]] static FileStamp of(const QString &path);
    /// Whether both are of one file that was not written in between; no file is none.
    [[nodiscard]] bool isSameAs(const FileStamp &other) const
    {
        return identity.isSameAs(other.identity) && size == other.size && modified == other.modified
            && changed == other.changed;
    }

    FileIdentity identity;
    qint64 size = 0; ///< bytes
    qint64 modified = 0;
    qint64 changed = 0; ///< the file or what is said about it: its mode, its name
};

/// Reads the regular file @p path, following links, but at most @p maximumSize + 1 bytes: one more byte than allowed
/// tells the caller that it is too large, however fast it grows. Pipes, devices, sockets and directories are refused
/// without being opened. False on failure, with kind and reason in @p error.
[[nodiscard]] bool readRegularFile(const QString &path, qint64 maximumSize, QByteArray *bytes, ReadError *error);

/// Reads from @p descriptor (at its present position) to the end, at most @p maximumSize + 1 bytes, whatever
/// its size is said to be. False on failure, with errno set.
[[nodiscard]] bool readDescriptor(int descriptor, qint64 maximumSize, QByteArray *bytes);

/// Writes the part of @p bytes from @p begin to before @p end to its place in the file, wherever @p descriptor stands.
/// @p reached tells where it ended, on failure too; errno is set then.
[[nodiscard]] bool writePart(int descriptor, const QByteArray &bytes, qint64 begin, qint64 end, qint64 *reached);

/// Whether the file holds @p bytes and nothing else. It takes no memory.
[[nodiscard]] bool contains(int descriptor, const QByteArray &bytes);

/// Brings @p descriptor to disk, and shows the failure of a delayed write that only closing shows. A file system that
/// can't synchronise is no failure. False on failure, with errno set.
[[nodiscard]] bool syncToDisk(int descriptor);

/// The names in a directory are part of it. As syncToDisk(); also false where the directory can't be read.
[[nodiscard]] bool syncDirectory(const QByteArray &directory);

/// The message of errno's present value.
[[nodiscard]] QString systemReason();

/// Gives a failure its reason. Always false.
bool refuse(QString *reason, const QString &text = systemReason());

} // namespace ExtensionFile

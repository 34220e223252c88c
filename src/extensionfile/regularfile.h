#pragma once

#include <QByteArray>
#include <QString>

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

    /// Closes now, to see a failure that only closing shows (a write delayed by a network file system). False on
    /// failure, with errno set.
    [[nodiscard]] bool close();

private:
    int m_descriptor;
};

/// Which file it is, whatever path leads to it: links of any sort lead to the same one.
struct FileIdentity
{
    /// Of the file that `path` leads to; none for one that can't be reached.
    [[nodiscard]] static FileIdentity of(const QString &path);
    /// Whether both are one file; no file is none.
    [[nodiscard]] bool isSameAs(const FileIdentity &other) const
    {
        return inode != 0 && device == other.device && inode == other.inode;
    }

    quint64 device = 0;
    quint64 inode = 0;
};

/// Why a regular file could not be read.
struct RegularFileProblem
{
    enum class Kind { Missing, NotRegular, Failed };
    Kind kind = Kind::Failed;
    QString reason;
};

/// Reads the regular file `path`, following links, but at most `maximumSize` + 1 bytes: one more byte than allowed
/// tells the caller that it is too large, however fast it grows. Pipes, devices, sockets and directories are refused
/// without being opened.
[[nodiscard]] bool readRegularFile(
    const QString &path, qint64 maximumSize, QByteArray *bytes, RegularFileProblem *problem);

/// Reads from `descriptor` (at its present position) to the end, at most `maximumSize` + 1 bytes; `expected` is the
/// size to reckon with. False on failure, with errno set.
[[nodiscard]] bool readDescriptor(int descriptor, qint64 expected, qint64 maximumSize, QByteArray *bytes);

/// The message of errno's present value.
[[nodiscard]] QString systemReason();

} // namespace ExtensionFile

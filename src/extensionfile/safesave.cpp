#include "extensionfile/safesave.h"

#include "extensionfile/inplacesave.h"
#include "extensionfile/logging.h"
#include "extensionfile/reader.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/unfinishedfile.h"
#include "extensionfile/words.h"
#include "extensionfile/writer.h"

#include <QFile>

#include <acl/libacl.h>
#include <attr/libattr.h>

#include <filesystem>
#include <future>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

/// Lets everything pass: reading into it only tells whether a document can be read.
class NullSink final : public Sink
{
public:
    void startElement(const QString &, const Attributes &, const Locator &) override { }
    void endElement() override { }
};

/// Why the reader would not take these bytes; empty when it does.
QString whyNotReadable(const QByteArray &bytes)
{
    if (bytes == Writer::instructionAlone())
        return QString();
    NullSink sink;
    ReadError error;
    if (read(bytes, sink, &error))
        return QString();
    return say(QT_TRANSLATE_NOOP("ExtensionFile", "The new contents could not be read again: %1"))
        .arg(error.toString());
}

/// The file that a path leads to in the end.
struct SaveTarget
{
    QByteArray path; ///< in the encoding of file names, no link
    QByteArray directory;
    std::unique_ptr<FileDescriptor> file; ///< open for reading and writing; null if there is no file yet
    struct stat status = {};              ///< of the file
};

/// Follows the links from @p path; where they end there may be nothing yet.
bool followLinks(const QString &path, SaveTarget *target, QString *reason)
{
    const int maximumLinks = 40; // as many as the kernel follows
    std::filesystem::path end(QFile::encodeName(path).toStdString());
    std::error_code fault;
    for (int links = 0; is_symlink(symlink_status(end, fault)); ++links) {
        const std::filesystem::path aim = read_symlink(end, fault);
        if (fault || links == maximumLinks)
            return refuse(reason, qt_error_string(fault ? fault.value() : ELOOP));
        end = end.parent_path() / aim;
    }
    target->path = QByteArray::fromStdString(end.string());
    target->directory = end.has_parent_path() ? QByteArray::fromStdString(end.parent_path().string()) : ".";
    return true;
}

/// Opens the file that is to be written, by the rights of the effective user. False, with a reason, if it can't or must
/// not be written.
bool findTarget(const QString &path, SaveTarget *target, QString *reason)
{
    if (path.isEmpty() || path.contains(QChar(QChar::Null)))
        return refuse(reason, say(QT_TRANSLATE_NOOP("ExtensionFile", "Not a file name.")));
    if (!followLinks(path, target, reason))
        return false;
    if (QFile::encodeName(QFile::decodeName(target->path)) != target->path)
        return refuse(reason,
            say(QT_TRANSLATE_NOOP("ExtensionFile", "The name of the file is not in the encoding of the system.")));
    if (::lstat(target->path.constData(), &target->status) != 0)
        return errno == ENOENT || refuse(reason);
    const auto isRegular = [&] {
        return S_ISREG(target->status.st_mode)
            || refuse(reason, say(QT_TRANSLATE_NOOP("ExtensionFile", "Not a regular file.")));
    };
    // Opening a device may already do something to it.
    if (!isRegular())
        return false;
    // Replacing would need no right to the file itself, but whoever took that right away meant it.
    target->file = std::make_unique<FileDescriptor>(untilUninterrupted(
        [&] { return ::open(target->path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!target->file->isOpen() || ::fstat(target->file->get(), &target->status) != 0)
        return refuse(reason);
    return isRegular();
}

using Fault = std::shared_future<QString>;

int isUserAttribute(const char *name, error_context *)
{
    return qstrncmp(name, "user.", 5) == 0;
}

/// Gives a new file what the one that it is to replace has: owner, group and extended attributes, then the access list
/// and last the mode, since a change of owner takes mode bits away and a list has none but the rights. A list that
/// comes from the directory goes.
bool makeAlike(int descriptor, const SaveTarget &target)
{
    const int old = target.file->get();
    struct stat status;
    if (::fstat(descriptor, &status) != 0)
        return false;
    if ((status.st_uid != target.status.st_uid || status.st_gid != target.status.st_gid)
        && ::fchown(descriptor, target.status.st_uid, target.status.st_gid) != 0)
        return false;
    return ::attr_copy_fd("", old, "", descriptor, isUserAttribute, nullptr) == 0
        && ::perm_copy_fd("", old, "", descriptor, nullptr) == 0
        && ::fchmod(descriptor, target.status.st_mode & 07777) == 0;
}

enum class Replacement { Done, Failed, Impossible };

Replacement replaceFile(const SaveTarget &target, const QByteArray &bytes, const Fault &fault, QString *reason)
{
    // Nobody gets a look at it who has no right to the old one.
    UnfinishedFile file(target.directory, target.file ? 0600 : 0666);
    if (!file.isOpen() || (target.file && !makeAlike(file.descriptor(), target))) {
        *reason = systemReason();
        return Replacement::Impossible;
    }
    if (!file.fill(bytes, reason))
        return Replacement::Failed;
    *reason = fault.get();
    if (!reason->isEmpty())
        return Replacement::Failed;
    if (!file.replace(target.path)) {
        // The file may be a mount point of its own, for one.
        *reason = systemReason();
        return Replacement::Impossible;
    }
    // The exchange has been made, so there is nothing to report any more; a directory that may not be read can't be
    // brought to disk at all.
    if (!syncDirectory(target.directory))
        qCDebug(fileLog).noquote() << oneLine(QFile::decodeName(target.directory)) << "not brought to disk";
    return Replacement::Done;
}

bool save(const QString &path, const QByteArray &bytes, QString *reason)
{
    SaveTarget target;
    if (!findTarget(path, &target, reason))
        return false;
    // Read back on another thread while the bytes go to the disk: for a large document both take long. Where there is
    // no thread to be had, it happens when the answer is asked for.
    const Fault fault
        = std::async(std::launch::async | std::launch::deferred, [bytes] { return whyNotReadable(bytes); }).share();
    if (!target.file || target.status.st_nlink <= 1) {
        const Replacement replacement = replaceFile(target, bytes, fault, reason);
        if (replacement != Replacement::Impossible || !target.file)
            return replacement == Replacement::Done;
    }
    *reason = fault.get();
    return reason->isEmpty() && writeInPlace(target.file->get(), target.path, bytes, reason);
}

} // namespace

bool saveFile(const QString &path, const QByteArray &bytes, QString *error)
{
    QString reason;
    const bool saved = save(path, bytes, &reason);
    const QString line = saved ? QString() : oneLine(path) + QLatin1String(": ") + oneLine(reason);
    if (!saved)
        qCWarning(fileLog).noquote() << line;
    if (error)
        *error = line;
    return saved;
}

} // namespace ExtensionFile

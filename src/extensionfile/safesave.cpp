#include "extensionfile/safesave.h"

#include "extensionfile/inplacesave.h"
#include "extensionfile/logging.h"
#include "extensionfile/reader.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/savetarget.h"
#include "extensionfile/unfinishedfile.h"
#include "extensionfile/writer.h"

#include <QFile>

#include <acl/libacl.h>
#include <attr/libattr.h>

#include <future>

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
    return QStringLiteral("The new contents could not be read again: %1").arg(error.toString());
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
    if (!findSaveTarget(path, &target, reason))
        return false;
    // Read back on another thread while the bytes go to the disk: for a large document both take long. Where there is
    // no thread to be had, it happens when the answer is asked for.
    const Fault fault
        = std::async(std::launch::async | std::launch::deferred, [bytes] { return whyNotReadable(bytes); }).share();
    const bool hasFurtherLinks = target.file && target.status.st_nlink > 1;
    if (!hasFurtherLinks) {
        const Replacement replacement = replaceFile(target, bytes, fault, reason);
        if (replacement != Replacement::Impossible || !target.file)
            return replacement == Replacement::Done;
    }
    *reason = fault.get();
    return reason->isEmpty() && writeInPlace(target.file->get(), target.path, bytes, reason);
}

} // namespace

QString SaveError::toString() const
{
    return oneLine(path) + QLatin1String(": ") + oneLine(reason);
}

bool saveFile(const QString &path, const QByteArray &bytes, SaveError *error)
{
    SaveError report { path, QString() };
    const bool saved = save(path, bytes, &report.reason);
    if (!saved)
        qCWarning(fileLog).noquote() << report.toString();
    if (error)
        *error = report;
    return saved;
}

} // namespace ExtensionFile

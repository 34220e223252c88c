#include "extensionfile/safesave.h"

#include "extensionfile/inplacesave.h"
#include "extensionfile/logging.h"
#include "extensionfile/reader.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/savetarget.h"
#include "extensionfile/writer.h"

#include <QBuffer>
#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <future>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

/// Lets everything pass: reading into it only tells whether a document can be read.
class NullSink final : public Sink
{
public:
    [[nodiscard]] bool wantsLocations() const override { return false; }
    [[nodiscard]] bool wantsAttributes() const override { return false; }
    void restart() override { }
    void startElement(const QString &, const Attributes &, const Location &) override { }
    void endElement() override { }
};

/// Why the reader would not take these bytes; empty when it does.
QString whyNotReadable(const QByteArray &bytes)
{
    if (bytes == Writer::instructionAlone())
        return QString();
    QBuffer buffer;
    buffer.setData(bytes);
    NullSink sink;
    ReadError error;
    if (buffer.open(QIODevice::ReadOnly) && read(buffer, sink, &error))
        return QString();
    return QStringLiteral("The new contents could not be read again: %1").arg(error.toString());
}

/// Gives the new file the owner, group and mode of the one that it is to replace; in this order, since a change of
/// owner takes mode bits away.
bool makeAlike(int descriptor, const SaveTarget &target)
{
    struct stat status;
    if (::fstat(descriptor, &status) != 0)
        return false;
    if ((status.st_uid != target.owner || status.st_gid != target.group)
        && ::fchown(descriptor, target.owner, target.group) != 0)
        return false;
    return ::fchmod(descriptor, target.mode) == 0;
}

/// The name is part of the directory. The exchange has been made by now, so there is nothing to report any more; a
/// directory that may not be read can't be brought to disk at all.
void syncDirectory(const QByteArray &directory)
{
    const FileDescriptor descriptor(::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.isOpen() || !syncToDisk(descriptor.get()))
        qCDebug(fileLog).noquote() << oneLine(QFile::decodeName(directory)) << "not brought to disk";
}

bool replaceFile(const SaveTarget &target, const QByteArray &bytes, QString *reason)
{
    // Read back on another thread while the bytes go to the disk: for a large document both take long. Where there is no
    // thread to be had, it happens when the answer is asked for.
    std::future<QString> fault
        = std::async(std::launch::async | std::launch::deferred, [bytes] { return whyNotReadable(bytes); });
    QSaveFile file(QFile::decodeName(target.path));
    const auto failByFile = [&] {
        *reason = file.errorString();
        file.cancelWriting();
        return false;
    };
    const auto failBySystem = [&] {
        *reason = systemReason();
        file.cancelWriting();
        return false;
    };
    if (!file.open(QIODevice::WriteOnly))
        return failByFile();
    if (target.exists && !makeAlike(file.handle(), target))
        return failBySystem();
    // commit() alone puts a cut file in place when the disk is full, and calls it a success.
    errno = 0;
    if (file.write(bytes) != bytes.size() || !file.flush() || file.error() != QFileDevice::NoError) {
        // A file-size limit, for one, has no text of Qt's.
        return errno != 0 ? failBySystem() : failByFile();
    }
    if (!syncToDisk(file.handle()))
        return failBySystem();
    *reason = fault.get();
    if (!reason->isEmpty()) {
        file.cancelWriting();
        return false;
    }
    if (!file.commit())
        return failByFile();
    syncDirectory(target.directory);
    return true;
}

bool save(const QString &path, const QByteArray &bytes, QString *reason)
{
    SaveTarget target;
    if (!findSaveTarget(path, &target, reason))
        return false;
    if (target.way == SaveTarget::Way::Replace)
        return replaceFile(target, bytes, reason);
    *reason = whyNotReadable(bytes);
    return reason->isEmpty() && writeInPlace(target.path, bytes, reason);
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

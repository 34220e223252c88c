#include "extensionfile/inplacesave.h"

#include "extensionfile/backup.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/words.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

bool cut(int descriptor, qint64 size)
{
    return untilUninterrupted([&] { return ::ftruncate(descriptor, size); }) == 0;
}

/// @p overwritten tells how many of the old bytes are lost, on failure too.
bool replaceContents(
    int descriptor, const QByteArray &old, const QByteArray &bytes, qint64 *overwritten, QString *reason)
{
    const qint64 common = qMin(old.size(), bytes.size());
    qint64 end = 0;
    const bool grown = common == bytes.size()
        || (writePart(descriptor, bytes, common, bytes.size(), &end) && syncToDisk(descriptor));
    if (!grown || !writePart(descriptor, bytes, 0, common, overwritten)
        || (common < old.size() && !cut(descriptor, common)) || !syncToDisk(descriptor))
        return refuse(reason);
    return contains(descriptor, bytes)
        || refuse(reason, say(QT_TRANSLATE_NOOP("ExtensionFile", "The file does not hold what was written.")));
}

/// Writes back only what was overwritten: whatever stopped the writing would stop it at the same place again.
bool putBack(int descriptor, const QByteArray &old, qint64 overwritten, const struct stat &before)
{
    struct stat now;
    qint64 end = 0;
    if (!writePart(descriptor, old, 0, overwritten, &end) || ::fstat(descriptor, &now) != 0)
        return false;
    // Cutting comes last, after all bytes; what it took is written again.
    if ((now.st_size < old.size() && !writePart(descriptor, old, now.st_size, old.size(), &end))
        || (now.st_size > old.size() && !cut(descriptor, old.size())) || !contains(descriptor, old))
        return false;
    const timespec times[] = { before.st_atim, before.st_mtim };
    (void)::futimens(descriptor, times);
    return syncToDisk(descriptor);
}

} // namespace

bool writeInPlace(int descriptor, const QByteArray &path, const QByteArray &bytes, QString *reason)
{
    const qint64 maximumOldSize = 1024 * 1024 * 1024;
    struct stat before;
    if (::fstat(descriptor, &before) != 0)
        return refuse(reason);
    if (before.st_size > maximumOldSize)
        return refuse(
            reason, say(QT_TRANSLATE_NOOP("ExtensionFile", "The file is too large to be kept while it is written.")));
    QByteArray old;
    if (!readDescriptor(descriptor, maximumOldSize, &old))
        return refuse(reason);
    Backup::reportKept(QFile::decodeName(path));
    Backup backup(path);
    if (!backup.make(old, reason))
        return false;
    qint64 overwritten = 0;
    const bool replaced = replaceContents(descriptor, old, bytes, &overwritten, reason);
    // A failure may be over the next moment.
    const int maximumTries = 3;
    bool whole = replaced;
    for (int tries = 0; !whole && tries < maximumTries; ++tries)
        whole = putBack(descriptor, old, overwritten, before);
    if (whole)
        backup.remove();
    else
        *reason
            += say(QT_TRANSLATE_NOOP("ExtensionFile", " The old contents could not be put back. They are kept in %1"))
                   .arg(backup.fileName());
    return replaced;
}

} // namespace ExtensionFile

#include "utils/mimedatabase.h"

#include "utils/mimedocument.h"
#include "utils/mimeregistry.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMimeDatabase>

#include <algorithm>
#include <functional>
#include <optional>

namespace Utils {

namespace {

Q_LOGGING_CATEGORY(mimeLog, "utils.mime")

/// As much of a file as its type is told from; offsets beyond never match.
constexpr qint64 SampleSize = 64 * 1024;

/// Reads the beginning of the file when, and only when, the name does not decide. Nothing when it can't be read.
using Content = std::function<std::optional<QByteArray>()>;

MimeType systemType(const QMimeType &type)
{
    if (!type.isValid())
        return {};
    auto record = std::make_shared<MimeTypeRecord>();
    record->name = type.name();
    record->comment = type.comment();
    record->parents = type.parentMimeTypes();
    record->aliases = type.aliases();
    const QStringList patterns = type.globPatterns();
    for (const QString &pattern : patterns) {
        MimeGlob glob;
        glob.pattern = pattern;
        record->globs.append(glob);
    }
    return MimeType(record);
}

/// Decides between declared types whose patterns fit equally.
MimeTypeRecordPointer decide(
    const MimeRegistry &registry, QVector<MimeTypeRecordPointer> candidates, const Content &content)
{
    // Whatever remains undecided must not depend on the order in which plug-ins were loaded.
    std::sort(candidates.begin(), candidates.end(),
        [](const MimeTypeRecordPointer &left, const MimeTypeRecordPointer &right) { return left->name < right->name; });
    if (candidates.size() > 1 && registry.knowsContents()) {
        if (const std::optional<QByteArray> data = content()) {
            if (const MimeTypeRecordPointer fitting = registry.bestByContent(candidates, *data))
                return fitting;
            const MimeTypeRecordPointer other = registry.bestByContent(registry.types(), *data);
            for (const MimeTypeRecordPointer &candidate : qAsConst(candidates)) {
                if (other && registry.inherits(other->name, candidate->name))
                    return other;
            }
        }
    }
    return candidates.constFirst();
}

MimeType lookUp(const QString &fileName, const Content &content)
{
    const std::shared_ptr<const MimeRegistry> registry = MimeRegistry::current();
    const QVector<MimeTypeRecordPointer> candidates = registry->bestByName(fileName);
    if (!candidates.isEmpty())
        return MimeType(decide(*registry, candidates, content));

    const QMimeDatabase system;
    const QList<QMimeType> byName = system.mimeTypesForFileName(fileName);
    if (byName.size() == 1 && !registry->knowsContents())
        return systemType(byName.constFirst());
    const std::optional<QByteArray> data = content();
    if (!data)
        return systemType(system.mimeTypeForFile(fileName, QMimeDatabase::MatchExtension));
    QMimeType found = system.mimeTypeForFileNameAndData(fileName, *data);
    if (const MimeTypeRecordPointer declared = registry->bestByContent(registry->types(), *data)) {
        // The system's pattern holds unless the content tells a special case of the same.
        if (byName.isEmpty() || registry->inherits(declared->name, found.name()))
            return MimeType(declared);
    }
    return systemType(found);
}

} // namespace

void MimeDatabase::addMimeTypes(const QString &fileName)
{
    const auto warn = [&fileName](const QString &what) {
        qCWarning(mimeLog, "%ls:%ls", qUtf16Printable(fileName), qUtf16Printable(what));
    };
    QFile file(fileName);
    // Opening a FIFO would wait for a writer that may never come.
    if (!QFileInfo(fileName).isFile()) {
        warn(QStringLiteral("1:1: there is no such file"));
        return;
    }
    QString reason;
    if (!file.open(QIODevice::ReadOnly))
        warn(QStringLiteral("1:1: %1").arg(file.errorString()));
    else if (!addMimeTypes(&file, &reason))
        warn(reason);
}

bool MimeDatabase::addMimeTypes(QIODevice *device, QString *errorString)
{
    const MimeDocument document = MimeDocument::read(device);
    if (errorString)
        *errorString = document.errorString;
    if (!document.errorString.isEmpty())
        return false;
    MimeRegistry::declare(document.types);
    return true;
}

MimeType MimeDatabase::mimeTypeForName(const QString &name) const
{
    if (const MimeTypeRecordPointer declared = MimeRegistry::current()->find(name))
        return MimeType(declared);
    return systemType(QMimeDatabase().mimeTypeForName(name));
}

MimeType MimeDatabase::mimeTypeForFile(const QString &path) const
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return systemType(QMimeDatabase().mimeTypeForFile(info));
    return lookUp(info.fileName(), [&path]() -> std::optional<QByteArray> {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return std::nullopt;
        return file.read(SampleSize);
    });
}

MimeType MimeDatabase::mimeTypeForFileNameAndData(const QString &fileName, const QByteArray &data) const
{
    return lookUp(QFileInfo(fileName).fileName(), [&data] { return std::optional<QByteArray>(data.left(SampleSize)); });
}

} // namespace Utils

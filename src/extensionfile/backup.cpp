#include "extensionfile/backup.h"

#include "extensionfile/inplacesave.h"
#include "extensionfile/regularfile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

/// So many interrupted saves of one file are no accident; whoever caused them does not need the disk filled as well.
constexpr int maximumKept = 100;

/// The same for every way that leads to the file.
QByteArray nameOf(const QByteArray &path)
{
    char *const resolved = ::realpath(path.constData(), nullptr);
    const QByteArray whole = resolved ? QByteArray(resolved) : path;
    std::free(resolved);
    return QCryptographicHash::hash(whole, QCryptographicHash::Sha256).toHex().left(32);
}

QString fileOf(const QByteArray &name, int number)
{
    const QString suffix = number == 0 ? QString() : QStringLiteral("-%1").arg(number);
    return Backup::directory() + QLatin1Char('/') + QString::fromLatin1(name) + suffix + QLatin1String(".xml");
}

bool makeDirectory(const QString &directory)
{
    if (QDir(directory).exists())
        return true;
    const int slash = directory.lastIndexOf(QLatin1Char('/'));
    if (slash > 0 && !makeDirectory(directory.left(slash)))
        return false;
    return ::mkdir(QFile::encodeName(directory).constData(), 0700) == 0 || errno == EEXIST;
}

/// The name of a new file is part of its directory.
bool syncDirectory(const QString &directory)
{
    const FileDescriptor descriptor(
        ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.isOpen() && syncToDisk(descriptor.get());
}

} // namespace

Backup::Backup(const QByteArray &path) : m_path(path) { }

bool Backup::make(const QByteArray &bytes, QString *reason)
{
    const auto refuse = [&] {
        *reason = QStringLiteral("No backup could be made in %1: %2").arg(directory(), systemReason());
        return false;
    };
    if (!makeDirectory(directory()))
        return refuse();
    const QByteArray name = nameOf(m_path);
    // A backup has its name only once it is whole.
    const QByteArray unfinished = QFile::encodeName(directory()) + '/' + name + '.' + QByteArray::number(::getpid());
    FileDescriptor file(
        ::open(unfinished.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    qint64 written = 0;
    const bool made = file.isOpen() && writeFromStart(file.get(), bytes, &written) && syncToDisk(file.get())
        && file.close() && takeName(unfinished, name) && syncDirectory(directory());
    if (!made) {
        (void)refuse();
        remove();
    }
    ::unlink(unfinished.constData());
    return made;
}

bool Backup::takeName(const QByteArray &unfinished, const QByteArray &name)
{
    for (int number = 0; number < maximumKept; ++number) {
        const QString fileName = fileOf(name, number);
        if (::link(unfinished.constData(), QFile::encodeName(fileName).constData()) == 0) {
            m_fileName = fileName;
            return true;
        }
        if (errno != EEXIST)
            return false;
    }
    return false;
}

void Backup::remove()
{
    if (!m_fileName.isEmpty())
        ::unlink(QFile::encodeName(m_fileName).constData());
    m_fileName.clear();
}

QStringList Backup::keptOf(const QString &path)
{
    QStringList kept;
    const QByteArray name = nameOf(QFile::encodeName(path));
    for (int number = 0; number < maximumKept; ++number) {
        const QString fileName = fileOf(name, number);
        if (QFile::exists(fileName))
            kept.append(fileName);
    }
    return kept;
}

QString Backup::directory()
{
    const QString set = QFile::decodeName(qgetenv("XDG_STATE_HOME"));
    const QString state = set.startsWith(QLatin1Char('/')) ? set : QDir::homePath() + QLatin1String("/.local/state");
    return state + QLatin1String("/extpoint-editor/backups");
}

} // namespace ExtensionFile

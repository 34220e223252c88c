#include "extensionfile/backup.h"

#include "extensionfile/logging.h"
#include "extensionfile/words.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

/// So many interrupted saves of one file are no accident; whoever caused them does not need the disk filled as well.
constexpr int maximumKept = 100;

/// The same for every way that leads to the file.
QByteArray nameOf(const QByteArray &path)
{
    const QByteArray whole = QFile::encodeName(QFileInfo(QFile::decodeName(path)).canonicalFilePath());
    return QCryptographicHash::hash(whole.isEmpty() ? path : whole, QCryptographicHash::Sha256).toHex().left(32);
}

QString fileOf(const QByteArray &name, int number)
{
    const QString suffix = number == 0 ? QString() : QStringLiteral("-%1").arg(number);
    return Backup::directory() + QLatin1Char('/') + QString::fromLatin1(name) + suffix + QLatin1String(".xml");
}

bool makeDirectory(const QString &directory)
{
    const auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    return QDir(directory).exists() || (QDir().mkpath(directory) && QFile::setPermissions(directory, owner));
}

} // namespace

bool Backup::make(const QByteArray &bytes, QString *reason)
{
    const QByteArray place = QFile::encodeName(directory());
    const auto refuse = [&](const QString &why) {
        *reason = say(QT_TRANSLATE_NOOP("ExtensionFile", "No backup could be made in %1: %2")).arg(directory(), why);
        remove();
        return false;
    };
    if (!makeDirectory(directory()))
        return refuse(systemReason());
    // A backup has its name only once it is whole.
    m_file = std::make_unique<UnfinishedFile>(place, S_IRUSR | S_IWUSR);
    QString why;
    if (m_file->isOpen() && !m_file->fill(bytes, &why))
        return refuse(why);
    return (m_file->isOpen() && takeName() && syncDirectory(place)) || refuse(systemReason());
}

bool Backup::takeName()
{
    const QByteArray name = nameOf(m_path);
    for (int number = 0; number < maximumKept; ++number) {
        const QString fileName = fileOf(name, number);
        if (m_file->take(QFile::encodeName(fileName))) {
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
        // While a save goes on, its backup is locked.
        if (QFile::exists(fileName) && UnfinishedFile::probe(QFile::encodeName(fileName)) != EWOULDBLOCK)
            kept.append(fileName);
    }
    return kept;
}

void Backup::reportKept(const QString &path)
{
    for (const QString &backup : keptOf(path))
        qCWarning(fileLog).noquote() << oneLine(path)
                + QLatin1String(": an earlier save was interrupted; what was there before it is kept in ")
                + oneLine(backup);
}

QString Backup::directory()
{
    const QString set = QFile::decodeName(qgetenv("XDG_STATE_HOME"));
    const QString state = set.startsWith(QLatin1Char('/')) ? set : QDir::homePath() + QLatin1String("/.local/state");
    return state + QLatin1String("/extpoint-editor/backups");
}

} // namespace ExtensionFile

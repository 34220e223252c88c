#include "core/recoverystore.h"

#include "core/processidentity.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace Core {

namespace {

Q_LOGGING_CATEGORY(recoveryLog, "core.recovery")

constexpr qint64 LongestHeader = 16 * 1024; // bytes
const QString suffix = QStringLiteral(".recovery");
const QString unfinishedSuffix = QStringLiteral(".unfinished");

QByteArray checkSum(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

QString systemReason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool makeDirectory(const QString &directory)
{
    const QString parent = QFileInfo(directory).path();
    if (!QFileInfo(parent).isDir() && !QDir().mkpath(parent))
        return false;
    const QByteArray name = QFile::encodeName(directory);
    if (::mkdir(name.constData(), S_IRWXU) == 0)
        return true;
    struct stat data = {};
    if (errno != EEXIST || ::lstat(name.constData(), &data) != 0)
        return false;
    if (!S_ISDIR(data.st_mode) || data.st_uid != ::geteuid()) {
        errno = EACCES;
        return false;
    }
    return (data.st_mode & (S_IRWXG | S_IRWXO)) == 0 || ::chmod(name.constData(), S_IRWXU) == 0;
}

bool writeAll(int descriptor, const QByteArray &bytes)
{
    // A file system may say for ever that a signal came.
    int interruptionsLeft = 100;
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.constData() + done, size_t(bytes.size() - done));
        if (count < 0 && errno == EINTR && --interruptionsLeft > 0)
            continue;
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

/// Made anew, for the user alone, and on disk.
bool writeNew(const QByteArray &name, const QByteArray &bytes)
{
    const int descriptor
        = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    const bool written = writeAll(descriptor, bytes) && ::fsync(descriptor) == 0;
    const int reason = errno;
    const bool closed = ::close(descriptor) == 0;
    if (!written)
        errno = reason;
    return written && closed;
}

void syncDirectory(const QString &directory)
{
    const int descriptor = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    (void)::fsync(descriptor);
    ::close(descriptor);
}

struct Parsed
{
    RecoveryCopy copy;
    ProcessIdentity process;
};

std::optional<Parsed> parse(const QString &fileName, const QByteArray &key)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject header = QJsonDocument::fromJson(file.readLine(LongestHeader)).object();
    const auto text = [&](const char *name) { return header.value(QLatin1String(name)).toString().toLatin1(); };
    Parsed parsed;
    parsed.process = { text("pid").toLongLong(), text("start").toULongLong(), text("boot") };
    parsed.copy.fileName = fileName;
    parsed.copy.originalHash = text("original");
    parsed.copy.time = QDateTime::fromString(header.value(QLatin1String("time")).toString(), Qt::ISODateWithMs);
    parsed.copy.data = file.readAll();
    const bool sound = text("file") == key && parsed.copy.time.isValid() && !parsed.copy.data.isEmpty()
        && text("sha256") == checkSum(parsed.copy.data);
    return sound ? std::make_optional(parsed) : std::nullopt;
}

} // namespace

RecoveryStore::RecoveryStore(const QString &directory) : m_directory(QDir::cleanPath(directory)) { }

QString RecoveryStore::defaultDirectory()
{
    QString state = QFile::decodeName(qgetenv("XDG_STATE_HOME"));
    if (!QDir::isAbsolutePath(state))
        state = QDir::homePath() + QLatin1String("/.local/state");
    return QDir::cleanPath(state + QLatin1String("/extpoint-workbench/recovery"));
}

QByteArray RecoveryStore::keyOf(const QString &path)
{
    const QFileInfo file(path);
    QString whole = file.canonicalFilePath();
    if (whole.isEmpty()) {
        const QString directory = QFileInfo(file.absolutePath()).canonicalFilePath();
        whole = (directory.isEmpty() ? QDir::cleanPath(file.absolutePath()) : directory) + QLatin1Char('/')
            + file.fileName();
    }
    return checkSum(QFile::encodeName(whole));
}

QString RecoveryStore::ownFile(const QByteArray &key) const
{
    return m_directory + QLatin1Char('/') + QString::fromLatin1(key) + QLatin1Char('-') + QString::number(::getpid())
        + suffix;
}

bool RecoveryStore::write(
    const QByteArray &key, const QByteArray &originalHash, const QByteArray &data, QString *error) const
{
    const ProcessIdentity process = ProcessIdentity::current();
    const QJsonObject header {
        { QStringLiteral("file"), QString::fromLatin1(key) },
        { QStringLiteral("original"), QString::fromLatin1(originalHash) },
        { QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs) },
        { QStringLiteral("pid"), QString::number(process.pid) },
        { QStringLiteral("start"), QString::number(process.start) },
        { QStringLiteral("boot"), QString::fromLatin1(process.boot) },
        { QStringLiteral("sha256"), QString::fromLatin1(checkSum(data)) },
    };
    const QString name = ownFile(key);
    const QByteArray finished = QFile::encodeName(name);
    const QByteArray unfinished = QFile::encodeName(name + unfinishedSuffix);
    if (!makeDirectory(m_directory)) {
        *error = QStringLiteral("%1: %2").arg(m_directory, systemReason());
        return false;
    }
    // A process of the same number may have died while it wrote.
    (void)::unlink(unfinished.constData());
    if (!writeNew(unfinished, QJsonDocument(header).toJson(QJsonDocument::Compact) + '\n' + data)
        || ::rename(unfinished.constData(), finished.constData()) != 0) {
        *error = QStringLiteral("%1: %2").arg(name, systemReason());
        (void)::unlink(unfinished.constData());
        return false;
    }
    syncDirectory(m_directory);
    return true;
}

void RecoveryStore::drop(const QByteArray &key) const
{
    (void)::unlink(QFile::encodeName(ownFile(key)).constData());
}

std::vector<RecoveryCopy> RecoveryStore::abandoned(const QByteArray &key) const
{
    std::vector<RecoveryCopy> copies;
    const QStringList names
        = QDir(m_directory).entryList({ QString::fromLatin1(key) + QLatin1String("-*") + suffix }, QDir::Files);
    for (const QString &name : names) {
        const QString fileName = m_directory + QLatin1Char('/') + name;
        const std::optional<Parsed> parsed = parse(fileName, key);
        if (!parsed)
            qCWarning(recoveryLog, "%s: this recovery copy is damaged", qUtf8Printable(fileName));
        else if (!parsed->process.isAlive())
            copies.push_back(parsed->copy);
    }
    removeUnfinished(key);
    std::sort(
        copies.begin(), copies.end(), [](const RecoveryCopy &a, const RecoveryCopy &b) { return a.time > b.time; });
    return copies;
}

void RecoveryStore::removeUnfinished(const QByteArray &key) const
{
    const QString start = QString::fromLatin1(key) + QLatin1Char('-');
    const QStringList names
        = QDir(m_directory).entryList({ start + QLatin1Char('*') + suffix + unfinishedSuffix }, QDir::Files);
    for (const QString &name : names) {
        const qint64 pid = name.mid(start.size()).section(QLatin1Char('.'), 0, 0).toLongLong();
        if (!ProcessIdentity { pid, 0, ProcessIdentity::current().boot }.isAlive())
            (void)::unlink(QFile::encodeName(m_directory + QLatin1Char('/') + name).constData());
    }
}

void RecoveryStore::remove(const RecoveryCopy &copy) const
{
    (void)::unlink(QFile::encodeName(copy.fileName).constData());
}

} // namespace Core

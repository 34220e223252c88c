#include "core/recoverystore.h"

#include "core/documentroot.h"
#include "core/privatedirectory.h"
#include "core/processidentity.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QUuid>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Core {

namespace {

Q_LOGGING_CATEGORY(recoveryLog, "core.recovery")

constexpr qint64 LongestHeader = 64 * 1024; // bytes
constexpr int LongestId = 500;              // characters
const QString suffix = QStringLiteral(".recovery");
const QString unfinishedSuffix = QStringLiteral(".unfinished");

QByteArray checkSum(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
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

/// Name and "id" of the root element, with which an XML document begins; empty for anything else.
QString documentOf(const QString &path)
{
    const DocumentRoot root = DocumentRoot::of(path);
    return root.id.isEmpty() || root.id.size() > LongestId ? QString() : root.tag + QLatin1Char(' ') + root.id;
}

struct Header
{
    RecoveryCopy copy; ///< Without its data.
    ProcessIdentity process;
    QByteArray checkSum;
};

Header readHeader(const QFileInfo &info, const QByteArray &line)
{
    const QJsonObject fields = QJsonDocument::fromJson(line).object();
    const auto text = [&](const char *name) { return fields.value(QLatin1String(name)).toString(); };
    const QString nameHash = info.fileName().section(QLatin1Char('-'), 0, 0);
    Header header;
    RecoveryCopy &copy = header.copy;
    copy.fileName = info.filePath();
    copy.key = { nameHash.toLatin1(), text("path"), text("document") };
    copy.originalHash = text("original").toLatin1();
    copy.time = QDateTime::fromString(text("time"), Qt::ISODateWithMs);
    copy.damaged = text("file") != nameHash || !copy.time.isValid();
    if (!copy.time.isValid())
        copy.time = info.lastModified();
    header.process = { text("pid").toLongLong(), text("start").toULongLong(), text("boot").toLatin1() };
    header.checkSum = text("sha256").toLatin1();
    return header;
}

bool isOf(const RecoveryKey &copy, const RecoveryKey &file)
{
    if (copy.hash == file.hash || (!copy.path.isEmpty() && copy.path == file.path))
        return true;
    return !copy.path.isEmpty() && !copy.document.isEmpty() && copy.document == file.document
        && !QFileInfo::exists(copy.path);
}

/// As Qt::ISODateWithMs. Not by QDateTime: when a process ends because its display is gone, the calendars of the
/// toolkit may be gone as well.
QString isoTime(const QDateTime &time)
{
    constexpr int msPerSecond = 1000;
    const qint64 ms = time.toMSecsSinceEpoch();
    const auto seconds = time_t(ms / msPerSecond);
    tm parts = {};
    (void)::gmtime_r(&seconds, &parts);
    std::array<char, sizeof "2000-01-01T00:00:00"> text = {};
    (void)std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    return QString::fromLatin1(text.data())
        + QStringLiteral(".%1Z").arg(int(ms % msPerSecond), 3, 10, QLatin1Char('0'));
}

QJsonObject headerOf(const RecoveryKey &key, const QByteArray &originalHash, const QDateTime &time,
    const ProcessIdentity &process, const QByteArray &data)
{
    return {
        { QStringLiteral("file"), QString::fromLatin1(key.hash) },
        { QStringLiteral("path"), key.path },
        { QStringLiteral("document"), key.document },
        { QStringLiteral("original"), QString::fromLatin1(originalHash) },
        { QStringLiteral("time"), isoTime(time) },
        { QStringLiteral("pid"), QString::number(process.pid) },
        { QStringLiteral("start"), QString::number(process.start) },
        { QStringLiteral("boot"), QString::fromLatin1(process.boot) },
        { QStringLiteral("sha256"), QString::fromLatin1(checkSum(data)) },
    };
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

RecoveryKey RecoveryStore::keyOf(const QString &path)
{
    const QFileInfo file(path);
    QString whole = file.canonicalFilePath();
    if (whole.isEmpty()) {
        const QString directory = QFileInfo(file.absolutePath()).canonicalFilePath();
        whole = (directory.isEmpty() ? QDir::cleanPath(file.absolutePath()) : directory) + QLatin1Char('/')
            + file.fileName();
    }
    return { checkSum(QFile::encodeName(whole)), QDir::cleanPath(file.absoluteFilePath()), documentOf(path) };
}

QString RecoveryStore::fileOf(const RecoveryKey &key, const QString &writer) const
{
    return m_directory + QLatin1Char('/') + QString::fromLatin1(key.hash) + QLatin1Char('-') + writer + suffix;
}

QString RecoveryStore::ownFile(const RecoveryKey &key) const
{
    return fileOf(key, QString::number(::getpid()));
}

bool RecoveryStore::write(
    const RecoveryKey &key, const QByteArray &originalHash, const QByteArray &data, QString *error) const
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    return put(ownFile(key), headerOf(key, originalHash, now, ProcessIdentity::current(), data), data, error);
}

bool RecoveryStore::assign(const RecoveryCopy &copy, const RecoveryKey &key, QString *error) const
{
    // Nobody's, under a name of its own: the process that is gone may have left a copy of that file as well.
    const QString name = fileOf(key, QStringLiteral("0-") + QUuid::createUuid().toString(QUuid::Id128));
    if (!put(name, headerOf(key, copy.originalHash, copy.time, ProcessIdentity(), copy.data), copy.data, error))
        return false;
    remove(copy);
    return true;
}

bool RecoveryStore::put(const QString &name, const QJsonObject &header, const QByteArray &data, QString *error) const
{
    const QByteArray finished = QFile::encodeName(name);
    const QByteArray unfinished = QFile::encodeName(name + unfinishedSuffix);
    if (!makePrivateDirectory(m_directory)) {
        *error = QStringLiteral("%1: %2").arg(m_directory, qt_error_string(errno));
        return false;
    }
    // A process of the same number may have died while it wrote.
    (void)::unlink(unfinished.constData());
    if (!writeNew(unfinished, QJsonDocument(header).toJson(QJsonDocument::Compact) + '\n' + data)
        || ::rename(unfinished.constData(), finished.constData()) != 0) {
        *error = QStringLiteral("%1: %2").arg(name, qt_error_string(errno));
        (void)::unlink(unfinished.constData());
        return false;
    }
    syncDirectory(m_directory);
    return true;
}

void RecoveryStore::drop(const RecoveryKey &key) const
{
    (void)::unlink(QFile::encodeName(ownFile(key)).constData());
}

std::vector<RecoveryCopy> RecoveryStore::collect(const std::function<bool(const RecoveryKey &)> &wanted) const
{
    std::vector<RecoveryCopy> copies;
    const QStringList names = QDir(m_directory).entryList({ QLatin1Char('*') + suffix }, QDir::Files);
    for (const QString &name : names) {
        QFile file(m_directory + QLatin1Char('/') + name);
        const bool readable = file.open(QIODevice::ReadOnly);
        Header header = readHeader(QFileInfo(file), readable ? file.readLine(LongestHeader) : QByteArray());
        RecoveryCopy &copy = header.copy;
        if (header.process.isAlive() || !wanted(copy.key))
            continue;
        if (readable)
            copy.data = file.readAll();
        copy.damaged = copy.damaged || copy.data.isEmpty() || header.checkSum != checkSum(copy.data);
        copies.push_back(copy);
    }
    removeUnfinished();
    std::sort(
        copies.begin(), copies.end(), [](const RecoveryCopy &a, const RecoveryCopy &b) { return a.time > b.time; });
    return copies;
}

std::vector<RecoveryCopy> RecoveryStore::abandoned() const
{
    return collect([](const RecoveryKey &) { return true; });
}

std::vector<RecoveryCopy> RecoveryStore::abandoned(const RecoveryKey &key) const
{
    std::vector<RecoveryCopy> copies = collect([&key](const RecoveryKey &copy) { return isOf(copy, key); });
    const auto sound
        = std::stable_partition(copies.begin(), copies.end(), [](const RecoveryCopy &copy) { return !copy.damaged; });
    for (auto copy = sound; copy != copies.end(); ++copy)
        qCWarning(recoveryLog, "%s: this recovery copy is damaged", qUtf8Printable(copy->fileName));
    copies.erase(sound, copies.end());
    return copies;
}

void RecoveryStore::removeUnfinished() const
{
    const QStringList names
        = QDir(m_directory).entryList({ QLatin1Char('*') + suffix + unfinishedSuffix }, QDir::Files);
    for (const QString &name : names) {
        const qint64 pid = name.section(QLatin1Char('-'), 1, 1).section(QLatin1Char('.'), 0, 0).toLongLong();
        if (!ProcessIdentity { pid, 0, ProcessIdentity::current().boot }.isAlive())
            (void)::unlink(QFile::encodeName(m_directory + QLatin1Char('/') + name).constData());
    }
}

void RecoveryStore::remove(const RecoveryCopy &copy) const
{
    (void)::unlink(QFile::encodeName(copy.fileName).constData());
}

} // namespace Core

#include "core/filewatch.h"

#include <QFileInfo>

namespace Core {

namespace {

constexpr int SettleTime = 250;    // milliseconds
constexpr int LongestSettling = 4; // settle times
constexpr int MostLinks = 40;      // as the system follows them
constexpr int MostDirectories = 64;

/// The directories in which the names on the way to @p path are looked up, the nearest last: those of the path and of
/// every link on it. Whoever exchanges one of these names exchanges the file.
QStringList directoriesOnTheWay(const QString &path)
{
    QStringList directories;
    QString place = QStringLiteral("/");
    QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (int links = 0; !names.isEmpty();) {
        directories.removeOne(place);
        directories.append(place);
        const QString name = names.takeFirst();
        if (name == QLatin1String("..")) {
            place = QFileInfo(place).path();
            continue;
        }
        if (name == QLatin1String("."))
            continue;
        const QString entry = (place.endsWith(QLatin1Char('/')) ? place : place + QLatin1Char('/')) + name;
        const QFileInfo info(entry);
        if (!info.isSymLink()) {
            place = entry;
        } else if (++links <= MostLinks) {
            names = info.symLinkTarget().split(QLatin1Char('/'), Qt::SkipEmptyParts) + names;
            place = QStringLiteral("/");
        } else {
            break;
        }
    }
    return directories.mid(qMax(0, directories.size() - MostDirectories));
}

} // namespace

FileWatch::FileWatch(const QString &path, const DiskState &known, QObject *parent)
    : QObject(parent), m_path(path), m_known(known), m_seen(known)
{
    m_settle.setSingleShot(true);
    setSettleTime(SettleTime);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::lookSoon);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::lookSoon);
    connect(&m_settle, &QTimer::timeout, this, &FileWatch::look);
    watch();
    // What was written between the taking in and the watching gave no signal.
    lookSoon();
}

void FileWatch::setKnown(const DiskState &state)
{
    m_known = state;
    m_seen = state;
}

void FileWatch::watch()
{
    // All of it anew: what was renamed or replaced is still watched under the name that another one has now.
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    const QStringList paths = directoriesOnTheWay(m_path) + QStringList { m_path };
    for (const QString &path : paths)
        // Of others the watcher would complain on the standard error output, each time.
        if (QFileInfo(path).isReadable())
            m_watcher.addPath(path);
}

void FileWatch::lookSoon()
{
    // A directory in which others work without a pause must not postpone the look for ever.
    if (!m_settle.isActive())
        m_sinceNews.start();
    m_settle.start(int(qBound<qint64>(0, LongestSettling * m_settleTime - m_sinceNews.elapsed(), m_settleTime)));
}

void FileWatch::look()
{
    m_settle.stop();
    watch();
    const DiskState now = DiskState::of(m_path);
    if (now == m_seen)
        return;
    m_seen = now;
    Q_EMIT changed(now);
}

} // namespace Core

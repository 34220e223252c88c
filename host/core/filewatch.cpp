#include "core/filewatch.h"

#include <QFileInfo>

namespace Core {

namespace {

constexpr int SettleTime = 250; // milliseconds

} // namespace

FileWatch::FileWatch(const QString &path, const DiskState &known, QObject *parent)
    : QObject(parent), m_path(path), m_known(known), m_seen(known)
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleTime);
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
    const QFileInfo file(m_path);
    // Behind a link it is the directory of the target in which files are replaced.
    QStringList paths { file.absolutePath() };
    const QString target = file.canonicalFilePath();
    if (!target.isEmpty()) {
        paths.append(file.absoluteFilePath());
        if (!paths.contains(QFileInfo(target).absolutePath()))
            paths.append(QFileInfo(target).absolutePath());
        // The old file is still watched under this name when another one was renamed to it.
        m_watcher.removePath(file.absoluteFilePath());
    }
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    for (const QString &path : qAsConst(paths))
        if (!watched.contains(path) && QFileInfo::exists(path))
            m_watcher.addPath(path);
}

void FileWatch::lookSoon()
{
    m_settle.start();
}

void FileWatch::look()
{
    m_settle.stop();
    watch();
    const DiskState now = DiskState::of(m_path);
    if (now == m_seen)
        return;
    m_seen = now;
    emit changed(now);
}

} // namespace Core

#include "projectexplorer/directorylister.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace ProjectExplorer {

/// One listing. But for the flag, guarded by the lister's mutex.
struct DirectoryLister::Job
{
    QString path;
    std::atomic<bool> cancelled { false };
    bool begun = false;
    bool done = false;
    QVector<PluginDirectory> directories;
};

QVector<PluginDirectory> listPluginDirectories(const QString &path, const std::atomic<bool> &cancelled)
{
    QVector<PluginDirectory> directories;
    QDirIterator entries(path, QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext() && !cancelled) {
        entries.next();
        directories.append(
            { entries.fileName(), QFileInfo(entries.filePath() + QLatin1String("/extension.xml")).isFile() });
    }
    std::sort(directories.begin(), directories.end(), [](const PluginDirectory &a, const PluginDirectory &b) {
        const int order = a.name.compare(b.name, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.name < b.name;
    });
    return directories;
}

DirectoryLister::DirectoryLister(QObject *parent) : QObject(parent)
{
    connect(this, &DirectoryLister::finished, this, &DirectoryLister::takeIn, Qt::QueuedConnection);
    m_thread = std::thread([this] { run(); });
}

DirectoryLister::~DirectoryLister()
{
    cancel();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

void DirectoryLister::list(const QString &path)
{
    cancel();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_wanted = std::make_shared<Job>();
        m_wanted->path = path;
    }
    m_wakeUp.notify_one();
}

void DirectoryLister::cancel()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_wanted)
        m_wanted->cancelled = true;
    m_wanted.reset();
}

void DirectoryLister::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wakeUp.wait(lock, [this] { return m_ending || (m_wanted && !m_wanted->begun); });
        if (m_ending)
            return;
        const std::shared_ptr<Job> job = m_wanted;
        job->begun = true;
        const QString path = job->path;
        lock.unlock();
        QVector<PluginDirectory> directories = listPluginDirectories(path, job->cancelled);
        lock.lock();
        job->directories = std::move(directories);
        job->done = true;
        if (job == m_wanted)
            emit finished(QPrivateSignal());
    }
}

void DirectoryLister::takeIn()
{
    std::shared_ptr<Job> job;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_wanted || !m_wanted->done)
            return;
        job = std::move(m_wanted);
        m_wanted.reset();
    }
    emit listed(job->path, job->directories);
}

} // namespace ProjectExplorer

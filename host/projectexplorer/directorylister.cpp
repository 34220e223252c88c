#include "projectexplorer/directorylister.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>

namespace ProjectExplorer {

namespace {

constexpr std::chrono::milliseconds LongestWaitForThread(500);

} // namespace

/// One listing. But for the flag, guarded by the mutex of Shared.
struct DirectoryLister::Job
{
    QString path;
    std::atomic<bool> cancelled { false };
    bool begun = false;
    bool done = false;
    QVector<PluginDirectory> directories;
};

struct DirectoryLister::Shared
{
    std::mutex mutex;
    std::condition_variable wakeUp;
    std::condition_variable end;
    std::shared_ptr<Job> wanted;       ///< The listing asked for last; null when it was reported or cancelled.
    DirectoryLister *lister = nullptr; ///< Null once it goes.
    bool ended = false;
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

DirectoryLister::DirectoryLister(QObject *parent) : QObject(parent), m_shared(std::make_shared<Shared>())
{
    connect(this, &DirectoryLister::finished, this, &DirectoryLister::takeIn, Qt::QueuedConnection);
    m_shared->lister = this;
    try {
        m_thread = std::thread([shared = m_shared] { run(shared); });
    } catch (const std::system_error &) {
        // The system gives no further thread: list() does it.
    }
}

DirectoryLister::~DirectoryLister()
{
    cancel();
    if (!m_thread.joinable())
        return;
    std::unique_lock<std::mutex> lock(m_shared->mutex);
    m_shared->lister = nullptr;
    m_shared->wakeUp.notify_one();
    const bool ended = m_shared->end.wait_for(lock, LongestWaitForThread, [this] { return m_shared->ended; });
    lock.unlock();
    if (ended)
        m_thread.join();
    else
        m_thread.detach();
}

void DirectoryLister::list(const QString &path)
{
    cancel();
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        m_shared->wanted = std::make_shared<Job>();
        m_shared->wanted->path = path;
    }
    if (m_thread.joinable()) {
        m_shared->wakeUp.notify_one();
        return;
    }
    m_shared->wanted->directories = listPluginDirectories(path, m_shared->wanted->cancelled);
    m_shared->wanted->done = true;
    Q_EMIT finished(QPrivateSignal());
}

void DirectoryLister::cancel()
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    if (m_shared->wanted)
        m_shared->wanted->cancelled = true;
    m_shared->wanted.reset();
}

void DirectoryLister::run(const std::shared_ptr<Shared> &shared)
{
    std::unique_lock<std::mutex> lock(shared->mutex);
    for (;;) {
        shared->wakeUp.wait(lock, [&] { return !shared->lister || (shared->wanted && !shared->wanted->begun); });
        if (!shared->lister)
            break;
        const std::shared_ptr<Job> job = shared->wanted;
        job->begun = true;
        lock.unlock();
        QVector<PluginDirectory> directories = listPluginDirectories(job->path, job->cancelled);
        lock.lock();
        job->directories = std::move(directories);
        job->done = true;
        if (shared->lister && job == shared->wanted)
            Q_EMIT shared->lister->finished(QPrivateSignal());
    }
    shared->ended = true;
    shared->end.notify_one();
}

void DirectoryLister::takeIn()
{
    std::shared_ptr<Job> job;
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        if (!m_shared->wanted || !m_shared->wanted->done)
            return;
        job = std::move(m_shared->wanted);
        m_shared->wanted.reset();
    }
    Q_EMIT listed(job->path, job->directories);
}

} // namespace ProjectExplorer

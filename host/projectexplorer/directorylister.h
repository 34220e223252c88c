#pragma once

#include "projectexplorer/projectexplorer_global.h"

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVector>

#include <atomic>
#include <memory>
#include <thread>

namespace ProjectExplorer {

/// One directory of the product. A plain record.
struct PluginDirectory
{
    QString name;
    bool hasFile = false; ///< It holds a regular file "extension.xml".

    friend bool operator==(const PluginDirectory &a, const PluginDirectory &b)
    {
        return a.name == b.name && a.hasFile == b.hasFile;
    }
};

/// The directories in @p path, sorted by name without regard to letter case; hidden ones are left out. Ends early, with
/// what was found so far, once @p cancelled is true. Any thread.
[[nodiscard]] PROJECTEXPLORER_EXPORT QVector<PluginDirectory> listPluginDirectories(
    const QString &path, const std::atomic<bool> &cancelled);

/// Lists the directories of a product on a thread of its own, not the global pool: what this does is no work that the
/// window should call busy. Its owner gets the result on the GUI thread.
class PROJECTEXPLORER_EXPORT DirectoryLister final : public QObject
{
    Q_OBJECT

public:
    explicit DirectoryLister(QObject *parent = nullptr);
    /// The thread stops at the next directory entry. One that hangs at an entry (of a network that has gone, say) is
    /// left to itself.
    ~DirectoryLister() override;

    /// Lists @p path anew; a listing that is not done yet is given up and never reported.
    void list(const QString &path);
    void cancel();

Q_SIGNALS:
    void listed(const QString &path, const QVector<ProjectExplorer::PluginDirectory> &directories);
    /// Emitted by the thread: a result waits to be taken in.
    void finished(QPrivateSignal);

private:
    struct Job;
    struct Shared;

    static void run(const std::shared_ptr<Shared> &shared);
    void takeIn();

    const std::shared_ptr<Shared> m_shared; ///< Everything between the two threads.
    std::thread m_thread;
};

} // namespace ProjectExplorer

Q_DECLARE_METATYPE(QVector<ProjectExplorer::PluginDirectory>)

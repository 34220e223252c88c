#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>

/// What the fault tests share: real files of every sort, a log that is kept, and children that may hang or crash.
namespace FaultTesting {

/// Nothing may take longer. The sanitizers slow everything down by about this factor, and are no fault.
[[nodiscard]] qint64 patienceMs();

/// Milliseconds that the process has worked since start(), so that a busy machine does not look like a slow program.
/// Who does nothing for long is hanging, and that counts in full.
class WorkClock final
{
public:
    void start();
    [[nodiscard]] qint64 elapsed() const;
    /// The same, and starts anew.
    qint64 restart();

private:
    QElapsedTimer m_wall;
    qint64 m_workedAtStart = 0;
};

[[nodiscard]] QByteArray contentsOf(const QString &path);
/// Ends the process when the file can't be made.
void makeFile(const QString &path, const QByteArray &bytes, mode_t mode = 0644);
void makeLink(const QByteArray &aim, const QString &path);
void makeHardLink(const QString &existing, const QString &path);
void makePipe(const QString &path);
void makeSocket(const QString &path);
/// A file of @p size bytes that takes no room.
void makeSparse(const QString &path, qint64 size);
void makeDirectory(const QString &path, mode_t mode = 0755);
void setMode(const QString &path, mode_t mode);
/// To the user of Child; nothing happens when the tests are not run by root.
void giveAway(const QString &path);
[[nodiscard]] struct stat statusOf(const QString &path);
/// All names in @p directory, sorted.
[[nodiscard]] QStringList namesIn(const QString &directory);

/// A well-formed extension file of exactly @p size bytes (at least 100) whose values consist of @p letter.
[[nodiscard]] QByteArray documentOf(int size, char letter = 'x');

/// Keeps the warnings of the "extpoint." categories for as long as it lives. Any thread may log.
class Log final
{
public:
    Log();
    ~Log();
    Log(const Log &) = delete;
    Log &operator=(const Log &) = delete;
    [[nodiscard]] QStringList lines() const;

private:
    QtMessageHandler m_before;
};

/// The largest size of a file that this process writes. What goes beyond fails in mid-write.
void limitFileSize(rlim_t bytes);

/// Something done in a process of its own, so that a crash, a hang and laid down rights stay there. To be used by
/// programs with one thread only.
class Child final
{
public:
    /// Run first, with the rights that the tests have.
    std::function<void()> prepare;
    /// Run as a user who is not root, for whom permissions count, within patienceMs(). Returns what is wrong, or
    /// nothing.
    std::function<QString()> act;
    /// If it is not empty, a disk of @p diskKiB is mounted here for the child alone.
    QString disk;
    int diskKiB = 0;

    /// What is wrong, or nothing.
    [[nodiscard]] QString run() const;

private:
    [[nodiscard]] QString body() const;
    [[nodiscard]] bool mountDisk() const;
};

} // namespace FaultTesting

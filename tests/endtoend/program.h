#pragma once

#include "files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

/// The real workbench as a process, with a home directory of its own and the plug-ins of the build tree. The probe is
/// loaded, too, and listens where socketName() says. Kills the process when it is still running at the end.
class Program final
{
public:
    /// How long to wait for anything that is to happen, in milliseconds: long enough for a sanitized build on a busy
    /// machine. Nothing waits longer than it has to.
    static constexpr int Patience = EXTPOINT_SLOWNESS * 20'000;

    struct Result
    {
        int code = -1; ///< -1 when it did not end by itself within the patience, or crashed.
        QByteArray output;
        QByteArray error;
    };

    Program();
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    void setVariable(const QString &name, const QString &value) { m_environment.insert(name, value); }
    /// Runs the program as the user "nobody" when the tests run as root, for whom no file is read-only.
    void laysDownRoot();

    /// Gives the program no more than @p mebibytes of memory, all that it maps included.
    void limitMemory(int mebibytes);

    /// Has the next program wait when it opens @p file for reading, until readOn(), or until this object goes.
    void holdBack(const QString &file);
    void readOn() { QFile::remove(gate()); }
    /// Has the next program take @p milliseconds to open any file of a plug-in.
    void slowDown(int milliseconds);

    [[nodiscard]] bool start(const QStringList &arguments);
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] qint64 processId() const { return m_process->processId(); }
    /// Sends a signal and waits for the end that it leads to.
    [[nodiscard]] bool signal(int number);
    /// Waits for the end.
    [[nodiscard]] Result result();
    /// All of it, from start to end.
    [[nodiscard]] Result run(const QStringList &arguments);

    [[nodiscard]] QString homeDirectory() const { return m_home.path(); }
    [[nodiscard]] QString socketName() const { return m_home.filePath(s("probe")); }
    /// The names of the recovery copies that the program has left, or keeps.
    [[nodiscard]] QStringList recoveryCopies() const;
    /// What was written to the standard error output so far, without the toolkit's remarks that tell nothing about the
    /// program: that a window has gone when the server is asked about it, that the seed of the hashes is a given one.
    [[nodiscard]] QByteArray errorOutput();

private:
    void preloadSlowDisk();
    [[nodiscard]] QString gate() const { return m_home.filePath(s("gate")); }

    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    QStringList m_wrapper;
    QByteArray m_error;
    std::unique_ptr<QProcess> m_process;
};

#pragma once

#include "core/commandline.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace Core {

class EditorManager;
class MainWindow;

/// Carries out a command line: opens the file, shows the page, and, for a run that does one thing and quits, waits
/// until nothing works in the background, does it and ends the event loop with the exit code. Owned by the Core
/// plug-in.
class StartupJob final : public QObject
{
    Q_OBJECT

public:
    StartupJob(const CommandLine &commandLine, MainWindow &window, EditorManager &editors, QObject *parent = nullptr);

    /// To be called from the event loop.
    void start();

private:
    void showPage();
    void waitForQuiet();
    /// True while a file that the work needs is still awaited, and one has arrived not long ago.
    [[nodiscard]] bool isWorthWaiting();
    void work();
    /// True when there is no reason not to save, or none that counts.
    [[nodiscard]] bool tellSaveReport() const;
    /// Empty, or why no picture was written.
    [[nodiscard]] QString takePicture();
    /// As takePicture().
    [[nodiscard]] QString printTimings() const;
    void tell(const QString &reason) const;
    void fail(const QString &reason) const;

    const CommandLine m_commandLine;
    MainWindow &m_window;
    EditorManager &m_editors;
    QTimer m_poll;
    QTimer m_stallTimer;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceTick;
    qint64 m_openTime = 0; ///< Nanoseconds, as the next two.
    qint64 m_scanTime = 0;
    qint64 m_longestStall = 0;
    int m_quietTurns = 0;
    int m_awaited = -1; ///< Files, at the last look.
    QElapsedTimer m_sinceArrival;
};

} // namespace Core

#include "core/startupjob.h"

#include "core/editormanager.h"
#include "core/filecare.h"
#include "core/ieditor.h"
#include "core/mainwindow.h"
#include "core/reportingdocument.h"
#include "utils/pathtext.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPixmap>
#include <QTabWidget>
#include <QWindow>

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace Core {

namespace {

constexpr int PollInterval = 5; // milliseconds
// Looks at which nothing may be going on before the work counts as done: what a finished thread has sent is then taken
// in, and the window has been painted with it.
constexpr int QuietTurnsNeeded = 6;
constexpr int LongestWaitForFile = 10'000; // milliseconds without any other that arrives
constexpr int LongestWaitForThreads = 2'000;
constexpr int NotSaved = 3;
constexpr qint64 LongestWaitForWindow = 5'000'000'000; // nanoseconds

double milliseconds(qint64 nanoseconds)
{
    const qint64 microseconds = nanoseconds / 1000;
    return double(microseconds) / 1000.0;
}

/// The resident memory of this process in bytes, 0 when the system doesn't tell.
double residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> pages = file.readAll().split(' ');
    return pages.value(1).toDouble() * double(::sysconf(_SC_PAGESIZE));
}

} // namespace

StartupJob::StartupJob(const CommandLine &commandLine, MainWindow &window, EditorManager &editors, QObject *parent)
    : QObject(parent), m_commandLine(commandLine), m_window(window), m_editors(editors)
{
    m_poll.setInterval(PollInterval);
    connect(&m_poll, &QTimer::timeout, this, &StartupJob::waitForQuiet);
    m_stallTimer.setInterval(1);
    m_stallTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_stallTimer, &QTimer::timeout, this, [this] {
        m_longestStall = qMax(m_longestStall, m_sinceTick.nsecsElapsed());
        m_sinceTick.restart();
    });
}

void StartupJob::start()
{
    m_sinceStart.start();
    const FileTarget file = m_commandLine.file();
    if (!file.path.isEmpty() && m_commandLine.isJob()) {
        const OpenOutcome outcome = m_window.openHere(file.path);
        if (!outcome.editor) {
            fail(outcome.error);
            return;
        }
    } else if (!file.path.isEmpty()) {
        m_window.openFile(file.path);
    }
    m_openTime = m_sinceStart.nsecsElapsed();
    showPage();
    if (file.line > 0 && m_window.currentEditor())
        m_window.currentEditor()->gotoLine(file.line, qMax(0, file.column - 1));
    if (!m_commandLine.isJob())
        return;
    m_sinceStart.restart();
    m_sinceTick.start();
    if (m_commandLine.timings)
        m_stallTimer.start();
    m_poll.start();
}

void StartupJob::showPage()
{
    IEditor *editor = m_window.currentEditor();
    if (m_commandLine.page == CommandLine::Page::Unchanged || !editor || !editor->widget())
        return;
    if (auto *tabs = editor->widget()->findChild<QTabWidget *>(QStringLiteral("tabWidget")))
        tabs->setCurrentIndex(m_commandLine.page == CommandLine::Page::Definition ? 0 : 1);
}

void StartupJob::waitForQuiet()
{
    const QWindow *native = m_window.windowHandle();
    const bool windowMissing = m_window.isVisible() && !(native && native->isExposed())
        && m_sinceStart.nsecsElapsed() < LongestWaitForWindow;
    if (m_editors.busyMonitor().isBusy() && isWorthWaiting()) {
        m_quietTurns = 0;
        return;
    }
    if (m_quietTurns == 0)
        m_scanTime = m_sinceStart.nsecsElapsed();
    if (++m_quietTurns < QuietTurnsNeeded || windowMissing)
        return;
    m_poll.stop();
    m_stallTimer.stop();
    work();
}

bool StartupJob::isWorthWaiting()
{
    IEditor *editor = m_window.currentEditor();
    const auto *reporting = editor ? dynamic_cast<const ReportingDocument *>(editor->document()) : nullptr;
    if (!reporting)
        return true;
    const int awaited = reporting->awaitedFiles().size();
    if (std::exchange(m_awaited, awaited) != awaited)
        m_sinceArrival.start();
    // A thread that the system has refused counts as one at work for ever.
    return !m_sinceArrival.hasExpired(awaited > 0 ? LongestWaitForFile : LongestWaitForThreads);
}

bool StartupJob::tellSaveReport() const
{
    auto *reporting = dynamic_cast<ReportingDocument *>(m_window.currentEditor()->document());
    const SaveReport report = reporting ? reporting->saveReport() : SaveReport();
    QStringList lines = report.remarks;
    if (!report.question.isEmpty())
        lines << report.question << report.advice;
    for (const QString &line : qAsConst(lines))
        tell(line);
    return report.question.isEmpty() || m_commandLine.force;
}

void StartupJob::work()
{
    if (!m_commandLine.screenshot.isEmpty()) {
        const QString reason = takePicture();
        if (!reason.isEmpty()) {
            fail(reason);
            return;
        }
    }
    if (m_commandLine.save) {
        // While the product was read somebody may have written, or be writing.
        if (!QFileInfo::exists(m_commandLine.file().path) || !m_window.fileCare().maySave()) {
            fail(tr("The file was changed by another program while the product was read."));
            return;
        }
        if (!tellSaveReport()) {
            QCoreApplication::exit(NotSaved);
            return;
        }
        const SaveOutcome outcome = m_editors.save(m_window.currentEditor());
        if (!outcome.written) {
            fail(outcome.error);
            return;
        }
        if (!outcome.warning.isEmpty())
            tell(outcome.warning);
    }
    if (m_commandLine.timings) {
        const QString reason = printTimings();
        if (!reason.isEmpty()) {
            fail(reason);
            return;
        }
    }
    QCoreApplication::exit(0);
}

QString StartupJob::takePicture()
{
    const QPixmap picture = m_window.grab();
    QFile file(m_commandLine.screenshot);
    if (picture.isNull())
        return tr("the window has no picture");
    // It would come to stand under another name than the one that was asked for.
    if (Utils::isMisencoded(m_commandLine.screenshot))
        return tr("%1 is not in the encoding of the system").arg(m_commandLine.screenshot);
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.flush())
        return tr("%1 cannot be written: %2").arg(m_commandLine.screenshot, file.errorString());
    return QString();
}

QString StartupJob::printTimings() const
{
    const QJsonObject figures {
        { QStringLiteral("open_ms"), milliseconds(m_openTime) },
        { QStringLiteral("scan_ms"), milliseconds(m_scanTime) },
        { QStringLiteral("longest_stall_ms"), milliseconds(m_longestStall) },
        { QStringLiteral("rss_mb"), qRound(residentBytes() / 1024.0 / 102.4) / 10.0 },
    };
    return printAnswer(QJsonDocument(figures).toJson(QJsonDocument::Compact) + '\n');
}

void StartupJob::tell(const QString &reason) const
{
    const QString subject = m_commandLine.files.isEmpty() ? m_commandLine.screenshot : m_commandLine.file().path;
    std::fprintf(stderr, "extpoint-workbench: %s: %s\n", qPrintable(Utils::oneLine(subject)),
        qPrintable(Utils::oneLine(reason.simplified())));
}

void StartupJob::fail(const QString &reason) const
{
    tell(reason);
    QCoreApplication::exit(1);
}

} // namespace Core

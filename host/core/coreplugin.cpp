#include "core/coreplugin.h"

#include "core/editormanager.h"
#include "core/filecare.h"
#include "core/finddock.h"
#include "core/icore.h"
#include "core/ieditor.h"
#include "core/logdock.h"
#include "core/mainwindow.h"
#include "core/onewindowperfile.h"
#include "core/problemsdock.h"
#include "core/quitsignals.h"
#include "core/readablepalette.h"
#include "core/recoverystore.h"
#include "core/startupjob.h"
#include "core/viewmemory.h"
#include "core/workbenchstyle.h"
#include "extensionsystem/pluginmanager.h"

#include <QApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QPointer>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace Core {

namespace {

QPointer<MainWindow> &windowAtExit()
{
    static QPointer<MainWindow> window;
    return window;
}

/// A library that ends the process (the connection to the display does when that has gone) leaves no time for anything
/// but a copy of what is unsaved. Destroying what stands is no use then, and may be its end too soon.
void keepBeforeExit(MainWindow *window)
{
    windowAtExit() = window;
    static const int registered = ::on_exit(
        [](int status, void *) {
            MainWindow *const left = windowAtExit();
            if (!left)
                return;
            windowAtExit().clear();
            left->fileCare().flushBeforeExit();
            std::fflush(nullptr);
            ::_exit(status);
        },
        nullptr);
    if (registered != 0)
        qWarning("Unsaved changes are not kept when the display goes away.");
}

Q_LOGGING_CATEGORY(settingsLog, "core.settings")

/// One file by its name: without one QSettings reads whatever stands under three further names, too.
QString usersSettingsFile()
{
    return QStringLiteral("%1/%2/%3.conf")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
            QCoreApplication::organizationName(), QCoreApplication::applicationName());
}

/// False, and logged, for what is no file: reading a pipe would wait for ever for somebody to write to it.
bool canHoldSettings(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists() || file.isFile())
        return true;
    qCWarning(settingsLog, "%s: not a regular file, so no settings are kept", qUtf8Printable(path));
    return false;
}

} // namespace

CorePlugin::CorePlugin() = default;

CorePlugin::~CorePlugin() = default;

bool CorePlugin::initialize(const QStringList &arguments, QString *errorString)
{
    m_commandLine = CommandLine::parse(arguments);
    if (m_commandLine.request == CommandLine::Request::Refuse) {
        *errorString = m_commandLine.error;
        return false;
    }
    QApplication::setStyle(
        m_commandLine.dark ? new WorkbenchStyle(QStyleFactory::create(QStringLiteral("Fusion"))) : new WorkbenchStyle);
    QApplication::setPalette(readable(m_commandLine.dark ? darkPalette() : QApplication::palette()));
    QString settingsFile = usersSettingsFile();
    // A run that is a job neither shows what an earlier one left behind nor leaves anything behind itself.
    if (m_commandLine.isJob() || !canHoldSettings(settingsFile)) {
        m_passingSettingsDirectory = std::make_unique<QTemporaryDir>();
        settingsFile = m_passingSettingsDirectory->filePath(QStringLiteral("settings.conf"));
    }
    m_settings = std::make_unique<QSettings>(settingsFile, QSettings::NativeFormat);
    m_editors = std::make_unique<EditorManager>();
    if (!m_commandLine.isJob())
        m_views = std::make_unique<ViewMemory>(*m_editors, *m_settings);
    m_window = std::make_unique<MainWindow>(*m_editors, *m_settings);
    if (m_views)
        connect(m_window.get(), &MainWindow::fileOpened, m_views.get(), &ViewMemory::restore);
    // The window owns them.
    new FindDock(*m_window, m_editors->busyMonitor());
    new ProblemsDock(*m_window);
    m_window->setLauncher([this](const QString &path) { return startSecondProcess(path); });
    // A run that quits by itself is ended by a signal as any tool is: what it writes is written at once or not at all.
    if (!m_commandLine.isJob()) {
        m_window->setRecoveryStore(std::make_shared<RecoveryStore>());
        m_onlyWindow = new OneWindowPerFile(*m_window, *m_editors);
        m_quitSignals = std::make_unique<QuitSignals>();
        connect(m_quitSignals.get(), &QuitSignals::asked, m_window.get(), &MainWindow::endSession);
        keepBeforeExit(m_window.get());
        m_window->addDock(Qt::BottomDockWidgetArea, new LogDock(m_window.get()));
    }
    m_core.reset(new ICore(*m_window, *m_editors, *m_settings));
    // Long before the plug-ins go, whose code the editors need.
    connect(qApp, &QCoreApplication::aboutToQuit, m_editors.get(), &EditorManager::closeAll);
    return true;
}

void CorePlugin::extensionsInitialized()
{
    QVector<FileTarget> &files = m_commandLine.files;
    if (m_onlyWindow && !files.isEmpty()) {
        while (!files.isEmpty() && m_onlyWindow->isElsewhere(files.first()))
            files.removeFirst();
        if (files.isEmpty()) {
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
            return;
        }
    }
    m_job = std::make_unique<StartupJob>(m_commandLine, *m_window, *m_editors);
    m_window->restorePlace();
    const bool invisible = m_commandLine.save && m_commandLine.screenshot.isEmpty();
    // A window that is to show a file comes up with it: there would be nothing to see before, and its layout is half of
    // the work.
    if (!invisible && m_commandLine.files.isEmpty())
        m_window->show();
    QTimer::singleShot(0, m_job.get(), [this, invisible] {
        int problems = 0;
        const auto plugins = ExtensionSystem::PluginManager::instance()->plugins();
        for (const ExtensionSystem::PluginInfo &plugin : plugins)
            problems += plugin.hasError() ? 1 : 0;
        m_window->setPluginProblems(problems);
        m_job->start();
        if (!invisible)
            m_window->show();
        for (const FileTarget &further : m_commandLine.files.mid(1))
            if (!startSecondProcess(further.toArgument()))
                qWarning("%s: no window could be started for it", qUtf8Printable(further.path));
    });
}

void CorePlugin::aboutToShutdown()
{
    m_job.reset();
    m_quitSignals.reset();
    if (m_editors)
        m_editors->closeAll();
    m_core.reset();
    m_window.reset();
    m_views.reset();
    m_editors.reset();
    m_settings.reset();
}

bool CorePlugin::startSecondProcess(const QString &file) const
{
    QStringList arguments;
    for (const QString &directory : m_commandLine.pluginPaths)
        arguments << QStringLiteral("--plugin-path") << directory;
    if (!m_commandLine.language.isEmpty())
        arguments << QStringLiteral("--language") << m_commandLine.language;
    if (m_commandLine.dark)
        arguments << QStringLiteral("--dark");
    if (m_commandLine.verbose)
        arguments << QStringLiteral("--verbose");
    arguments << QStringLiteral("--") << file;
    return QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments);
}

} // namespace Core

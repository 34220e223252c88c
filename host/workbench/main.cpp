#include "core/commandline.h"
#include "extensionsystem/pluginmanager.h"
#include "utils/pathtext.h"
#include "workbench/languages.h"
#include "workbench/logging.h"
#include "workbench/outofmeans.h"
#include "workbench/screendensity.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QMessageBox>
#include <QThreadPool>
#include <QTimer>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int UsageError = 2;
constexpr int LongestWaitForThreads = 500; // milliseconds

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    return arguments;
}

void complain(const QString &reason)
{
    std::fprintf(stderr, "extpoint-workbench: %s\n", qPrintable(Utils::oneLine(reason)));
}

int reply(const QString &text)
{
    const QString reason = Core::printAnswer(text.toLocal8Bit());
    if (reason.isEmpty())
        return EXIT_SUCCESS;
    complain(reason);
    return EXIT_FAILURE;
}

/// A standard stream that is closed leaves its number to the next file that is opened, which may be the user's, and
/// what is printed would go there. What holds the number here refuses it.
void occupyClosedStreams()
{
    for (const int stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
        if (::fcntl(stream, F_GETFD) < 0)
            (void)::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

/// Answers what needs no application object; -1 when the workbench is to start.
int answerAtOnce(const Core::CommandLine &commandLine)
{
    switch (commandLine.request) {
    case Core::CommandLine::Request::Help:
        return reply(Core::CommandLine::help());
    case Core::CommandLine::Request::Version:
        return reply(QStringLiteral("extpoint-workbench " EXTPOINT_VERSION "\n"));
    case Core::CommandLine::Request::Refuse:
        complain(commandLine.error);
        std::fputs(qPrintable(Core::CommandLine::usage()), stderr);
        return UsageError;
    case Core::CommandLine::Request::Start:
        break;
    }
    return -1;
}

/// Whether a few more files can be opened. Without them libraries that the toolkit loads end the process on the spot.
bool hasFreeDescriptors()
{
    constexpr int wanted = 32;
    std::array<int, wanted> opened {};
    int count = 0;
    for (; count < wanted; ++count) {
        opened[size_t(count)] = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
        if (opened[size_t(count)] < 0)
            break;
    }
    // Where there is no such stream, nothing is known.
    const bool known = count > 0 || errno != EBADF;
    for (int i = 0; i < count; ++i)
        ::close(opened[size_t(i)]);
    return count == wanted || !known;
}

/// Saving shows no window, so that it works where there is no display to show it on.
void useNoDisplayIfPossible(const Core::CommandLine &commandLine)
{
    const bool hasDisplay = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (commandLine.save && !hasDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

/// Takes out of a list of directories in the environment, in which Qt looks for its own plug-ins, those that are only
/// meant relative to where the program was started, and the place itself: whoever opens a file that came from somewhere
/// else must not run the code that came with it.
void forgetCurrentDirectory(const char *variable)
{
    const QStringList given = QFile::decodeName(qgetenv(variable)).split(QDir::listSeparator());
    const QString current = QDir(QDir::currentPath()).canonicalPath();
    QStringList kept;
    for (const QString &directory : given) {
        const QString place = QDir(directory).canonicalPath();
        if (QDir::isAbsolutePath(directory) && place != current)
            kept.append(directory);
    }
    if (kept.isEmpty())
        qunsetenv(variable);
    else
        qputenv(variable, QFile::encodeName(kept.join(QDir::listSeparator())));
}

QStringList pluginPaths(const Core::CommandLine &commandLine)
{
    if (!commandLine.pluginPaths.isEmpty())
        return commandLine.pluginPaths;
    return { QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/../lib/extpoint/plugins")) };
}

/// The manager has logged what is wrong with the plug-ins that it found, but knows of no directory that is missing.
void tellMissingDirectories(const QStringList &paths)
{
    for (const QString &path : paths)
        if (!QDir(path).exists())
            complain((Utils::isMisencoded(path) ? QStringLiteral("%1: the name is not in the encoding of the system")
                                                : QStringLiteral("%1: no such directory"))
                         .arg(path));
}

/// A line for every plug-in that was not loaded.
QString problems(const ExtensionSystem::PluginManager &manager)
{
    QStringList lines;
    const auto plugins = manager.plugins();
    for (const ExtensionSystem::PluginInfo &plugin : plugins)
        if (plugin.hasError())
            lines.append(QStringLiteral("%1: %2").arg(plugin.filePath, plugin.errorString));
    return lines.join(QLatin1Char('\n'));
}

bool isRunning(const ExtensionSystem::PluginManager &manager, const QString &name)
{
    const auto plugins = manager.plugins();
    for (const ExtensionSystem::PluginInfo &plugin : plugins)
        if (plugin.metaData.name == name && plugin.state == ExtensionSystem::PluginInfo::Running)
            return true;
    return false;
}

/// By this the desktop finds the icon and the name that the package installed; elsewhere the window brings its own
/// icon, once it is there: drawing it takes longer than all else that a window waits for.
void showIdentity()
{
    const QString id = QStringLiteral("org.extpoint.Workbench");
    QGuiApplication::setDesktopFileName(id);
    QTimer::singleShot(0, qApp,
        [id] { QGuiApplication::setWindowIcon(QIcon::fromTheme(id, QIcon(QStringLiteral(":/workbench/icon.svg")))); });
}

/// Without the plug-in "Core" there is no window that could tell.
int giveUp(const Core::CommandLine &commandLine, const QStringList &paths, const QString &reasons)
{
    const QString text = QStringLiteral("The plug-in \"Core\" could not be loaded.");
    complain(text);
    if (!commandLine.isJob()) {
        QMessageBox box(QMessageBox::Critical, QStringLiteral("ExtPoint Workbench"), text, QMessageBox::Close);
        box.setTextFormat(Qt::PlainText);
        box.setInformativeText(
            QStringLiteral("Looked for plug-ins in %1\n%2").arg(paths.join(QLatin1String(", ")), reasons));
        box.exec();
    }
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    // Writing beyond a limit of the file size is to fail like writing to a full disk, not to end the process.
    std::signal(SIGXFSZ, SIG_IGN);
    Workbench::endWhenOutOfMemory();
    // Nor is it to end with unsaved changes because nobody reads its messages any more.
    std::signal(SIGPIPE, SIG_IGN);
    occupyClosedStreams();
    const QStringList arguments = Core::CommandLine::withoutToolkits(argumentsOf(argc, argv));
    const Core::CommandLine commandLine = Core::CommandLine::parse(arguments);
    const int answer = answerAtOnce(commandLine);
    if (answer >= 0)
        return answer;
    if (!hasFreeDescriptors()) {
        complain(QStringLiteral("Too few files may be open at once (see \"ulimit -n\")."));
        return EXIT_FAILURE;
    }
    useNoDisplayIfPossible(commandLine);
    forgetCurrentDirectory("QT_PLUGIN_PATH");
    forgetCurrentDirectory("QT_QPA_PLATFORM_PLUGIN_PATH");

    Workbench::setUpLogging(commandLine.verbose);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    Workbench::scaleAsChosen();
    QCoreApplication::setOrganizationName(QStringLiteral("ExtPoint"));
    QCoreApplication::setApplicationName(QStringLiteral("extpoint-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(EXTPOINT_VERSION));
    QApplication application(argc, argv);
    if (!Workbench::useLanguage(commandLine.language)) {
        complain(QStringLiteral("there is no language %1, but %2")
                     .arg(commandLine.language, Workbench::languages().join(QLatin1String(", "))));
        return UsageError;
    }

    if (!commandLine.isJob())
        showIdentity();

    ExtensionSystem::PluginManager manager;
    const QStringList paths = pluginPaths(commandLine);
    manager.setPluginPaths(paths);
    manager.loadPlugins(arguments);
    tellMissingDirectories(paths);
    if (!isRunning(manager, QStringLiteral("Core")))
        return giveUp(commandLine, paths, problems(manager));
    const int code = QApplication::exec();
    manager.shutdown();
    // A thread that waits for a network which has gone would keep the process for ever.
    if (!QThreadPool::globalInstance()->waitForDone(LongestWaitForThreads)) {
        std::fflush(nullptr);
        ::_exit(code);
    }
    return code;
}

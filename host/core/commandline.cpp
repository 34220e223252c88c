#include "core/commandline.h"

#include <QCommandLineParser>

#include <cerrno>
#include <cstdio>

namespace Core {

namespace {

constexpr int MostFiles = 20;

/// Why a command line that consists of known options is no good; empty when it is.
QString whyRefused(const CommandLine &line, const QStringList &files, const QStringList &values, const QString &page)
{
    if (values.contains(QString()))
        return QStringLiteral("an option has an empty value");
    if (files.contains(QString()))
        return QStringLiteral("the file name is empty");
    if (files.size() > (line.isJob() ? 1 : MostFiles))
        return QStringLiteral("too many files: %1").arg(files.at(line.isJob() ? 1 : MostFiles));
    if (!page.isEmpty() && line.page == CommandLine::Page::Unchanged)
        return QStringLiteral("unknown page %1").arg(page);
    if (line.request != CommandLine::Request::Start)
        return QString();
    if (line.force && !line.save)
        return QStringLiteral("--force needs --save");
    if (line.files.isEmpty() && (line.save || line.timings))
        return QStringLiteral("%1 needs a file").arg(QLatin1String(line.save ? "--save" : "--timings"));
    return QString();
}

} // namespace

QStringList CommandLine::withoutToolkits(const QStringList &arguments)
{
    // As the documentation of QGuiApplication and QApplication lists them.
    static const QStringList flags { QStringLiteral("-reverse"), QStringLiteral("-sync"), QStringLiteral("-nograb"),
        QStringLiteral("-dograb") };
    static const QStringList withValue { QStringLiteral("-style"), QStringLiteral("-stylesheet"),
        QStringLiteral("-platform"), QStringLiteral("-platformpluginpath"), QStringLiteral("-platformtheme"),
        QStringLiteral("-plugin"), QStringLiteral("-qwindowgeometry"), QStringLiteral("-qwindowicon"),
        QStringLiteral("-qwindowtitle"), QStringLiteral("-session"), QStringLiteral("-display"),
        QStringLiteral("-geometry") };
    QStringList left;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--"))
            return left + arguments.mid(i);
        // It takes two dashes for one.
        const QString option = argument.startsWith(QLatin1String("--")) ? argument.mid(1) : argument;
        if (withValue.contains(option))
            ++i;
        else if (!flags.contains(option) && !withValue.contains(option.section(QLatin1Char('='), 0, 0)))
            left.append(argument);
    }
    return left;
}

CommandLine CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    for (const char *flag : { "help", "version", "save", "force", "timings", "dark", "verbose" })
        parser.addOption(QCommandLineOption(QString::fromLatin1(flag)));
    const QCommandLineOption page(QStringLiteral("page"), QString(), QStringLiteral("page"));
    const QCommandLineOption pluginPath(QStringLiteral("plugin-path"), QString(), QStringLiteral("directory"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"), QString(), QStringLiteral("file"));
    const QCommandLineOption language(QStringLiteral("language"), QString(), QStringLiteral("code"));
    parser.addOptions({ page, pluginPath, screenshot, language });
    const bool understood = parser.parse(QStringList(QString()) + arguments);

    CommandLine result;
    const auto isSet = [&parser](const char *name) { return parser.isSet(QString::fromLatin1(name)); };
    if (isSet("help"))
        result.request = Request::Help;
    else if (isSet("version"))
        result.request = Request::Version;
    const QStringList files = parser.positionalArguments();
    for (const QString &file : files.mid(0, MostFiles))
        result.files.append(FileTarget::of(file, &result.error));
    result.pluginPaths = parser.values(pluginPath);
    result.screenshot = parser.value(screenshot);
    result.language = parser.value(language);
    if (parser.value(page) == QLatin1String("definition"))
        result.page = Page::Definition;
    else if (parser.value(page) == QLatin1String("realization"))
        result.page = Page::Realization;
    result.save = isSet("save");
    result.force = isSet("force");
    result.timings = isSet("timings");
    result.dark = isSet("dark");
    result.verbose = isSet("verbose");

    const QStringList values
        = parser.values(page) + parser.values(pluginPath) + parser.values(screenshot) + parser.values(language);
    const QString refusal = understood ? whyRefused(result, files, values, parser.value(page)) : parser.errorText();
    if (!refusal.isEmpty())
        result.error = refusal;
    if (!result.error.isEmpty())
        result.request = Request::Refuse;
    return result;
}

QString CommandLine::usage()
{
    return QStringLiteral("Usage: extpoint-workbench [OPTION...] [FILE[:LINE[:COLUMN]]...]\n");
}

QString CommandLine::help()
{
    return usage()
        + QStringLiteral(
            "Edit the extension points that a plug-in declares and the data it gives to those of others.\n"
            "FILE is the \"extension.xml\" in the plug-in's directory. Each one has a window of its own; where "
            "another\n"
            "process of the user's has it open already, that window comes forward. With LINE, what stands there in "
            "the\n"
            "file is shown first.\n"
            "\n"
            "  --page definition|realization  show this page first\n"
            "  --plugin-path DIR              load plug-ins of the workbench from DIR (may be repeated);\n"
            "                                 the default is ../lib/extpoint/plugins, seen from the program\n"
            "  --language CODE                speak this language, not that of the system: de, zh_CN, en\n"
            "  --dark                         use a dark palette\n"
            "  --verbose                      log everything, with time and category\n"
            "  --help                         print this text\n"
            "  --version                      print the version\n"
            "Options of the toolkit, -style, -reverse or -stylesheet for instance, are passed on.\n"
            "\n"
            "These do one thing once the neighbouring plug-ins have been read, and quit; FILE may be open in a window\n"
            "meanwhile. The exit code is 0 when it worked, 1 when not, and 2 when the options make no sense:\n"
            "  --screenshot PNG               write a picture of the window\n"
            "  --save                         save FILE through the editor; needs no display; prints what that "
            "changes\n"
            "                                 beside, and does not save but exits with 3 where the marks of "
            "translatable\n"
            "                                 texts or a whole part of the file would be lost\n"
            "  --force                        with --save: save all the same\n"
            "  --timings                      print one JSON object: open_ms, scan_ms, longest_stall_ms, rss_mb\n");
}

QString printAnswer(const QByteArray &text)
{
    if (std::fputs(text.constData(), stdout) >= 0 && std::fflush(stdout) == 0)
        return QString();
    return QStringLiteral("the standard output can't be written: %1").arg(qt_error_string(errno));
}

} // namespace Core

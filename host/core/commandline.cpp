#include "core/commandline.h"

#include <cerrno>
#include <cstdio>

namespace Core {

namespace {

/// One command line while it is read.
class Reader
{
public:
    explicit Reader(const QStringList &arguments) : m_arguments(arguments) { }

    CommandLine read()
    {
        bool optionsEnded = false;
        while (m_next < m_arguments.size() && m_result.request != CommandLine::Request::Refuse) {
            const QString argument = m_arguments.at(m_next++);
            if (!optionsEnded && argument == QLatin1String("--"))
                optionsEnded = true;
            else if (!optionsEnded && argument.startsWith(QLatin1Char('-')) && argument.size() > 1)
                readOption(argument);
            else if (argument.isEmpty())
                refuse(QStringLiteral("the file name is empty"));
            else if (m_result.file.isEmpty())
                m_result.file = argument;
            else
                refuse(QStringLiteral("more than one file: %1").arg(argument));
        }
        checkCombination();
        return m_result;
    }

private:
    void refuse(const QString &error)
    {
        m_result.request = CommandLine::Request::Refuse;
        m_result.error = error;
    }

    void readOption(const QString &argument)
    {
        const int equals = argument.indexOf(QLatin1Char('='));
        const QString name = argument.left(equals);
        if (name == QLatin1String("--plugin-path"))
            m_result.pluginPaths.append(value(name, argument, equals));
        else if (name == QLatin1String("--screenshot"))
            m_result.screenshot = value(name, argument, equals);
        else if (name == QLatin1String("--page"))
            readPage(value(name, argument, equals));
        else if (equals >= 0 || !readSwitch(name))
            refuse(QStringLiteral("unknown option %1").arg(argument));
    }

    QString value(const QString &name, const QString &argument, int equals)
    {
        QString result;
        if (equals >= 0)
            result = argument.mid(equals + 1);
        else if (m_next < m_arguments.size())
            result = m_arguments.at(m_next++);
        if (result.isEmpty())
            refuse(QStringLiteral("option %1 needs a value").arg(name));
        return result;
    }

    void readPage(const QString &page)
    {
        if (page == QLatin1String("definition"))
            m_result.page = CommandLine::Page::Definition;
        else if (page == QLatin1String("realization"))
            m_result.page = CommandLine::Page::Realization;
        else if (m_result.request != CommandLine::Request::Refuse)
            refuse(QStringLiteral("unknown page %1").arg(page));
    }

    bool readSwitch(const QString &name)
    {
        if (name == QLatin1String("--help"))
            m_result.request = CommandLine::Request::Help;
        else if (name == QLatin1String("--version"))
            m_result.request = CommandLine::Request::Version;
        else if (name == QLatin1String("--save"))
            m_result.save = true;
        else if (name == QLatin1String("--force"))
            m_result.force = true;
        else if (name == QLatin1String("--timings"))
            m_result.timings = true;
        else if (name == QLatin1String("--dark"))
            m_result.dark = true;
        else if (name == QLatin1String("--verbose"))
            m_result.verbose = true;
        else
            return false;
        return true;
    }

    void checkCombination()
    {
        if (m_result.request != CommandLine::Request::Start)
            return;
        if (m_result.force && !m_result.save)
            refuse(QStringLiteral("--force needs --save"));
        if (!m_result.file.isEmpty())
            return;
        if (m_result.save || m_result.timings)
            refuse(QStringLiteral("%1 needs a file")
                       .arg(m_result.save ? QStringLiteral("--save") : QStringLiteral("--timings")));
    }

    const QStringList &m_arguments;
    CommandLine m_result;
    int m_next = 0;
};

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    return Reader(arguments).read();
}

QString CommandLine::usage()
{
    return QStringLiteral("Usage: extpoint-workbench [OPTION...] [FILE]\n");
}

QString CommandLine::help()
{
    return usage()
        + QStringLiteral(
            "Edit the extension points that a plug-in declares and the data it gives to those of others.\n"
            "FILE is the \"extension.xml\" in the plug-in's directory.\n"
            "\n"
            "  --page definition|realization  show this page first\n"
            "  --plugin-path DIR              load plug-ins of the workbench from DIR (may be repeated);\n"
            "                                 the default is ../lib/extpoint/plugins, seen from the program\n"
            "  --dark                         use a dark palette\n"
            "  --verbose                      log everything, with time and category\n"
            "  --help                         print this text\n"
            "  --version                      print the version\n"
            "\n"
            "These do one thing once the neighbouring plug-ins have been read, and quit; the exit code is 0 when it\n"
            "worked and 1 when not:\n"
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

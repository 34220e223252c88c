#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Result
{
    int code = -1;
    QString output;
    QString error;
};

} // namespace

/// Runs the real program, with a plug-in of the tests for files "*.fake".
class tst_Workbench : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void answersWithoutDisplay_data();
    void answersWithoutDisplay();
    void misencodedName_data();
    void misencodedName();
    void outputNobodyTakes_data();
    void outputNobodyTakes();
    void settingsThatAreNoFile();
    void brokenPlugins();
    void withoutCore();
    void screenshot();
    void timings();
    void noPluginFromTheCurrentDirectory_data();
    void noPluginFromTheCurrentDirectory();
    void noQtPluginFromTheCurrentDirectory_data();
    void noQtPluginFromTheCurrentDirectory();

private:
    /// \a wrapper is a command that runs the one after it. In the directory m_current, where that is not empty.
    Result run(const QStringList &arguments, const QStringList &wrapper = {});
    QStringList withPlugins(const QStringList &arguments) const;
    QString makeFile(const QString &name, const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_dir;
    QProcessEnvironment m_environment;
    QString m_current;
};

void tst_Workbench::init()
{
    m_current.clear();
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(::chmod(QFile::encodeName(m_dir->path()).constData(), 0755) == 0);
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir->filePath(QStringLiteral("config")));
    // An environment as bare as they come: no display, no locale.
    for (const char *name : { "DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "LC_ALL", "LC_CTYPE", "LANG" })
        m_environment.remove(QString::fromLatin1(name));
}

Result tst_Workbench::run(const QStringList &arguments, const QStringList &wrapper)
{
    QStringList all
        = wrapper + QStringList { QStringLiteral(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench") } + arguments;
    const QString program = all.takeFirst();
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(m_current);
    process.start(program, all);
    Result result;
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.code = process.exitCode();
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.error = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QStringList tst_Workbench::withPlugins(const QStringList &arguments) const
{
    return QStringList { QStringLiteral("--plugin-path=" EXTPOINT_BINARY_DIR "/lib/extpoint/plugins"),
        QStringLiteral("--plugin-path=" EXTPOINT_BINARY_DIR "/tests/fakeplugins") }
    + arguments;
}

QString tst_Workbench::makeFile(const QString &name, const QByteArray &content)
{
    const QString path = m_dir->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(path));
    return path;
}

void tst_Workbench::answersWithoutDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *line, int code, const char *output, const char *error) {
        QTest::newRow(line) << QString::fromLatin1(line).split(QLatin1Char(' ')) << code << QString::fromLatin1(output)
                            << QString::fromLatin1(error);
    };
    row("--help", 0, "Usage: extpoint-workbench [OPTION...] [FILE]\n", "");
    row("--version", 0, "extpoint-workbench 4.0.2\n", "");
    row("--nope", 2, "", "extpoint-workbench: Unknown option 'nope'.\nUsage: extpoint-workbench [OPTION...] [FILE]\n");
}

void tst_Workbench::answersWithoutDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QString, output);
    QFETCH(QString, error);
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    const Result result = run(arguments);
    QCOMPARE(result.code, code);
    QCOMPARE(result.output.left(output.isEmpty() ? -1 : output.size()), output);
    QCOMPARE(result.error, error);
}

void tst_Workbench::misencodedName_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("error");

    const QString file
        = QStringLiteral("The name of the file, or of a directory above it, is not in the encoding of the system.\n");
    const auto row = [](const char *name, const char *command, int code, const QString &error) {
        QTest::newRow(name) << QString::fromLatin1(command) << code << error;
    };
    row("directory, in the C locale", "LC_ALL=C \"$@\" --save \"$PWD/$d/a.fake\"", 1, file);
    row("file", "cp a.fake \"$d.fake\" && \"$@\" --save \"$d.fake\"", 1, file);
    row("directory of plug-ins", "\"$@\" --plugin-path \"$d\" --save a.fake", 0,
        QStringLiteral(": the name is not in the encoding of the system\n"));
    row("picture", "\"$@\" --screenshot \"$d.png\" a.fake", 1,
        QStringLiteral(" is not in the encoding of the system\n"));
}

void tst_Workbench::misencodedName()
{
    QFETCH(QString, command);
    QFETCH(int, code);
    QFETCH(QString, error);
    makeFile(QStringLiteral("a.fake"), "<fake/>");
    const QString script
        = QStringLiteral("cd \"$0\" && d=$(printf 'd\\351') && mkdir \"$d\" && cp a.fake \"$d\" && ") + command;
    const Result result = run(withPlugins({}), { QStringLiteral("sh"), QStringLiteral("-c"), script, m_dir->path() });
    // What Qt can't name it can't remove either.
    QCOMPARE(QProcess::execute(QStringLiteral("rm"), { QStringLiteral("-r"), m_dir->path() }), 0);
    QVERIFY2(result.error.endsWith(error) && result.error.count(QLatin1Char('\n')) == 1, qPrintable(result.error));
    QCOMPARE(result.code, code);
}

void tst_Workbench::outputNobodyTakes_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("error");

    const QString full = QStringLiteral("the standard output can't be written: No space left on device\n");
    for (const char *option : { "--help", "--version", "--timings a.fake" })
        QTest::newRow(option) << QStringLiteral("\"$@\" %1 > /dev/full").arg(QString::fromLatin1(option)) << 1 << full;
    // Its number is not to be that of another file.
    QTest::newRow("closed") << QStringLiteral("\"$@\" --timings a.fake >&-") << 1
                            << QStringLiteral("the standard output can't be written: Bad file descriptor\n");
    // A pipe that had a reader when it was opened.
    QTest::newRow("messages") << QStringLiteral(
        "mkfifo pipe && exec 3<> pipe && exec 2> pipe 3<&- && \"$@\" --save a.fake")
                              << 0 << QString();
}

void tst_Workbench::outputNobodyTakes()
{
    QFETCH(QString, command);
    QFETCH(int, code);
    QFETCH(QString, error);
    // Saving it comes with a warning.
    makeFile(QStringLiteral("a.fake"), R"(<fake save="instruction"/>)");
    m_current = m_dir->path();
    const Result result
        = run(withPlugins({}), { QStringLiteral("sh"), QStringLiteral("-c"), command, QStringLiteral("sh") });
    QVERIFY2(result.error.endsWith(error), qPrintable(result.error));
    QCOMPARE(result.code, code);
}

void tst_Workbench::settingsThatAreNoFile()
{
    const QString path = m_dir->filePath(QStringLiteral("config/ExtPoint/extpoint-workbench.conf"));
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench"),
        withPlugins({ makeFile(QStringLiteral("a.fake"), "<fake/>") }));
    QString error;
    const auto told = [&] { return error += QString::fromUtf8(process.readAllStandardError()); };
    QTRY_COMPARE_WITH_TIMEOUT(told(), path + QStringLiteral(": not a regular file, so no settings are kept\n"), 20'000);
    process.kill();
    QVERIFY(process.waitForFinished(20'000));
}

void tst_Workbench::brokenPlugins()
{
    const QString path = makeFile(QStringLiteral("a.fake"), "<fake/>");
    const QString missing = m_dir->filePath(QStringLiteral("no\nwhere"));
    QFile intact(QStringLiteral(EXTPOINT_BINARY_DIR "/tests/fakeplugins/libFakePlugin.so"));
    QVERIFY(intact.open(QIODevice::ReadOnly));
    QString damaged = makeFile(QStringLiteral("libdam\naged.so"), intact.read(2000));
    const Result result = run(withPlugins({ QStringLiteral("--plugin-path"), missing, QStringLiteral("--plugin-path"),
        m_dir->path(), QStringLiteral("--save"), path }));
    QCOMPARE(result.code, 0);
    const QStringList lines = result.error.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    const QLatin1Char inPlace('?');
    damaged.replace(QLatin1Char('\n'), inPlace);
    QVERIFY2(lines.at(0).startsWith(damaged + QLatin1String(": ")), qPrintable(lines.at(0)));
    QCOMPARE(lines.at(1),
        QStringLiteral("extpoint-workbench: %1: no such directory")
            .arg(QString(missing).replace(QLatin1Char('\n'), inPlace)));
}

void tst_Workbench::withoutCore()
{
    const QString path = makeFile(QStringLiteral("a.fake"), "<fake/>");
    const Result result = run({ QStringLiteral("--plugin-path"), m_dir->path(), QStringLiteral("--save"), path });
    QCOMPARE(result.code, 1);
    QCOMPARE(result.error, QStringLiteral("extpoint-workbench: The plug-in \"Core\" could not be loaded.\n"));
}

void tst_Workbench::screenshot()
{
    const QString path = makeFile(QStringLiteral("a.fake"), R"(<fake busy="200"/>)");
    QImage first;
    QImage second;
    for (const char *page : { "definition", "realization" }) {
        const QString picture = m_dir->filePath(QString::fromLatin1(page));
        const Result result = run(withPlugins(
            { QStringLiteral("--page"), QString::fromLatin1(page), QStringLiteral("--screenshot"), picture, path }));
        QCOMPARE(result.error, QString());
        QCOMPARE(result.code, 0);
        (first.isNull() ? first : second) = QImage(picture, "PNG");
    }
    QVERIFY(!first.isNull());
    // The screen of the offscreen platform is smaller than the window would like to be.
    QVERIFY2(first.width() >= 780 && first.height() >= 580, qPrintable(QString::number(first.width())));
    QVERIFY(first.size() == second.size());
    QVERIFY(first != second);
}

void tst_Workbench::timings()
{
    const QString path = makeFile(QStringLiteral("a.fake"), R"(<fake busy="300"/>)");
    const Result result = run(withPlugins({ QStringLiteral("--timings"), path }));
    QCOMPARE(result.code, 0);
    const QJsonObject figures = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QStringList keys = figures.keys();
    QCOMPARE(keys,
        (QStringList { QStringLiteral("longest_stall_ms"), QStringLiteral("open_ms"), QStringLiteral("rss_mb"),
            QStringLiteral("scan_ms") }));
    QVERIFY(figures.value(QLatin1String("open_ms")).toDouble() > 0);
    // The work began while the file was opened.
    QVERIFY(
        figures.value(QLatin1String("open_ms")).toDouble() + figures.value(QLatin1String("scan_ms")).toDouble() > 280);
    QVERIFY(figures.value(QLatin1String("longest_stall_ms")).toDouble() >= 1);
    const double resident = figures.value(QLatin1String("rss_mb")).toDouble();
    QVERIFY2(resident > 10 && resident < 4000, qPrintable(QString::number(resident)));
    // A run that is a job leaves no settings behind.
    QVERIFY(!QDir(m_dir->filePath(QStringLiteral("config/ExtPoint"))).exists());
}

void tst_Workbench::noPluginFromTheCurrentDirectory_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("given");

    const QString none;
    QTest::newRow("by itself") << none << none << false;
    QTest::newRow("Qt told to look there") << QStringLiteral("QT_PLUGIN_PATH") << QStringLiteral(".") << false;
    QTest::newRow("the loader told to look there") << QStringLiteral("LD_LIBRARY_PATH") << QStringLiteral(".") << false;
    QTest::newRow("the program told to look there") << none << none << true;
}

void tst_Workbench::noPluginFromTheCurrentDirectory()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    QFETCH(bool, given);
    m_current = m_dir->filePath(QStringLiteral("current"));
    QVERIFY(QDir().mkdir(m_current));
    for (const char *place : { "", "plugins", "lib/extpoint/plugins" }) {
        const QDir directory(m_current + QLatin1Char('/') + QString::fromLatin1(place));
        QVERIFY(QDir().mkpath(directory.path()));
        QVERIFY(QFile::copy(QStringLiteral(EXTPOINT_BINARY_DIR "/tests/fakeplugins/libFakePlugin.so"),
            directory.filePath(QStringLiteral("libFakePlugin.so"))));
    }
    if (!variable.isEmpty())
        m_environment.insert(variable, value);
    QStringList arguments { QStringLiteral("--plugin-path=" EXTPOINT_BINARY_DIR "/lib/extpoint/plugins") };
    if (given)
        arguments.append(QStringLiteral("--plugin-path=."));
    // The copy has lost the way to what it links.
    m_environment.insert(QStringLiteral("LD_LIBRARY_PATH"),
        QStringLiteral(EXTPOINT_BINARY_DIR "/lib/extpoint:" EXTPOINT_BINARY_DIR "/lib/extpoint/plugins:")
            + m_environment.value(QStringLiteral("LD_LIBRARY_PATH")));
    const QString file = makeFile(QStringLiteral("current/a.fake"), "<fake/>");
    const Result result = run(arguments + QStringList { QStringLiteral("--save"), file });
    QCOMPARE(result.code, given ? 0 : 1);
    QCOMPARE(result.error.contains(QLatin1String("No plug-in edits files of this kind")), !given);
}

void tst_Workbench::noQtPluginFromTheCurrentDirectory_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("loaded");

    const auto row = [](const char *name, const char *variable, const char *value, bool loaded) {
        QTest::newRow(name) << QString::fromLatin1(variable) << QString::fromLatin1(value) << loaded;
    };
    // That one shows that the library is one that Qt would load.
    row("a given place", "QT_PLUGIN_PATH", "%elsewhere", true);
    row("unset", "", "", false);
    row("an empty part", "QT_PLUGIN_PATH", ":/usr", false);
    row("a dot, beside a given place", "QT_PLUGIN_PATH", "/usr:.", false);
    row("by its own name in a roundabout way", "QT_PLUGIN_PATH", "%current/../current/", false);
    row("the platforms' own variable", "QT_QPA_PLATFORM_PLUGIN_PATH", "platforms", false);
}

void tst_Workbench::noQtPluginFromTheCurrentDirectory()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    m_current = m_dir->filePath(QStringLiteral("current"));
    const QString elsewhere = m_dir->filePath(QStringLiteral("elsewhere"));
    for (const QString &place : { m_current, elsewhere }) {
        QVERIFY(QDir().mkpath(place + QStringLiteral("/platforms")));
        QVERIFY(QFile::copy(QStringLiteral(EXTPOINT_BINARY_DIR "/tests/intruders/libIntruder.so"),
            place + QStringLiteral("/platforms/libintruder.so")));
    }
    value.replace(QLatin1String("%current"), m_current).replace(QLatin1String("%elsewhere"), elsewhere);
    if (!variable.isEmpty())
        m_environment.insert(variable, value);
    const QString mark = m_dir->filePath(QStringLiteral("mark"));
    m_environment.insert(QStringLiteral("INTRUDER_MARK"), mark);
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("intruder;offscreen"));
    const QString file = makeFile(QStringLiteral("a.fake"), "<fake/>");
    QCOMPARE(run(withPlugins({ QStringLiteral("--save"), file })).code, 0);
    QTEST(QFile::exists(mark), "loaded");
}

QTEST_GUILESS_MAIN(tst_Workbench)
#include "tst_workbench.moc"

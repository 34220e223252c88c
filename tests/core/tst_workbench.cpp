#include "files.h"

#include <QDir>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
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

const QString plugins = s("--plugin-path=" EXTPOINT_BINARY_DIR "/lib/extpoint/plugins");
const QString fakePlugin = s(EXTPOINT_BINARY_DIR "/tests/fakeplugins/libFakePlugin.so");

} // namespace

/// Runs the real program, with a plug-in of the tests for files "*.fake".
class tst_Workbench : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void answers_data();
    void answers();
    void papersAgree();
    void settingsThatAreNoFile();
    void brokenPlugins();
    void screenshot();
    void timings();

private:
    void start(QProcess *process, const QString &program, const QStringList &arguments) const;
    Result run(const QStringList &arguments, const QString &program = s(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench"));
    QStringList withPlugins(const QStringList &arguments) const
    {
        return QStringList { plugins, s("--plugin-path=") + QFileInfo(fakePlugin).path() } + arguments;
    }
    QString makeFile(const QString &name, const QByteArray &content = "<fake/>");

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
    m_environment.insert(s("QT_QPA_PLATFORM"), s("offscreen"));
    m_environment.insert(s("XDG_CONFIG_HOME"), m_dir->filePath(s("config")));
    // An environment as bare as they come: no display, no locale.
    for (const char *name : { "DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "LC_ALL", "LC_CTYPE", "LANG" })
        m_environment.remove(s(name));
}

void tst_Workbench::start(QProcess *process, const QString &program, const QStringList &arguments) const
{
    process->setProcessEnvironment(m_environment);
    process->setWorkingDirectory(m_current);
    process->start(program, arguments);
}

Result tst_Workbench::run(const QStringList &arguments, const QString &program)
{
    QProcess process;
    start(&process, program, arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError()) };
}

QString tst_Workbench::makeFile(const QString &name, const QByteArray &content)
{
    writeFile(m_dir->filePath(name), content);
    return m_dir->filePath(name);
}

void tst_Workbench::answers_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error");

    // $w is the program, "$@" the program with its plug-ins, $d a directory whose name is not in any encoding, $copied
    // puts a plug-in wherever one might be looked for.
    const auto row = [](const char *name, const char *command, int code, const char *error, const char *output = "") {
        QTest::newRow(name) << s(command) << code << s(output) << s(error);
    };
    const char *const usage = "Usage: extpoint-workbench [OPTION...] [FILE[:LINE[:COLUMN]]...]\n";
    row("help without a display", "QT_QPA_PLATFORM=xcb $w --help", 0, "", usage);
    row("version without a display", "QT_QPA_PLATFORM=xcb $w --version", 0, "", "extpoint-workbench 4.0.2\n");
    row("unknown option", "QT_QPA_PLATFORM=xcb $w --nope", 2,
        "extpoint-workbench: Unknown option 'nope'.\nUsage: extpoint-workbench [OPTION...] "
        "[FILE[:LINE[:COLUMN]]...]\n");
    row("without the core", "$w --plugin-path . --save a.fake", 1,
        "extpoint-workbench: The plug-in \"Core\" could not be loaded.\n");

    const char *const file
        = "The name of the file, or of a directory above it, is not in the encoding of the system.\n";
    row("misencoded directory, in the C locale", "LC_ALL=C \"$@\" --save \"$PWD/$d/a.fake\"", 1, file);
    row("misencoded file", "cp a.fake \"$d.fake\" && \"$@\" --save \"$d.fake\"", 1, file);
    row("misencoded directory of plug-ins", "\"$@\" --plugin-path \"$d\" --save a.fake", 0,
        ": the name is not in the encoding of the system\n");
    row("misencoded picture", "\"$@\" --screenshot \"$d.png\" a.fake", 1, " is not in the encoding of the system\n");

    const char *const german = "Die Datei gibt es nicht.\n";
    row("asked for in German", "\"$@\" --language de --save gone.fake", 1, german);
    row("German by the locale", "LC_ALL=de_AT.UTF-8 \"$@\" --save gone.fake", 1, german);
    row("English first, then German", "LC_ALL=en_GB.UTF-8 LANGUAGE=en:de \"$@\" --save gone.fake", 1,
        "The file does not exist.\n");
    row("no such language", "\"$@\" --language xx --save a.fake", 2,
        "extpoint-workbench: there is no language xx, but en, de, zh_CN\n");
    row("options of the toolkit", "\"$@\" -style fusion -reverse --save a.fake", 0, "");

    const char *const full = "the standard output can't be written: No space left on device\n";
    row("help that nobody takes", "$w --help > /dev/full", 1, full);
    row("version that nobody takes", "$w --version > /dev/full", 1, full);
    row("figures that nobody takes", "\"$@\" --timings a.fake > /dev/full", 1, full);
    // Its number is not to be that of another file.
    row("closed output", "\"$@\" --timings a.fake >&-", 1,
        "the standard output can't be written: Bad file descriptor\n");
    // A pipe that had a reader when it was opened.
    row("messages that nobody takes", "mkfifo pipe && exec 3<> pipe && exec 2> pipe 3<&- && \"$@\" --save warns.fake",
        0, "");
    // No plug-in comes from the current directory but where the program was told to look there.
    const char *const none = "No plug-in edits files of this kind (text/plain).\n";
    row("plug-in here", "eval $copied && $w $core --save a.fake", 1, none);
    row("plug-in here, Qt told", "eval $copied && QT_PLUGIN_PATH=. $w $core --save a.fake", 1, none);
    row("plug-in here, the loader told", "eval $copied && LD_LIBRARY_PATH=$LD_LIBRARY_PATH:. $w $core --save a.fake", 1,
        none);
    row("plug-in here, the program told", "eval $copied && $w $core --plugin-path=. --save a.fake", 0, "");
    // Nor one of Qt's, which would leave a mark; the first row shows that it is one that Qt would load.
    const auto intrusion = [&row](const char *name, const char *variable, const char *test = "test ! -e mark") {
        const QString command = s("mkdir -p platforms elsewhere/platforms && cp $intruder platforms && "
                                  "cp $intruder elsewhere/platforms && export INTRUDER_MARK=$PWD/mark && "
                                  "%1 QT_QPA_PLATFORM='intruder;offscreen' \"$@\" --save a.fake 2> /dev/null && %2");
        row(name, qPrintable(command.arg(s(variable), s(test))), 0, "");
    };
    intrusion("Qt's plug-in in a given place", "QT_PLUGIN_PATH=$PWD/elsewhere", "test -e mark");
    intrusion("Qt's plug-in here, unset", "");
    intrusion("Qt's plug-in here, an empty part", "QT_PLUGIN_PATH=:/usr");
    intrusion("Qt's plug-in here, a dot beside a given place", "QT_PLUGIN_PATH=/usr:.");
    intrusion("Qt's plug-in here, named in a roundabout way", "QT_PLUGIN_PATH=$PWD/../${PWD##*/}/");
    intrusion("Qt's plug-in here, the platforms' own variable", "QT_QPA_PLATFORM_PLUGIN_PATH=platforms");
}

void tst_Workbench::answers()
{
    QFETCH(QString, command);
    QFETCH(int, code);
    QFETCH(QString, output);
    QFETCH(QString, error);
    makeFile(s("a.fake"));
    makeFile(s("warns.fake"), R"(<fake save="instruction"/>)");
    m_current = m_dir->path();
    m_environment.insert(s("core"), plugins);
    m_environment.insert(s("intruder"), s(EXTPOINT_BINARY_DIR "/tests/intruders/libIntruder.so"));
    // The copies have lost the way to what they link.
    m_environment.insert(s("copied"),
        s("export LD_LIBRARY_PATH=%1/libraries:%1/plugins:$LD_LIBRARY_PATH && mkdir -p plugins lib/extpoint/plugins && "
          "cp %2 . "
          "&& "
          "cp %2 plugins && cp %2 lib/extpoint/plugins")
            .arg(s(EXTPOINT_BINARY_DIR "/lib/extpoint"), fakePlugin));
    const QString prepared = s("w=\"$1\" && d=$(printf 'd\\351') && mkdir \"$d\" && cp a.fake \"$d\" && ") + command;
    const Result result = run(
        QStringList { s("-c"), prepared, s("sh"), s(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench") } + withPlugins({}),
        s("/bin/sh"));
    // What Qt can't name it can't remove either.
    QCOMPARE(QProcess::execute(s("rm"), { s("-r"), m_dir->path() }), 0);
    QVERIFY2(result.error.right(error.size()) == error
            && result.error.count(QLatin1Char('\n')) == error.count(QLatin1Char('\n')),
        qPrintable(result.error));
    QCOMPARE(result.output.left(output.isEmpty() ? -1 : output.size()), output);
    QCOMPARE(result.code, code);
}

/// The manual page has the options of --help with the same names for their values, and every list of changes begins
/// with the version that is built.
void tst_Workbench::papersAgree()
{
    const auto all = [](const QString &text, const char *pattern) {
        QStringList found;
        for (auto match = QRegularExpression(s(pattern), QRegularExpression::MultilineOption).globalMatch(text);
             match.hasNext();) {
            const QRegularExpressionMatch one = match.next();
            found.append(one.captured(1) + s(" ") + one.captured(2).toLower().remove(QLatin1Char(' ')));
        }
        found.sort();
        return found;
    };
    const auto paper
        = [](const char *path) { return QString::fromUtf8(contentOf(s(EXTPOINT_SOURCE_DIR "/") + s(path))); };
    const QStringList options = all(run({ s("--help") }).output, "^  --([a-z-]+) ?([A-Za-z|]*)  ");
    QVERIFY(options.size() > 8);
    QCOMPARE(
        all(paper("packaging/extpoint-workbench.1").replace(s(" Ar "), s(" ")), "^\\.It Fl -([a-z-]+) ?([a-z| ]*)$"),
        options);
    const QString version = run({ s("--version") }).output.section(QLatin1Char(' '), 1).trimmed();
    QVERIFY(paper("packaging/changelog").startsWith(s("extpoint-workbench (%1)").arg(version)));
    QCOMPARE(all(paper("CHANGELOG.md"), "^## \\[?([0-9.]+)").value(0).trimmed(), version);
}

void tst_Workbench::settingsThatAreNoFile()
{
    const QString path = m_dir->filePath(s("config/ExtPoint/extpoint-workbench.conf"));
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QProcess process;
    start(&process, s(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench"), withPlugins({ makeFile(s("a.fake")) }));
    QString error;
    const auto told = [&] { return error += QString::fromUtf8(process.readAllStandardError()); };
    QTRY_COMPARE_WITH_TIMEOUT(told(), path + s(": not a regular file, so no settings are kept\n"), 20'000);
    process.kill();
    QVERIFY(process.waitForFinished(20'000));
}

void tst_Workbench::brokenPlugins()
{
    QString missing = m_dir->filePath(s("no\nwhere"));
    QString damaged = makeFile(s("libdam\naged.so"), contentOf(fakePlugin).left(2000));
    const Result result = run(withPlugins(
        { s("--plugin-path"), missing, s("--plugin-path"), m_dir->path(), s("--save"), makeFile(s("a.fake")) }));
    QCOMPARE(result.code, 0);
    const QStringList lines = result.error.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    const QLatin1Char inPlace('?');
    damaged.replace(QLatin1Char('\n'), inPlace);
    missing.replace(QLatin1Char('\n'), inPlace);
    QVERIFY2(lines.at(0).startsWith(damaged + s(": ")), qPrintable(lines.at(0)));
    QCOMPARE(lines.at(1), s("extpoint-workbench: %1: no such directory").arg(missing));
}

void tst_Workbench::screenshot()
{
    const QString path = makeFile(s("a.fake"), R"(<fake busy="200"/>)");
    QImage first;
    QImage second;
    for (const char *page : { "definition", "realization" }) {
        const QString picture = m_dir->filePath(s(page));
        const Result result = run(withPlugins({ s("--page"), s(page), s("--screenshot"), picture, path }));
        QCOMPARE(result.error, QString());
        QCOMPARE(result.code, 0);
        (first.isNull() ? first : second) = QImage(picture, "PNG");
    }
    QVERIFY(!first.isNull());
    // The screen of the offscreen platform is smaller than the window would like to be.
    QVERIFY2(first.width() >= 750 && first.height() >= 520, qPrintable(QString::number(first.width())));
    QVERIFY(first.size() == second.size());
    QVERIFY(first != second);
}

void tst_Workbench::timings()
{
    const QString path = makeFile(s("a.fake"), R"(<fake busy="300"/>)");
    const Result result = run(withPlugins({ s("--timings"), path }));
    QCOMPARE(result.code, 0);
    const QJsonObject figures = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(figures.keys(), (QStringList { s("longest_stall_ms"), s("open_ms"), s("rss_mb"), s("scan_ms") }));
    QVERIFY(figures.value(s("open_ms")).toDouble() > 0);
    // The work began while the file was opened.
    QVERIFY(figures.value(s("open_ms")).toDouble() + figures.value(s("scan_ms")).toDouble() > 280);
    QVERIFY(figures.value(s("longest_stall_ms")).toDouble() >= 1);
    const double resident = figures.value(s("rss_mb")).toDouble();
    QVERIFY2(resident > 10 && resident < 4000, qPrintable(QString::number(resident)));
    // A run that is a job leaves no settings behind.
    QVERIFY(!QDir(m_dir->filePath(s("config/ExtPoint"))).exists());
}

QTEST_GUILESS_MAIN(tst_Workbench)
#include "tst_workbench.moc"

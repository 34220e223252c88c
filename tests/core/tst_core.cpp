#include "core/commandline.h"
#include "core/logcollector.h"
#include "core/recentfiles.h"
#include "files.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using Core::CommandLine;
using Core::LogCollector;

namespace {
QStringList passedOn;

void remember(QtMsgType, const QMessageLogContext &, const QString &text)
{
    passedOn.append(text);
}
} // namespace

class tst_Core : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QDir::setCurrent(QDir::rootPath()); }
    void logLines();
    void commandLine_data();
    void commandLine();
    void recentFiles();
};

void tst_Core::logLines()
{
    passedOn.clear();
    const QtMessageHandler before = qInstallMessageHandler(remember);
    QStringList about;
    QStringList own;
    {
        const LogCollector outer;
        LogCollector log;
        qWarning("first");
        qDebug("no warning");
        qCritical("/a/b.xml:3: second");
        std::thread([] { qWarning("/a/c.xml: of a thread"); }).join();
        own = log.linesAbout(s("/d"));
        about = log.linesAbout(s("/a/b.xml")) + log.linesAbout(s("/a/c.xml"));
        log.discard(about);
    }
    qWarning("afterwards");
    qInstallMessageHandler(before);
    QCOMPARE(own, (QStringList { s("first"), s("/a/b.xml:3: second") }));
    QCOMPARE(about, (QStringList { s("/a/b.xml:3: second"), s("/a/c.xml: of a thread") }));
    QCOMPARE(passedOn, (QStringList { s("no warning"), s("first"), s("afterwards") }));
}

void tst_Core::commandLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *line, const char *expected) { QTest::newRow(line) << s(line) << s(expected); };
    row("", "");
    row("a.xml", "file=a.xml");
    row("a.xml b.xml:3 c.xml:3:14 d.xml:3:14:", "file=a.xml file=b.xml@3,0 file=c.xml@3,14 file=d.xml@3,14");
    row("a.xml: a.xml:3a a.xml:-3 :3 3", "file=a.xml: file=a.xml:3a file=a.xml:-3 file=:3 file=3");
    // The directory holds files of the names "there:12" and "there:12:3".
    row("there:12 there:12:3 there:12:4 there:13", "file=there:12 file=there:12:3 file=there:12@4,0 file=there@13,0");
    row("-- --save", "file=--save");
    row("--page=realization a.xml", "file=a.xml realization");
    row("--plugin-path p --plugin-path=q=r", "paths=p,q=r");
    row("--screenshot s.png", "job screenshot=s.png");
    row("--save a.xml --timings", "job file=a.xml save timings");
    row("--help", "help");

    row("--nope", "Unknown option 'nope'.");
    row("--save=yes a.xml", "Unexpected value after '--save'.");
    row("--page", "Missing value after '--page'.");
    row("--screenshot= a.xml", "an option has an empty value");
    row("--page third", "unknown page third");
    row("--force a.xml", "--force needs --save");
    row("--save a.xml b.xml", "too many files: b.xml");
    row("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21", "too many files: 21");
    row("a.xml:0", "a.xml:0: there is no line or column 0");
    row("a.xml:1:0", "a.xml:1:0: there is no line or column 0");
    row("a.xml:99999999999", "a.xml:99999999999: there is no line or column 99999999999");
    row("--save", "--save needs a file");
}

void tst_Core::commandLine()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    QVERIFY(QDir::setCurrent(dir.path()));
    writeFile(s("there:12"), {});
    writeFile(s("there:12:3"), {});
    const CommandLine parsed = CommandLine::parse(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (parsed.request == CommandLine::Request::Refuse) {
        QCOMPARE(parsed.error, expected);
        return;
    }
    QStringList words;
    const auto add = [&words](bool condition, const char *word) {
        if (condition)
            words.append(s(word));
    };
    add(parsed.request == CommandLine::Request::Help, "help");
    add(parsed.isJob(), "job");
    for (const Core::FileTarget &file : parsed.files) {
        words.append(
            s("file=") + file.path + (file.line > 0 ? s("@%1,%2").arg(file.line).arg(file.column) : QString()));
        QString error;
        const Core::FileTarget again = Core::FileTarget::of(file.toArgument(), &error);
        QVERIFY(again.path == file.path && again.line == file.line && again.column == file.column);
    }
    if (!parsed.pluginPaths.isEmpty())
        words.append(s("paths=") + parsed.pluginPaths.join(QLatin1Char(',')));
    if (!parsed.screenshot.isEmpty())
        words.append(s("screenshot=") + parsed.screenshot);
    add(parsed.page == CommandLine::Page::Realization, "realization");
    add(parsed.save, "save");
    add(parsed.timings, "timings");
    QCOMPARE(parsed.error, QString());
    QCOMPARE(words.join(QLatin1Char(' ')), expected);
}

void tst_Core::recentFiles()
{
    QTemporaryDir dir;
    const QString store = dir.filePath(s("settings.ini"));
    QStringList paths;
    for (int i = 0; i < Core::RecentFiles::Limit + 2; ++i) {
        paths.append(dir.filePath(s("%1.fake").arg(i)));
        writeFile(paths.last(), {});
    }
    QSettings settings(store, QSettings::IniFormat);
    Core::RecentFiles recent(settings);
    for (const QString &path : qAsConst(paths))
        recent.add(path);
    QCOMPARE(recent.files().size(), Core::RecentFiles::Limit);
    recent.add(paths.at(5));
    QCOMPARE(recent.files().first(), paths.at(5));
    QCOMPARE(recent.files().count(paths.at(5)), 1);
    QVERIFY(QFile::remove(paths.at(5)));
    QCOMPARE(recent.files().first(), paths.last());

    // Another window of the same user sees them a moment later, and adds one; what was added by a window that is closed
    // at once is not lost.
    QSettings others(store, QSettings::IniFormat);
    QTRY_COMPARE(Core::RecentFiles(others).files(), recent.files());
    Core::RecentFiles(others).add(paths.first());
    QCOMPARE(recent.files().first(), paths.first());
    recent.clear();
    QVERIFY(recent.files().isEmpty());
}

QTEST_MAIN(tst_Core)
#include "tst_core.moc"

#include "core/commandline.h"
#include "core/logcollector.h"
#include "core/recentfiles.h"
#include "files.h"

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
    row("--help a.xml b.xml", "more than one file: b.xml");
    row("a.xml b.xml", "more than one file: b.xml");
    row("--save", "--save needs a file");
}

void tst_Core::commandLine()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
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
    if (!parsed.file.isEmpty())
        words.append(s("file=") + parsed.file);
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

#include "core/commandline.h"
#include "core/fileclaims.h"
#include "core/logcollector.h"
#include "core/logdock.h"
#include "core/recentfiles.h"
#include "files.h"

#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMap>
#include <QPlainTextEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <future>
#include <list>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using Core::CommandLine;
using Core::FileClaims;
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
    void logDock();
    void claims_data();
    void claims();
    void claimedAtOnce();
    void claimOfAKilledProcess();
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
    row("--language de", "language=de");
    row("-style fusion --reverse a.xml -qwindowgeometry=9x9 -session a_b -- -style", "file=a.xml file=-style");

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
    const CommandLine parsed
        = CommandLine::parse(CommandLine::withoutToolkits(line.split(QLatin1Char(' '), Qt::SkipEmptyParts)));
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
    if (!parsed.language.isEmpty())
        words.append(s("language=") + parsed.language);
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

/// The last lines of all threads but what was told in a message, in their order and to be copied with the keys; whoever
/// listened before still gets them.
void tst_Core::logDock()
{
    constexpr int MostLines = 2000;
    passedOn.clear();
    const QtMessageHandler before = qInstallMessageHandler(remember);
    QStringList expected;
    QString copied;
    QString shown;
    {
        Core::LogDock dock(nullptr);
        auto *lines = dock.findChild<QPlainTextEdit *>(s("logLines"));
        const auto text = [lines] { return lines->toPlainText().remove(QRegularExpression(s("(?m)^[\\d:]{8}  "))); };
        {
            LogCollector opening;
            qWarning("/d/a.xml:3:1: told in a message");
            qCritical("/d/b.xml:4:1: not well-formed");
            opening.discard(opening.linesAbout(s("/d/a.xml")));
        }
        qDebug("debug");
        qInfo("info");
        std::thread([] { qWarning("of a thread"); }).join();
        expected = QStringList { s("/d/b.xml:4:1: not well-formed"), s("debug"), s("info"), s("of a thread") };
        QTRY_COMPARE(text(), expected.join(QLatin1Char('\n')));
        for (const int count : { 5, 3 * MostLines, 7 }) {
            for (int i = 0; i < count; ++i) {
                expected.append(s("line %1 of %2").arg(i).arg(count));
                qInfo("%s", qPrintable(expected.last()));
            }
            QTRY_COMPARE(
                text(), QStringList(expected.mid(qMax(0, expected.size() - MostLines))).join(QLatin1Char('\n')));
        }
        QTest::keyClick(lines, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(lines, Qt::Key_C, Qt::ControlModifier);
        copied = QGuiApplication::clipboard()->text();
        shown = lines->toPlainText();
    }
    qInfo("afterwards");
    qInstallMessageHandler(before);
    QCOMPARE(copied, shown);
    QCOMPARE(passedOn, expected + QStringList(s("afterwards")));
}

namespace {

using Answer = FileClaims::Answer;

/// Claims a file on a thread of its own, and answers there once it is told to.
class Claimant final
{
public:
    Claimant(const QString &directory, const QString &file, const std::function<void()> &waitForStart,
        std::shared_future<void> answer)
        : m_thread([=] {
              QEventLoop loop;
              FileClaims claims(directory);
              QObject::connect(&claims, &FileClaims::asked, &claims,
                  [this](const Core::FileTarget &target, const QByteArray &token) {
                      asked.append(target.toArgument() + QString::fromLatin1(token));
                  });
              waitForStart();
              m_outcome.set_value(claims.claim({ file, 0, 0 }, "x"));
              answer.wait();
              while (!m_ends)
                  loop.processEvents();
          })
    { }
    ~Claimant() { end(); }
    Claimant(const Claimant &) = delete;
    Claimant &operator=(const Claimant &) = delete;

    Answer outcome() { return m_outcome.get_future().get(); }
    void end()
    {
        m_ends = true;
        if (m_thread.joinable())
            m_thread.join();
    }

    QStringList asked; ///< To be read when it has ended.

private:
    std::promise<Answer> m_outcome;
    std::atomic_bool m_ends = false;
    std::thread m_thread;
};

std::shared_future<void> atOnce()
{
    std::promise<void> done;
    done.set_value();
    return done.get_future().share();
}

} // namespace

void tst_Core::claims_data()
{
    QTest::addColumn<QString>("prepare"); ///< In a shell, once "dir/a" has been claimed.
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isSame");
    const auto row = [](const char *title, const char *prepare, const char *name, bool isSame) {
        QTest::newRow(title) << s(prepare) << s(name) << isSame;
    };
    row("the same name", "", "dir/a", true);
    row("a roundabout name", "", "dir/../dir/./a", true);
    row("a link to the file", "ln -s a dir/link", "dir/link", true);
    row("a link to the directory", "ln -s dir other", "other/a", true);
    row("a hard link", "ln dir/a b", "b", true);
    row("replaced, as a save does", "echo > new; mv new dir/a; ln dir/a b", "b", true);
    row("gone", "rm dir/a; ln -s dir other", "other/a", true);
    row("gone, another name", "rm dir/a", "dir/b", false);
    row("another file of the name", "mkdir other; echo > other/a", "other/a", false);
    row("renamed, and a new one there", "mv dir/a b; echo > dir/a", "b", false);
}

void tst_Core::claims()
{
    QFETCH(QString, prepare);
    QFETCH(QString, name);
    QFETCH(bool, isSame);
    const QTemporaryDir dir;
    QVERIFY(QDir::setCurrent(dir.path()));
    const QString place = dir.filePath(s("a/directory/that is ") + QString(80, QLatin1Char('x')) + s("/claims"));
    QVERIFY(QDir().mkdir(s("dir")));
    writeFile(s("dir/a"), {});
    std::promise<void> answer;
    Claimant owner(
        place, s("dir/a"), [] {}, answer.get_future().share());
    QCOMPARE(owner.outcome(), Answer::Free);
    QCOMPARE(QProcess::execute(s("/bin/sh"), { s("-c"), prepare }), 0);
    FileClaims claims(place);
    const Core::FileTarget target { name, 12, 3 };
    // A file that takes its time to open is waited for.
    const std::chrono::milliseconds time(prepare.isEmpty() ? 1300 : 0);
    std::thread later([&answer, time] {
        std::this_thread::sleep_for(time);
        answer.set_value();
    });
    const Answer answered = claims.ask(target, "token");
    later.join();
    QCOMPARE(answered, isSame ? Answer::Taken : Answer::Free);
    QCOMPARE(claims.claim(target, "again"), answered);
    owner.end();
    QCOMPARE(claims.claim(target, {}), Answer::Free);
    const QString asked = QFileInfo(name).absoluteFilePath() + s(":12:3");
    QCOMPARE(owner.asked, isSame ? QStringList({ asked + s("token"), asked + s("again") }) : QStringList());
}

/// Of those that claim a file at the same moment one has it, and tells the others.
void tst_Core::claimedAtOnce()
{
    constexpr int Claimants = 4;
    const QTemporaryDir dir;
    for (int round = 0; round < 100; ++round) {
        // Not asleep meanwhile: they would wake up one after the other.
        std::atomic_int ready = 0;
        const auto wait = [&ready] {
            for (++ready; ready < Claimants;)
                std::this_thread::yield();
        };
        std::list<Claimant> claimants;
        for (int i = 0; i < Claimants; ++i)
            claimants.emplace_back(dir.filePath(s("claims")), dir.filePath(s("a")), wait, atOnce());
        QMap<Answer, int> answers;
        for (Claimant &claimant : claimants)
            ++answers[claimant.outcome()];
        QCOMPARE(answers, (QMap<Answer, int> { { Answer::Free, 1 }, { Answer::Taken, Claimants - 1 } }));
    }
    // Nothing is left behind.
    QCOMPARE(QDir(dir.filePath(s("claims"))).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
        QStringList(s("lock")));
}

void tst_Core::claimOfAKilledProcess()
{
    const QTemporaryDir dir;
    const Core::FileTarget file { dir.filePath(s("a")), 0, 0 };
    FileClaims claims(dir.filePath(s("claims")));
    std::array<int, 2> ends = {};
    QCOMPARE(::pipe(ends.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        FileClaims held(dir.filePath(s("claims")));
        held.hold(file.path);
        QCoreApplication::processEvents();
        (void)!::write(ends[1], "x", 1);
        ::pause();
    }
    char done = 0;
    QCOMPARE(::read(ends[0], &done, 1), ssize_t(1));
    ::close(ends[0]);
    ::close(ends[1]);
    // It does not take its requests.
    QElapsedTimer waiting;
    waiting.start();
    QCOMPARE(claims.ask(file, {}), Answer::Silent);
    QVERIFY2(waiting.elapsed() < 3000, QByteArray::number(waiting.elapsed()).constData());
    // One more that is silent changes nothing, and both answer for themselves.
    QCOMPARE(claims.claim(file, {}), Answer::Silent);
    QCOMPARE(::kill(child, SIGKILL), 0);
    QCOMPARE(::waitpid(child, nullptr, 0), child);
    claims.release();
    QCOMPARE(claims.claim(file, {}), Answer::Free);
    QCOMPARE(QDir(dir.filePath(s("claims"))).entryList({ s("*.claim") }).size(), 1);
}

QTEST_MAIN(tst_Core)
#include "tst_core.moc"

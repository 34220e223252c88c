#include "core/commandline.h"
#include "core/context.h"
#include "core/fakeeditor.h"
#include "core/fileiconprovider.h"
#include "core/filestamp.h"
#include "core/id.h"
#include "core/logcollector.h"
#include "core/recentfiles.h"
#include "core/workbenchstyle.h"

#include <QDateTime>
#include <QFileInfo>
#include <QGroupBox>
#include <QPainter>
#include <QSettings>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <thread>
#include <vector>

using Core::CommandLine;
using Core::Context;
using Core::Id;
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
    void ids();
    void contexts();
    void documentPath();
    void iconOverlay_data();
    void iconOverlay();
    void style();
    void logLines();
    void logNested();
    void logFromThreads();
    void commandLine_data();
    void commandLine();
    void commandLineRefused_data();
    void commandLineRefused();
    void recentFiles();
    void fileStamps();
};

void tst_Core::ids()
{
    const Id a("Some.Name");
    QCOMPARE(a, Id(QByteArray("Some.Name").constData()));
    QCOMPARE(a, Id::fromString(QStringLiteral("Some.Name")));
    QVERIFY(a != Id("some.name"));
    QCOMPARE(a.toString(), QStringLiteral("Some.Name"));
    QCOMPARE(qHash(a), qHash(Id("Some.Name")));
    QVERIFY(a.isValid());
    for (const Id &none : { Id(), Id(""), Id(nullptr) }) {
        QVERIFY(!none.isValid());
        QCOMPARE(none, Id());
        QVERIFY(none.name().isEmpty());
    }
    // Whoever asks first, every thread gets the same number for a name.
    std::vector<std::vector<Id>> seen(4);
    std::vector<std::thread> threads;
    for (auto &own : seen)
        threads.emplace_back([&own] {
            for (int i = 0; i < 500; ++i)
                own.push_back(Id::fromName("Thread." + QByteArray::number(i)));
        });
    for (std::thread &thread : threads)
        thread.join();
    for (const auto &own : seen)
        QVERIFY(own == seen.front());
    QCOMPARE(seen.front().at(123).name(), QByteArray("Thread.123"));
}

void tst_Core::contexts()
{
    Context context(Id("A"));
    context.add(Id("B"));
    context.add(Id("A"));
    context.add(Id());
    QCOMPARE(context.ids(), (QList<Id> { Id("A"), Id("B") }));
    QVERIFY(context.contains(Id("B")));
    QVERIFY(!context.contains(Id("C")));
}

void tst_Core::documentPath()
{
    FakeEditor editor(true);
    FakeDocument *document = editor.document();
    const QSignalSpy paths(document, &Core::IDocument::filePathChanged);
    const auto path = Utils::FileName::fromString(QStringLiteral("/some/where.fake"));
    document->setFilePath(path);
    document->setFilePath(path);
    QCOMPARE(paths.count(), 1);
    QCOMPARE(document->displayName(), QStringLiteral("where.fake"));
    QVERIFY(!document->isFileReadOnly());
}

void tst_Core::iconOverlay_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QColor>("corner");

    const QColor none(0, 0, 0, 0);
    QTest::newRow("the whole name") << "extension.xml" << QColor(Qt::red);
    QTest::newRow("after a dot") << "my.extension.xml" << QColor(Qt::red);
    QTest::newRow("longest suffix") << "a.b.xml" << QColor(Qt::green);
    QTest::newRow("no dot before it") << "myextension.xml" << QColor(Qt::blue);
    QTest::newRow("another case") << "Extension.xml" << QColor(Qt::blue);
    QTest::newRow("unreadable overlay") << "a.broken" << none;
    QTest::newRow("unknown") << "a.other" << none;
}

void tst_Core::iconOverlay()
{
    QFETCH(QString, fileName);
    QFETCH(QColor, corner);
    QTemporaryDir dir;
    const auto registerColor = [&dir](const QColor &color, const char *suffix) {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter(&image).fillRect(12, 12, 4, 4, color);
        const QString path = dir.filePath(color.name() + QLatin1String(".png"));
        QVERIFY(image.save(path));
        Core::FileIconProvider::registerIconOverlayForSuffix(path, QString::fromLatin1(suffix));
    };
    registerColor(Qt::red, "extension.xml");
    registerColor(Qt::green, "b.xml");
    registerColor(Qt::blue, "xml");
    Core::FileIconProvider::registerIconOverlayForSuffix(QStringLiteral(":/nothing.png"), QStringLiteral("broken"));

    const QIcon icon = Core::FileIconProvider::icon(QFileInfo(fileName));
    QVERIFY(!icon.isNull());
    for (const int edge : { 16, 32 }) {
        const QImage image = icon.pixmap(edge, edge).toImage();
        QCOMPARE(image.size(), QSize(edge, edge));
        const QColor pixel = image.pixelColor(edge - 2, edge - 2);
        if (corner.alpha() != 0)
            QCOMPARE(pixel, corner);
        else
            QVERIFY(pixel != QColor(Qt::red) && pixel != QColor(Qt::green) && pixel != QColor(Qt::blue));
    }
}

void tst_Core::style()
{
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
    Core::WorkbenchStyle ours(QStyleFactory::create(QStringLiteral("Fusion")));
    for (const auto which : { QStyle::SP_ToolBarHorizontalExtensionButton, QStyle::SP_LineEditClearButton })
        QCOMPARE(ours.standardIcon(which).pixmap(16).toImage(), plain->standardIcon(which).pixmap(16).toImage());

    // The frame of a group box stands where Fusion has it: the lines of the middle column that are not plain ground.
    QVector<QVector<int>> frames;
    for (QStyle *style : { plain.get(), static_cast<QStyle *>(&ours) }) {
        QGroupBox box(QStringLiteral("T"));
        box.setStyle(style);
        box.resize(200, 120);
        const QImage image = box.grab().toImage();
        QVector<int> lines;
        for (int y = 0; y + 1 < image.height(); ++y)
            if (qAbs(qGray(image.pixel(100, y)) - qGray(image.pixel(100, y + 1))) > 3)
                lines.append(y);
        QVERIFY(!lines.isEmpty());
        frames.append({ lines.first(), lines.last() });
    }
    QVERIFY(qAbs(frames[0][0] - frames[1][0]) <= 1 && qAbs(frames[0][1] - frames[1][1]) <= 1);
}

void tst_Core::logLines()
{
    passedOn.clear();
    const QtMessageHandler before = qInstallMessageHandler(remember);
    QStringList lines;
    QStringList about;
    {
        LogCollector log;
        qWarning("first");
        qDebug("no warning");
        qCritical("/a/b.xml:3: second");
        lines = log.lines();
        about = log.linesAbout(QStringLiteral("/a/b.xml"));
        QCOMPARE(log.linesAbout(QStringLiteral("/c")), lines);
        log.discard(about);
    }
    qWarning("afterwards");
    qInstallMessageHandler(before);
    QCOMPARE(lines, (QStringList { QStringLiteral("first"), QStringLiteral("/a/b.xml:3: second") }));
    QCOMPARE(about, QStringList { QStringLiteral("/a/b.xml:3: second") });
    QCOMPARE(passedOn,
        (QStringList { QStringLiteral("no warning"), QStringLiteral("first"), QStringLiteral("afterwards") }));
}

void tst_Core::logNested()
{
    passedOn.clear();
    const QtMessageHandler before = qInstallMessageHandler(remember);
    QStringList inner;
    QStringList outer;
    {
        LogCollector outerLog;
        qWarning("one");
        {
            LogCollector innerLog;
            qWarning("two");
            qWarning("three");
            inner = innerLog.lines();
            innerLog.discard({ QStringLiteral("three") });
        }
        outer = outerLog.lines();
    }
    qInstallMessageHandler(before);
    QCOMPARE(inner, (QStringList { QStringLiteral("two"), QStringLiteral("three") }));
    QCOMPARE(outer, (QStringList { QStringLiteral("one"), QStringLiteral("two") }));
    QCOMPARE(passedOn, outer);
}

void tst_Core::logFromThreads()
{
    passedOn.clear();
    const QtMessageHandler before = qInstallMessageHandler(remember);
    QStringList lines;
    {
        LogCollector log;
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([] {
                for (int i = 0; i < 250; ++i)
                    qWarning("/thread: %d", i);
            });
        for (std::thread &thread : threads)
            thread.join();
        lines = log.lines();
        QVERIFY(log.linesAbout(QStringLiteral("/another")).isEmpty());
        QCOMPARE(log.linesAbout(QStringLiteral("/thread")).size(), 1000);
    }
    qInstallMessageHandler(before);
    QCOMPARE(lines.size(), 1000);
    QCOMPARE(lines.count(QStringLiteral("/thread: 249")), 4);
    QCOMPARE(passedOn, lines);
}

void tst_Core::commandLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(expected);
    };
    row("", "");
    row("a.xml", "file=a.xml");
    row("-- --save", "file=--save");
    row("-", "file=-");
    row("a.xml --page definition", "file=a.xml definition");
    row("--page=realization a.xml", "file=a.xml realization");
    row("--plugin-path p --plugin-path=q=r", "paths=p,q=r");
    row("--screenshot s.png", "job screenshot=s.png");
    row("--save a.xml --timings", "job file=a.xml save timings");
    row("--dark --verbose", "dark verbose");
    row("--help", "help");
    row("--version", "version");
}

void tst_Core::commandLine()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    const CommandLine parsed = CommandLine::parse(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QStringList words;
    const auto add = [&words](bool condition, const char *word) {
        if (condition)
            words.append(QString::fromLatin1(word));
    };
    add(parsed.request == CommandLine::Request::Help, "help");
    add(parsed.request == CommandLine::Request::Version, "version");
    add(parsed.isJob(), "job");
    if (!parsed.file.isEmpty())
        words.append(QStringLiteral("file=") + parsed.file);
    if (!parsed.pluginPaths.isEmpty())
        words.append(QStringLiteral("paths=") + parsed.pluginPaths.join(QLatin1Char(',')));
    if (!parsed.screenshot.isEmpty())
        words.append(QStringLiteral("screenshot=") + parsed.screenshot);
    add(parsed.page == CommandLine::Page::Definition, "definition");
    add(parsed.page == CommandLine::Page::Realization, "realization");
    add(parsed.save, "save");
    add(parsed.timings, "timings");
    add(parsed.dark, "dark");
    add(parsed.verbose, "verbose");
    QCOMPARE(parsed.error, QString());
    QCOMPARE(words.join(QLatin1Char(' ')), expected);
}

void tst_Core::commandLineRefused_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *line, const char *error) {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(error);
    };
    row("--nope", "Unknown option 'nope'.");
    row("--save=yes a.xml", "Unexpected value after '--save'.");
    row("--page", "Missing value after '--page'.");
    row("--screenshot= a.xml", "an option has an empty value");
    row("--page third", "unknown page third");
    row("--force a.xml", "--force needs --save");
    row("--help a.xml b.xml", "more than one file: b.xml");
    row("a.xml b.xml", "more than one file: b.xml");
    row("--save", "--save needs a file");
    row("--timings", "--timings needs a file");
}

void tst_Core::commandLineRefused()
{
    QFETCH(QString, line);
    QFETCH(QString, error);
    const CommandLine parsed = CommandLine::parse(line.split(QLatin1Char(' ')));
    QVERIFY(parsed.request == CommandLine::Request::Refuse);
    QCOMPARE(parsed.error, error);
}

void tst_Core::recentFiles()
{
    QTemporaryDir dir;
    const QString store = dir.filePath(QStringLiteral("settings.ini"));
    QStringList paths;
    for (int i = 0; i < Core::RecentFiles::Limit + 2; ++i) {
        paths.append(dir.filePath(QStringLiteral("%1.fake").arg(i)));
        QFile file(paths.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
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

void tst_Core::fileStamps()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a"));
    const auto write = [](const QString &name, const QByteArray &bytes) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write(bytes) == bytes.size());
    };
    QVERIFY(!Core::FileStamp::settled(path).exists);
    write(path, "one");
    Core::FileStamp stamp = Core::FileStamp::settled(path);
    // Old enough that the next write gets another time even from a clock that ticks every 10 ms.
    QVERIFY(QDateTime::currentMSecsSinceEpoch() - stamp.changed / 1'000'000 >= 10);
    QCOMPARE(stamp, Core::FileStamp::of(path));
    QCOMPARE(stamp.size, qint64(3));

    const QString link = dir.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(path, link));
    QCOMPARE(Core::FileStamp::of(link), stamp);

    const auto changedSince = [&path](const Core::FileStamp &before) { return Core::FileStamp::of(path) != before; };
    write(path, "two");
    QVERIFY(changedSince(stamp));
    stamp = Core::FileStamp::settled(path);
    write(dir.filePath(QStringLiteral("b")), "two");
    QVERIFY(QFile::remove(path) && QFile::rename(dir.filePath(QStringLiteral("b")), path));
    QVERIFY(changedSince(stamp));
    QVERIFY(QFile::remove(path));
    QVERIFY(!Core::FileStamp::of(link).exists);
}

QTEST_MAIN(tst_Core)
#include "tst_core.moc"

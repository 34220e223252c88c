#include "faulttesting.h"

#include "extensionfile/backup.h"
#include "model/announcement.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "model/taskread.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QThread>

#include <sys/stat.h>
#include <unistd.h>

using namespace FaultTesting;

// Every row is tried twice: as the file that is opened, and as the file of a sibling, which nobody asked for.

namespace {

/// "kind key=value ...", one line per node, with the control characters spelled out.
void append(const PointObject *node, int depth, QString *text)
{
    for (PointObject *child : node->children()) {
        *text += QString(depth, QLatin1Char(' ')) + child->item()->kind();
        for (const PropertyHash::Entry &entry : child->properties())
            *text += QLatin1Char(' ') + entry.key + QLatin1Char('=') + entry.value.toString();
        *text += QLatin1Char('\n');
        append(child, depth + 1, text);
    }
}

QString printed(const SourceDataManager &manager)
{
    QString text = manager.pluginId() + QLatin1Char('\n');
    append(manager.definitionRoot(), 1, &text);
    append(manager.realizationRoot(), 1, &text);
    return text;
}

/// `tips` stands in the attribute of a point, `inside` under the root.
QByteArray document(const QByteArray &tips, const QByteArray &inside = {}, const QByteArray &prolog = {})
{
    return prolog + "<Plugin id=\"p\">\n <ExtPointSet>\n  <ExtPoint id=\"a\" tips=\"" + tips + "\"/>\n </ExtPointSet>\n"
        + inside + "</Plugin>\n";
}

QByteArray nested(int depth)
{
    return document("t",
        "<ExtDataSet>" + QByteArray("<ExtData id=\"d\">").repeated(depth - 2)
            + QByteArray("</ExtData>").repeated(depth - 2) + "</ExtDataSet>");
}

QByteArray sample()
{
    return contentsOf(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins/chartdesk/extension.xml"));
}

QByteArray manyAttributes(int count)
{
    QByteArray bytes = "<Plugin id=\"p\"><ExtPointSet><ExtPoint";
    for (int i = 0; i < count; ++i)
        bytes += " a" + QByteArray::number(i) + "=\"\"";
    return bytes + "/></ExtPointSet></Plugin>";
}

QByteArray laughs()
{
    QByteArray bytes = "<!DOCTYPE Plugin [<!ENTITY e0 \"ha\">";
    for (int i = 1; i < 10; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ";";
        bytes += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    return document("&e9;", {}, bytes + "]>\n");
}

/// Where the tip of the only point of document() is to be found.
QString tip(const SourceDataManager &manager)
{
    const QList<PointObject *> sets = manager.definitionRoot()->children();
    if (sets.isEmpty() || sets.first()->children().isEmpty())
        return QStringLiteral("<no point/>");
    return sets.first()->children().first()->property(QStringLiteral("tips")).toString();
}

using Setup = std::function<void(const QString &directory)>;

struct Row
{
    Setup setup;
    enum Outcome {
        Read,
        Refused,
        Missing ///< refused, and no word lost about it
    } outcome
        = Read;
    /// "line:column" in the log, or nothing where the failure has no place.
    QByteArray place;
    /// A piece of the reason.
    QByteArray reason;
    /// What the point's "tips" is to be; nothing is asked of it when it is null.
    QString tips;
};

Setup file(const QByteArray &bytes)
{
    return [bytes](const QString &directory) { makeFile(directory + QLatin1String("/extension.xml"), bytes); };
}

} // namespace

Q_DECLARE_METATYPE(Row)

class TestFaultReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void read_data();
    void read();
    void interruptedSaveIsNamed();
    void cutAtEveryByte();

private:
    static void addFiles();
    static void addSizes();
    static void addEntities();
    static void addEncodings();
    static void addCharacters();
    static void addMarkup();

    static void addRead(const char *name, const QByteArray &bytes, const QString &tips = {});
    static void addRefused(
        const char *name, const QByteArray &bytes, const QByteArray &place, const QByteArray &reason);
};

void TestFaultReading::addRead(const char *name, const QByteArray &bytes, const QString &tips)
{
    QTest::newRow(name) << Row { file(bytes), Row::Read, {}, {}, tips };
}

void TestFaultReading::addRefused(
    const char *name, const QByteArray &bytes, const QByteArray &place, const QByteArray &reason)
{
    QTest::newRow(name) << Row { file(bytes), Row::Refused, place, reason, {} };
}

void TestFaultReading::read_data()
{
    QTest::addColumn<Row>("row");
    addFiles();
    addSizes();
    addEntities();
    addEncodings();
    addCharacters();
    addMarkup();
}

void TestFaultReading::addFiles()
{
    const auto special = [](const char *name, Row::Outcome outcome, const QByteArray &reason, const Setup &setup) {
        QTest::newRow(name) << Row { setup, outcome, {}, reason, {} };
    };
    const auto path = [](const QString &directory) { return directory + QLatin1String("/extension.xml"); };
    const QByteArray irregular = "Not a regular file";
    special("missing", Row::Missing, "No such file", [](const QString &) {});
    special("pipe", Row::Refused, irregular, [path](const QString &d) { makePipe(path(d)); });
    special("socket", Row::Refused, irregular, [path](const QString &d) { makeSocket(path(d)); });
    special("directory", Row::Refused, irregular, [path](const QString &d) { makeDirectory(path(d)); });
    special("endless device", Row::Refused, irregular, [path](const QString &d) { makeLink("/dev/zero", path(d)); });
    special("terminal", Row::Refused, irregular, [path](const QString &d) { makeLink("/dev/tty", path(d)); });
    special("dangling link", Row::Missing, "", [path](const QString &d) { makeLink("none", path(d)); });
    special(
        "link loop", Row::Refused, "symbolic links", [path](const QString &d) { makeLink("extension.xml", path(d)); });
    special("link to a file", Row::Read, "", [path](const QString &d) {
        makeFile(d + QLatin1String("/real"), document("t"));
        makeLink("real", path(d));
    });
    special("link to a pipe", Row::Refused, irregular, [path](const QString &d) {
        makePipe(d + QLatin1String("/pipe"));
        makeLink("pipe", path(d));
    });
    special("not to be read", Row::Refused, "Permission denied",
        [path](const QString &d) { makeFile(path(d), document("t"), 0); });
    special("directory not to be entered", Row::Refused, "Permission denied", [path](const QString &d) {
        makeFile(path(d), document("t"));
        setMode(d, 0600);
    });
    special("2 GB, sparse", Row::Refused, "more than",
        [path](const QString &d) { makeSparse(path(d), qint64(2) * 1024 * 1024 * 1024); });
}

void TestFaultReading::addSizes()
{
    addRefused("empty", "", "1:1", "");
    addRefused("white space", " \n\t\n ", "3:2", "");
    addRead("nested 1,000 deep", nested(1'000));
    addRefused("nested 7,000 deep", nested(7'000), "*", "nested more than");
    addRefused("nested 30,000 deep", nested(30'000), "*", "nested more than");
    addRefused("nested 200,000 deep", nested(200'000), "*", "nested more than");
    addRefused("200,000 elements begun", QByteArray("<a>").repeated(200'000), "*", "nested more than");
    addRefused("80,000 attributes on one element", manyAttributes(80'000), "1:29", "attributes");
    addRead("500 attributes on one element", manyAttributes(500));
    addRead("200,000 children of one element",
        document("t", "<ExtDataSet>" + QByteArray("<Item/>").repeated(200'000) + "</ExtDataSet>"));
    addRead("a value of 4 MB", document(QByteArray(4'000'000, 'v')));
    addRead("a name of 1 MB", document("t", "<ExtDataSet><" + QByteArray(1'000'000, 'n') + "/></ExtDataSet>"));
}

void TestFaultReading::addEntities()
{
    const auto declared = [](const QByteArray &subset, const QByteArray &tips, const QByteArray &inside = {}) {
        return document(tips, inside, "<!DOCTYPE Plugin [" + subset + "]>\n");
    };
    addRefused("billion laughs", laughs(), "*", "");
    addRefused("a 40 KB entity used 40,000 times",
        declared("<!ENTITY e \"" + QByteArray(40'000, 'x') + "\">", "t", QByteArray("<e v=\"&e;\"/>").repeated(40'000)),
        "*", "");
    addRefused("an entity within itself", declared("<!ENTITY e \"&e;\">", "&e;"), "*", "");
    addRefused("two entities within each other", declared("<!ENTITY e \"&f;\"><!ENTITY f \"&e;\">", "&e;"), "*", "");
    addRead("internal entity", declared("<!ENTITY e \"text\">", "a &e;"), QStringLiteral("a text"));
    addRead("document type without a subset", document("t", {}, "<!DOCTYPE Plugin>\n"), QStringLiteral("t"));
    addRead("document type of elsewhere", document("t", {}, "<!DOCTYPE Plugin SYSTEM \"file:///secret\">\n"),
        QStringLiteral("t"));
    addRead("document type with a subset", declared("<!ELEMENT Plugin ANY>", "t"), QStringLiteral("t"));
    addRefused("external entity in an attribute", declared("<!ENTITY e SYSTEM \"secret\">", "&e;"), "*", "");
    addRefused("external entity in text",
        declared("<!ENTITY e SYSTEM \"secret\">", "t", "<ExtDataSet>&e;</ExtDataSet>"), "6:13", "External entities");
    addRefused("external parameter entity", declared("<!ENTITY % e SYSTEM \"secret\"> %e;", "t"), "*", "");
    addRefused("entity not declared", document("&none;"), "3:3", "");
}

void TestFaultReading::addEncodings()
{
    const QString text = QString::fromUtf8("gr\xc3\xbc\xc3\x9f");
    const auto encoded = [&text](const char *codec, const char *declaration) {
        const QString whole = QLatin1String(declaration) + QString::fromUtf8(document(text.toUtf8()));
        return QTextCodec::codecForName(codec)->fromUnicode(whole);
    };
    addRead("UTF-8 with a mark", "\xef\xbb\xbf" + document(text.toUtf8()), text);
    addRead("Latin-1", encoded("ISO-8859-1", "<?xml version='1.0' encoding='ISO-8859-1'?>"), text);
    addRead("UTF-16", encoded("UTF-16", "<?xml version='1.0' encoding='UTF-16'?>"), text);
    addRead("UTF-16, not declared", encoded("UTF-16", ""), text);
    addRefused("UTF-16 cut in the middle of a character", encoded("UTF-16", "").chopped(1), "*", "");
    addRefused("UTF-8 declared as UTF-16", document("t", {}, "<?xml version='1.0' encoding='UTF-16'?>"), "*", "");
    addRefused("unknown encoding", document("t", {}, "<?xml version='1.0' encoding='x-none'?>"), "*", "");
    addRefused("bad UTF-8", document("\xff"), "3:26", "");
    addRefused("Latin-1 not declared", document("gr\xfc\xdf"), "3:28", "");
    addRefused("UTF-8 too long for its character", document("\xc0\xaf"), "3:26", "");
    addRefused("lone surrogate", document("\xed\xa0\x80"), "3:26", "");
}

void TestFaultReading::addCharacters()
{
    addRefused("NUL", document(QByteArray("a\0b", 3)), "*", "");
    addRefused("control character", document("a\x01z"), "*", "");
    addRefused("reference to NUL", document("&#0;"), "*", "");
    addRefused("reference to a control character", document("&#1;"), "*", "");
    addRefused("reference to a lone surrogate", document("&#xD800;"), "*", "");
    addRefused("reference beyond Unicode", document("&#x110000;"), "*", "");
    addRefused("no character", document("\xef\xbf\xbf"), "*", "");
    addRead("reference to a far plane", document("&#x1F600;"), QString::fromUtf8("\xf0\x9f\x98\x80"));
    addRead("CRLF in an attribute", document("a\r\nb"), QStringLiteral("a b"));
    addRead("references to line ends in an attribute", document("a&#13;&#10;b&#9;c"), QStringLiteral("a\r\nb\tc"));
    addRead("CRLF between the elements", document("t").replace("\n", "\r\n"), QStringLiteral("t"));
}

void TestFaultReading::addMarkup()
{
    addRefused("duplicate attribute", "<Plugin id=\"p\">\n <ExtPointSet a=\"1\" a=\"2\"/></Plugin>", "*", "");
    addRefused("two roots", document("t") + "<Plugin/>", "*", "");
    addRefused("text behind the root", document("t") + "x", "*", "");
    addRefused("text before the root", "x" + document("t"), "*", "");
    addRefused("the wrong end", "<Plugin><ExtPointSet></Plugin>", "*", "");
    addRefused("a name that is none", "<Plugin><1/></Plugin>", "*", "");
    addRefused("an attribute's name that is none", "<Plugin 1=\"\"/>", "1:9", "");
    addRefused("an attribute without quotes", "<Plugin id=p/>", "*", "");
    addRefused("a comment without an end", document("t", "<!-- "), "*", "");
    addRefused("the instruction alone", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n", "2:1", "");
    addRead("an unknown root", "<Anything><ExtPointSet><ExtPoint tips=\"t\"/></ExtPointSet></Anything>",
        QStringLiteral("t"));
    addRead("colons without a namespace",
        "<Plugin id=\"p\"><ExtPointSet><x:y z:w=\"1\" tips=\"t\"/></ExtPointSet></Plugin>", QStringLiteral("t"));
}

void TestFaultReading::read()
{
    QFETCH(Row, row);
    QTemporaryDir temporary;
    setMode(temporary.path(), 0755);
    const QString directory = temporary.filePath(QStringLiteral("plugin"));
    const QString path = directory + QLatin1String("/extension.xml");
    makeDirectory(directory);
    makeFile(directory + QLatin1String("/secret"), "SECRET");
    row.setup(directory);
    const QStringList names = namesIn(directory);
    for (const QString &name : names)
        giveAway(directory + QLatin1Char('/') + name);
    giveAway(directory);

    const auto looksRight = [&](bool read, const QStringList &lines) -> QString {
        if (read != (row.outcome == Row::Read))
            return QStringLiteral("read is %1: %2").arg(read).arg(lines.join(QLatin1Char('|')));
        if (row.outcome != Row::Refused)
            return lines.isEmpty() ? QString() : QStringLiteral("logged: ") + lines.join(QLatin1Char('|'));
        if (lines.size() != 1)
            return QStringLiteral("%1 lines logged").arg(lines.size());
        QString start = path + QLatin1Char(':');
        if (row.place == "*")
            start = QRegularExpression::escape(start) + QStringLiteral("[1-9][0-9]*:[1-9][0-9]*: .");
        else if (!row.place.isEmpty())
            start = QRegularExpression::escape(start + QString::fromLatin1(row.place)) + QLatin1String(": .");
        else
            start = QRegularExpression::escape(start) + QLatin1String(" [^0-9]");
        const bool rightPlace = QRegularExpression(QLatin1Char('^') + start).match(lines.first()).hasMatch();
        return rightPlace && lines.first().contains(QString::fromLatin1(row.reason)) ? QString() : lines.first();
    };

    Child asOpened;
    asOpened.act = [&]() -> QString {
        // Neither an endless device nor two gigabytes.
        const bool comparable = QFileInfo(path).isFile() && QFileInfo(path).size() < 10'000'000;
        const QByteArray before = comparable ? contentsOf(path) : QByteArray();
        SourceDataManager manager;
        const Log log;
        FaultTesting::WorkClock clock;
        clock.start();
        const bool read = manager.load(path);
        if (clock.elapsed() > patienceMs())
            return QStringLiteral("opening took %1 ms").arg(clock.elapsed());
        if (const QString wrong = looksRight(read, log.lines()); !wrong.isEmpty())
            return wrong;
        if (!read) {
            // Whatever the host does then, nothing is written over what could not be read.
            if (manager.save() || (comparable && contentsOf(path) != before))
                return QStringLiteral("it was written over");
            return {};
        }
        if (!row.tips.isNull() && tip(manager) != row.tips)
            return QStringLiteral("read as ") + tip(manager);
        const QString tree = printed(manager);
        if (tree.contains(QLatin1String("SECRET")))
            return QStringLiteral("an external entity was fetched");
        clock.start();
        if (!manager.save())
            return QStringLiteral("not saved: ") + log.lines().join(QLatin1Char('|'));
        if (clock.elapsed() > patienceMs())
            return QStringLiteral("saving took %1 ms").arg(clock.elapsed());
        const QByteArray written = contentsOf(path);
        SourceDataManager again;
        if (!again.load(path) || printed(again) != tree)
            return QStringLiteral("read otherwise after a save");
        return again.save() && contentsOf(path) == written ? QString()
                                                           : QStringLiteral("saved otherwise the second time");
    };
    asOpened.limitMs = 4 * patienceMs();

    Child asSibling;
    asSibling.act = [&]() -> QString {
        const Log log;
        PointTreeWidgetItem points { QString() };
        PointTreeWidgetItem data { QString() };
        const auto scanned = TaskRead::read(path, &points, &data, QThread::currentThread()).file;
        const bool announced = scanned && !scanned->announcements().empty();
        return looksRight(announced, log.lines());
    };

    // The sibling first: what is opened is written.
    const QString wrongSibling = asSibling.run();
    const QString wrong = asOpened.run();
    setMode(directory, 0755);
    QVERIFY2(wrongSibling.isEmpty(), qPrintable(QStringLiteral("as a sibling: ") + wrongSibling));
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("as the opened file: ") + wrong));
}

/// What an interrupted save leaves is half a file or none at all, and the backup is no use to who does not know of it.
void TestFaultReading::interruptedSaveIsNamed()
{
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.path()));
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    makeFile(path, documentOf(5'000));
    {
        ExtensionFile::Backup backup(QFile::encodeName(path));
        QString reason;
        QVERIFY2(backup.make(documentOf(9'000), &reason), qPrintable(reason));
        // Somebody is saving; it is no news that there is a backup.
        const Log log;
        QVERIFY(SourceDataManager().load(path));
        QCOMPARE(log.lines(), QStringList());
    }
    const QStringList kept = ExtensionFile::Backup::keptOf(path);
    QCOMPARE(kept.size(), 1);
    for (const int size : { 5'000, 3'000 }) {
        QVERIFY(::truncate(QFile::encodeName(path).constData(), size) == 0);
        const Log log;
        QCOMPARE(SourceDataManager().load(path), size == 5'000);
        QCOMPARE(log.lines().size(), size == 5'000 ? 1 : 2);
        QVERIFY2(log.lines().first().startsWith(path + QLatin1Char(':')) && log.lines().first().endsWith(kept.first()),
            qPrintable(log.lines().first()));
    }
}

void TestFaultReading::cutAtEveryByte()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    const QByteArray whole = sample();
    const int end = whole.lastIndexOf('>') + 1;
    QVERIFY(whole.size() > 10'000 && end > 0);
    makeFile(path, whole);
    SourceDataManager reference;
    QVERIFY(reference.load(path));
    const QString tree = printed(reference);

    SourceDataManager manager;
    QVERIFY(manager.load(path));
    const QString start = path + QLatin1Char(':');
    FaultTesting::WorkClock clock;
    for (int size = whole.size(); size >= 0; --size) {
        QVERIFY(::truncate(QFile::encodeName(path).constData(), size) == 0);
        const Log log;
        clock.start();
        const bool read = manager.load(path);
        QVERIFY2(clock.elapsed() < patienceMs(), qPrintable(QString::number(size)));
        QVERIFY2(read == (size >= end), qPrintable(QString::number(size)));
        QCOMPARE(log.lines().size(), read ? 0 : 1);
        if (read)
            continue;
        static const QRegularExpression place(QStringLiteral("^[1-9][0-9]*:[1-9][0-9]*: ."));
        QVERIFY2(log.lines().first().startsWith(start) && place.match(log.lines().first().mid(start.size())).hasMatch(),
            qPrintable(log.lines().first()));
        // What was open before is still there, and nothing half-read beside it.
        if (size % 500 == 0)
            QCOMPARE(printed(manager), tree);
    }
}

QTEST_GUILESS_MAIN(TestFaultReading)
#include "tst_fault_reading.moc"

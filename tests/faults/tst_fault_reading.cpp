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
#include <QThread>

#include <sys/stat.h>
#include <unistd.h>

using namespace FaultTesting;

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
    static void addRefused(
        const char *name, const QByteArray &bytes, const QByteArray &place, const QByteArray &reason);
};

void TestFaultReading::addRefused(
    const char *name, const QByteArray &bytes, const QByteArray &place, const QByteArray &reason)
{
    QTest::newRow(name) << Row { file(bytes), Row::Refused, place, reason };
}

void TestFaultReading::read_data()
{
    QTest::addColumn<Row>("row");
    const auto special = [](const char *name, Row::Outcome outcome, const QByteArray &reason, const Setup &setup) {
        QTest::newRow(name) << Row { setup, outcome, {}, reason };
    };
    const auto path = [](const QString &directory) { return directory + QLatin1String("/extension.xml"); };
    const QByteArray irregular = "Not a regular file";
    special("missing", Row::Missing, "No such file", [](const QString &) {});
    special("pipe", Row::Refused, irregular, [path](const QString &d) { makePipe(path(d)); });
    special("endless device", Row::Refused, irregular, [path](const QString &d) { makeLink("/dev/zero", path(d)); });
    special("dangling link", Row::Missing, "", [path](const QString &d) { makeLink("none", path(d)); });
    special("link to a file", Row::Read, "", [path](const QString &d) {
        makeFile(d + QLatin1String("/real"), document("t"));
        makeLink("real", path(d));
    });
    special("not to be read", Row::Refused, "Permission denied",
        [path](const QString &d) { makeFile(path(d), document("t"), 0); });
    special("directory not to be entered", Row::Refused, "Permission denied", [path](const QString &d) {
        makeFile(path(d), document("t"));
        setMode(d, 0600);
    });
    special("2 GB, sparse", Row::Refused, "more than",
        [path](const QString &d) { makeSparse(path(d), qint64(2) * 1024 * 1024 * 1024); });
    addRefused("nested 30,000 deep", nested(30'000), "*", "nested more than");
    addRefused("80,000 attributes on one element", manyAttributes(80'000), "1:29", "attributes");
    addRefused("billion laughs", laughs(), "*", "");
    addRefused("external entity", document("&e;", {}, "<!DOCTYPE Plugin [<!ENTITY e SYSTEM \"secret\">]>\n"), "*", "");
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

    const QString wrong = asOpened.run();
    setMode(directory, 0755);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
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

#include "faulttesting.h"

#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QTemporaryDir>
#include <QTest>

using namespace FaultTesting;

// What a user can put into the model and no file can hold: it costs itself, one line in the log, and nothing else.

namespace {

const QByteArray document = "<Plugin id=\"p\">\n"
                            "    <ExtPointSet>\n"
                            "        <ExtPoint id=\"a\" name=\"A\">\n"
                            "            <String key=\"k\"/>\n"
                            "        </ExtPoint>\n"
                            "    </ExtPointSet>\n"
                            "    <ExtDataSet>\n"
                            "        <ExtData id=\"a\" name=\"B\">\n"
                            "            <Item id=\"i\"/>\n"
                            "        </ExtData>\n"
                            "    </ExtDataSet>\n"
                            "</Plugin>\n";

struct Change
{
    /// The attribute to be set, or none.
    QString key;
    QString value;
    /// The element's new name, or none.
    QString kind;
    /// What is to be found in the file, and what not.
    QByteArray kept;
    QByteArray lost;
    /// Lines in the log.
    int lines = 1;
};

PointTreeWidgetItem *firstRecord(const SourceDataManager &manager, bool realization)
{
    const PointTreeWidgetItem *root = realization ? manager.realizationRoot() : manager.definitionRoot();
    return root->children().first()->children().first()->item();
}

} // namespace

Q_DECLARE_METATYPE(Change)

class TestFaultValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saved_data();
    void saved();
};

void TestFaultValues::saved_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("realization");

    const auto row = [](const char *name, const Change &change) {
        QTest::addRow("%s, definition", name) << change << false;
        QTest::addRow("%s, realization", name) << change << true;
    };
    const auto value = [&row](const char *name, const QString &text, const QByteArray &kept, int lines = 1) {
        row(name, { QStringLiteral("tips"), text, {}, "tips=\"" + kept + '"', {}, lines });
    };
    value("NUL in a value", QStringLiteral("a") + QChar(0) + QStringLiteral("b"), "ab");
    value("control characters in a value", QStringLiteral("a\x01\x1f\x0b") + QStringLiteral("b"), "ab");
    value("lone high surrogate in a value", QStringLiteral("a") + QChar(0xd800) + QStringLiteral("b"), "ab");
    value("lone low surrogate in a value", QStringLiteral("a") + QChar(0xdc00), "a");
    value("no character in a value", QStringLiteral("a") + QChar(0xfffe) + QChar(0xffff), "a");
    value("nothing but control characters", QStringLiteral("\x01\x02"), "");
    value("line ends in a value", QStringLiteral("a\r\nb\tc\nd"), "a&#xd;&#xa;b&#x9;c&#xa;d", 0);
    value("markup in a value", QStringLiteral("<&\">'"), "&lt;&amp;&quot;>'", 0);
    value("a long value", QString(200'000, QLatin1Char('v')), QByteArray(200'000, 'v'), 0);

    const auto key = [&row](const char *name, const QString &text, int lines = 1) {
        row(name, { text, QStringLiteral("LOST"), {}, {}, "LOST", lines });
    };
    key("an empty key", QString());
    key("a key with a blank", QStringLiteral("a b"));
    key("a key that begins with a digit", QStringLiteral("1a"));
    key("a key of markup", QStringLiteral("a=\"1\"><b c"));
    key("a key with NUL", QStringLiteral("a") + QChar(0));
    key("a key with a lone surrogate", QStringLiteral("a") + QChar(0xd800));
    key("a key called type", QStringLiteral("type"), 0);

    const auto kind = [&row](const char *name, const QString &text) { row(name, { {}, {}, text, {}, "name=", 1 }); };
    kind("an empty child type", QString(QLatin1String("")));
    kind("a child type with a blank", QStringLiteral("a b"));
    kind("a child type that begins with a digit", QStringLiteral("1"));
    kind("a child type of markup", QStringLiteral("a><b"));
    kind("a child type with a control character", QStringLiteral("a\x01"));
    kind("a child type with a lone surrogate", QStringLiteral("a") + QChar(0xdc00));
}

void TestFaultValues::saved()
{
    QFETCH(Change, change);
    QFETCH(bool, realization);
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    makeFile(path, document);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    PointTreeWidgetItem *const node = firstRecord(manager, realization);
    if (!change.key.isNull() || change.kind.isNull())
        node->setProperty(change.key, change.value);
    if (!change.kind.isNull())
        node->setKind(change.kind);

    {
        const Log log;
        QVERIFY2(manager.save(), qPrintable(log.lines().join(QLatin1Char('|'))));
        QCOMPARE(log.lines().size(), change.lines);
        for (const QString &line : log.lines())
            QVERIFY2(line.startsWith(path + QLatin1Char(':')) && !line.contains(QLatin1Char('\n')), qPrintable(line));
    }
    const QByteArray bytes = contentsOf(path);
    // The other side, the node itself and what hangs under it are all there.
    const QByteArray name = realization ? "name=\"B\"" : "name=\"A\"";
    QVERIFY(bytes.contains(realization ? "name=\"A\"" : "name=\"B\""));
    QVERIFY(bytes.contains("<String key=\"k\"/>") && bytes.contains("<Item id=\"i\"/>"));
    QCOMPARE(bytes.contains(name), change.kind.isNull());
    QVERIFY2(bytes.contains(change.kept), bytes.constData());
    QVERIFY2(change.lost.isEmpty() || change.lost == "name=" || !bytes.contains(change.lost), bytes.constData());

    SourceDataManager again;
    QVERIFY(again.load(path));
    const Log log;
    QVERIFY(again.save());
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(contentsOf(path), bytes);
}

QTEST_GUILESS_MAIN(TestFaultValues)
#include "tst_fault_values.moc"

#include "modeltesting.h"

#include "model/sourcedatamanager.h"

#include <QTest>

using ModelTesting::Product;

namespace {

/// What opening and saving makes of @p body within a root element, without the instruction and the root.
QByteArray savedBody(const Product &product, const QByteArray &body)
{
    const QString path = product.add(QStringLiteral("own"), "<Plugin id=\"own\">" + body + "</Plugin>");
    SourceDataManager manager;
    if (!manager.load(path) || !manager.save())
        return "not saved";
    QByteArray saved = Product::read(path);
    const QByteArray start = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"own\">\n";
    const QByteArray end = "</Plugin>\n";
    if (!saved.startsWith(start) || !saved.endsWith(end))
        return "unexpected frame: " + saved;
    saved = saved.mid(start.size(), saved.size() - start.size() - end.size());
    QByteArrayList lines;
    for (const QByteArray &line : saved.split('\n'))
        lines.append(line.mid(4));
    return lines.join('\n').trimmed();
}

} // namespace

class TestReadWrite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void differences_data();
    void differences();
    void translatableKeys_data();
    void translatableKeys();
    void translatableTableIsNeverCleared();
    void emptyDocument_data();
    void emptyDocument();
    void secondSaveIsIdentical_data();
    void secondSaveIsIdentical();
    void malformedFileLeavesEverything_data();
    void malformedFileLeavesEverything();
};

void TestReadWrite::differences_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char *name, const char *read, const char *written) {
        QTest::newRow(name) << QByteArray(read) << QByteArray(written);
    };
    row("foreign elements of the root are dropped", "<ExtPointSet/><Other a=\"1\"><ExtPoint/></Other>",
        "<ExtPointSet/>");
    row("root's children are compared exactly", "<extpointset/><ExtPointSet/><EXTDATASET/>", "<ExtPointSet/>");
    row("definitions come first", "<ExtDataSet/><ExtPointSet/>", "<ExtPointSet/>\n<ExtDataSet/>");
    row("every set stays", "<ExtPointSet a=\"1\"/><ExtDataSet B=\"tr('x')\"/><ExtPointSet C=\"2\"/><ExtDataSet/>",
        "<ExtPointSet a=\"1\"/>\n<ExtPointSet c=\"2\"/>\n<ExtDataSet B=\"tr('x')\"/>\n<ExtDataSet/>");
    row("definition names are lowered",
        "<ExtPointSet><ExtPoint Id=\"a\" childType=\"b|c\" HasFormat=\"true\"/></ExtPointSet>",
        "<ExtPointSet>\n    <ExtPoint id=\"a\" childtype=\"b|c\" hasformat=\"true\"/>\n</ExtPointSet>");
    row("of two letter cases the lower one wins",
        "<ExtPointSet><ExtPoint Name=\"A\" name=\"b\" NAME=\"C\"/></ExtPointSet>",
        "<ExtPointSet>\n    <ExtPoint name=\"b\"/>\n</ExtPointSet>");
    row("realization names stay", "<ExtDataSet><ExtData Id=\"a\" toolTip=\"b\"/></ExtDataSet>",
        "<ExtDataSet>\n    <ExtData Id=\"a\" toolTip=\"b\"/>\n</ExtDataSet>");
    row("definition type goes in any letter case",
        "<ExtPointSet><ExtPoint><Int type=\"a\" key=\"k\"/><Int TYPE=\"b\"/></ExtPoint></ExtPointSet>",
        "<ExtPointSet>\n    <ExtPoint>\n        <Int key=\"k\"/>\n        <Int/>\n    </ExtPoint>\n</ExtPointSet>");
    row("realization type goes as written", "<ExtDataSet><ExtData type=\"a\" Type=\"b\"/></ExtDataSet>",
        "<ExtDataSet>\n    <ExtData Type=\"b\"/>\n</ExtDataSet>");
    row("values are trimmed",
        "<ExtPointSet><ExtPoint id=\"  a b\t\"/></ExtPointSet><ExtDataSet><X id=\" c \" d=\"  \"/></ExtDataSet>",
        "<ExtPointSet>\n    <ExtPoint id=\"a b\"/>\n</ExtPointSet>\n<ExtDataSet>\n    <X id=\"c\" "
        "d=\"\"/>\n</ExtDataSet>");
    row("order of the file", "<ExtDataSet><X z=\"1\" b=\"2\" a=\"3\" y=\"4\"/></ExtDataSet>",
        "<ExtDataSet>\n    <X z=\"1\" b=\"2\" a=\"3\" y=\"4\"/>\n</ExtDataSet>");
    row("marks of translation go",
        "<ExtDataSet><X a=\"tr('Open')\" b=\"tr('A')tr('B')\" c=\"tr('half\" d=\"')x\" e=\"TR('n')\"/></ExtDataSet>",
        "<ExtDataSet>\n    <X a=\"Open\" b=\"AB\" c=\"tr('half\" d=\"')x\" e=\"TR('n')\"/>\n</ExtDataSet>");
    row("not on the definition side", "<ExtPointSet><ExtPoint name=\"tr('Open')\"/></ExtPointSet>",
        "<ExtPointSet>\n    <ExtPoint name=\"tr('Open')\"/>\n</ExtPointSet>");
    row("Meta loses its key",
        "<ExtDataSet><ExtData id=\"a\"><Meta key=\"k\" type=\"Int\" value=\"1\"/><meta "
        "key=\"k\"/></ExtData></ExtDataSet>",
        "<ExtDataSet>\n    <ExtData id=\"a\">\n        <Meta value=\"1\"/>\n        <meta key=\"k\"/>\n    "
        "</ExtData>\n</ExtDataSet>");
    row("a record's own keys stay without a format",
        "<ExtDataSet><ExtData index=\"1\" parent=\"p\" key=\"k\"/></ExtDataSet>",
        "<ExtDataSet>\n    <ExtData index=\"1\" parent=\"p\" key=\"k\"/>\n</ExtDataSet>");
    row("below a format they go, by exact kind",
        "<ExtDataSet><format target=\"t\"><ExtData index=\"1\" parent=\"p\" key=\"k\" id=\"a\"/><extdata "
        "key=\"k\"/><Menu parent=\"p\"/></format></ExtDataSet>",
        "<ExtDataSet>\n    <format target=\"t\">\n        <ExtData id=\"a\"/>\n        <extdata key=\"k\"/>\n        "
        "<Menu parent=\"p\"/>\n    </format>\n</ExtDataSet>");
    row("unknown elements within a side stay", "<ExtPointSet><Odd x=\"1\"><Deep/></Odd></ExtPointSet>",
        "<ExtPointSet>\n    <Odd x=\"1\">\n        <Deep/>\n    </Odd>\n</ExtPointSet>");
    row("text and comments go", "<ExtPointSet><!-- c --><ExtPoint>text</ExtPoint></ExtPointSet>",
        "<ExtPointSet>\n    <ExtPoint/>\n</ExtPointSet>");
    row("white space in values survives as references", "<ExtDataSet><X a=\"one&#10;two&#9;three\"/></ExtDataSet>",
        "<ExtDataSet>\n    <X a=\"one&#xa;two&#x9;three\"/>\n</ExtDataSet>");
}

void TestReadWrite::differences()
{
    QFETCH(const QByteArray, read);
    const Product product;
    QTEST(savedBody(product, read), "written");
}

void TestReadWrite::translatableKeys_data()
{
    QTest::addColumn<QByteArray>("points"); // of the opened plug-in
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QByteArrayList>("expected");
    const QByteArray declared
        = "<ExtPoint id=\"p\"><String key=\"text\" trans=\"true\"/><String key=\"tip\" trans=\"0\"/>"
          "<SubExtPoint key=\"Leaf\"><String key=\"title\" trans=\"1\"/></SubExtPoint></ExtPoint>";
    QTest::newRow("marked keys are wrapped, empty values are not")
        << declared
        << QByteArray("<ExtData id=\"p\"><P id=\"r\" text=\"Open\" tip=\"x\"/><P id=\"s\" text=\"\"/></ExtData>")
        << QByteArrayList { "text=\"tr('Open')\" tip=\"x\"", "id=\"s\" text=\"\"" };
    QTest::newRow("of a sub point, by lower-cased kind")
        << declared << QByteArray("<ExtData id=\"p\"><Leaf id=\"r\" title=\"T\"/></ExtData>")
        << QByteArrayList { "title=\"tr('T')\"" };
    QTest::newRow("point ids match without letter case")
        << declared << QByteArray("<ExtData id=\"P\"><Leaf id=\"r\" title=\"T\"/></ExtData>")
        << QByteArrayList { "title=\"tr('T')\"" };
    QTest::newRow("another plug-in's sub point of the same key does not hide the point")
        << QByteArray(declared + "<ExtPoint id=\"q\"><SubExtPoint key=\"p\"/></ExtPoint>")
        << QByteArray("<ExtData id=\"p\"><P id=\"r\" text=\"Open\"/></ExtData>")
        << QByteArrayList { "text=\"tr('Open')\"" };
    QTest::newRow("an unknown point marks nothing")
        << declared << QByteArray("<ExtData id=\"other\"><P id=\"r\" text=\"Open\"/></ExtData>")
        << QByteArrayList { "text=\"Open\"" };
    QTest::newRow("what was wrapped comes back wrapped")
        << declared << QByteArray("<ExtData id=\"p\"><P id=\"r\" text=\"tr('Open')\" tip=\"tr('Tip')\"/></ExtData>")
        << QByteArrayList { "text=\"tr('Open')\" tip=\"Tip\"" };
}

void TestReadWrite::translatableKeys()
{
    QFETCH(const QByteArray, points);
    QFETCH(const QByteArray, records);
    QFETCH(const QByteArrayList, expected);
    const Product product;
    product.add(QStringLiteral("sibling"), "<Plugin id=\"sibling\"><ExtPointSet>" + points + "</ExtPointSet></Plugin>");
    const QString path
        = product.add(QStringLiteral("own"), "<Plugin id=\"own\"><ExtDataSet>" + records + "</ExtDataSet></Plugin>");
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    manager.startScan(path);
    QVERIFY(manager.save());
    const QByteArray saved = Product::read(path);
    for (const QByteArray &part : expected)
        QVERIFY2(saved.contains(part), saved);
}

void TestReadWrite::translatableTableIsNeverCleared()
{
    const Product product;
    const QString path = product.add(QStringLiteral("own"),
        "<P id=\"own\">"
        "<ExtPointSet><ExtPoint id=\"p\"><String key=\"text\" trans=\"true\"/></ExtPoint><ExtPoint id=\"q\"><String "
        "key=\"text\" trans=\"false\"/></ExtPoint></ExtPointSet>"
        "<ExtDataSet><ExtData id=\"q\"><Q text=\"first\"/></ExtData><ExtData id=\"p\"><P "
        "text=\"second\"/></ExtData><ExtData id=\"q\"><Q text=\"third\"/></ExtData></ExtDataSet></P>");
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    manager.startScan(path);
    QVERIFY(manager.save());
    QVERIFY(Product::read(path).contains("\"first\""));
    QVERIFY(Product::read(path).contains("tr('second')"));
    QVERIFY2(Product::read(path).contains("tr('third')"), "a later point's \"false\" took the mark back");
    QVERIFY(manager.save());
    QVERIFY2(Product::read(path).contains("tr('first')"), "the second save has forgotten the first");
}

void TestReadWrite::emptyDocument_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("no sides") << QByteArray("<Plugin id=\"own\" name=\"n\"/>");
    QTest::newRow("only others") << QByteArray("<Plugin><Other/></Plugin>");
}

void TestReadWrite::emptyDocument()
{
    QFETCH(const QByteArray, file);
    const Product product;
    const QString path = product.add(QStringLiteral("own"), file);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    QVERIFY(manager.save());
    QCOMPARE(Product::read(path), QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"));
}

void TestReadWrite::secondSaveIsIdentical_data()
{
    QTest::addColumn<QString>("plugin");
    QDir samples(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
    const QStringList plugins = samples.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QVERIFY(plugins.size() >= 12);
    for (const QString &plugin : plugins) {
        if (samples.exists(plugin + QLatin1String("/extension.xml")))
            QTest::newRow(qPrintable(plugin)) << plugin;
    }
}

void TestReadWrite::secondSaveIsIdentical()
{
    QFETCH(const QString, plugin);
    const Product product;
    QDir samples(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
    for (const QString &entry : samples.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (samples.exists(entry + QLatin1String("/extension.xml")))
            product.add(entry, Product::read(samples.filePath(entry + QLatin1String("/extension.xml"))));
    }
    QByteArray saved[2];
    for (QByteArray &bytes : saved) {
        SourceDataManager manager;
        QVERIFY(manager.load(product.file(plugin)));
        manager.startScan(product.file(plugin));
        QVERIFY(manager.save());
        bytes = Product::read(product.file(plugin));
    }
    QVERIFY(saved[0].contains("<Ext"));
    QCOMPARE(saved[1], saved[0]);
}

namespace { } // namespace

void TestReadWrite::malformedFileLeavesEverything_data()
{
    QTest::addColumn<QByteArray>("broken");
    const QByteArray good
        = "<P id=\"two\"><ExtPointSet><ExtPoint id=\"x\"><String/><SubExtPoint key=\"s\"/></ExtPoint></ExtPointSet>"
          "<ExtDataSet><format target=\"t\"><Menu id=\"m\"/></format><Layout id=\"l\"/></ExtDataSet></P>";
    QTest::newRow("last byte") << good.left(good.size() - 1);
    QTest::newRow("rubbish behind") << QByteArray(good + "<P/>");
    QTest::newRow("duplicate attribute") << QByteArray(QByteArray(good).replace("key=\"s\"", "key=\"s\" key=\"s\""));
    QTest::newRow("empty") << QByteArray();
}

void TestReadWrite::malformedFileLeavesEverything()
{
    QFETCH(const QByteArray, broken);
    const Product product;
    const QString path = product.add(QStringLiteral("own"),
        "<P id=\"one\"><ExtPointSet><ExtPoint id=\"p\"/></ExtPointSet><ExtDataSet><format target=\"t\" "
        "id=\"f\"/></ExtDataSet></P>");
    const QString brokenPath = product.add(QStringLiteral("broken"), broken);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    const QStringList definitions = ModelTesting::tree(manager.definitionRoot());
    const QStringList realizations = ModelTesting::tree(manager.realizationRoot());
    PointTreeWidgetItem *format = manager.ownRealizations().formatOfTarget(QStringLiteral("t"));

    QVERIFY(!manager.load(brokenPath));
    QCOMPARE(ModelTesting::tree(manager.definitionRoot()), definitions);
    QCOMPARE(ModelTesting::tree(manager.realizationRoot()), realizations);
    QCOMPARE(manager.pluginId(), QStringLiteral("one"));
    QCOMPARE(manager.ownRealizations().formatOfTarget(QStringLiteral("t")), format);
    QCOMPARE(manager.ownRealizations().all().size(), 1);
    QVERIFY(manager.indexes()[NodeIndexes::Layouts].all().isEmpty());
    // What could not be read is never overwritten.
    QVERIFY(!manager.save());
    QCOMPARE(Product::read(brokenPath), broken);
}

QTEST_MAIN(TestReadWrite)
#include "tst_readwrite.moc"

#include "modeltesting.h"

#include <QTest>

using ModelTesting::Product;
using ModelTesting::s;

namespace {

/// What opening and saving makes of @p body within a root element: without the instruction, the root and the white
/// space between tags, and with single quotes.
QByteArray savedBody(const QByteArray &body)
{
    const Product product;
    const QString path = product.add(s("own"), "<Plugin id='own'>" + body + "</Plugin>");
    SourceDataManager manager;
    if (!manager.load(path) || !manager.save())
        return "not saved";
    const QByteArray saved = Product::read(path);
    const QByteArray start = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"own\">\n";
    const QByteArray end = "</Plugin>\n";
    if (!saved.startsWith(start) || !saved.endsWith(end))
        return "unexpected frame: " + saved;
    QByteArray tags;
    for (const QByteArray &line : saved.mid(start.size(), saved.size() - start.size() - end.size()).split('\n'))
        tags += line.trimmed();
    return tags.replace('"', '\'');
}

/// What saving makes of records when a sibling declares the points.
QByteArray savedWith(const QByteArray &points, const QByteArray &records)
{
    const Product product;
    product.add(s("sibling"), "<Plugin id='sibling'><ExtPointSet>" + points + "</ExtPointSet></Plugin>");
    const QString path = product.add(s("own"), "<Plugin id='own'><ExtDataSet>" + records + "</ExtDataSet></Plugin>");
    SourceDataManager manager;
    if (!manager.load(path))
        return "not read";
    manager.startScan(path);
    return manager.save() ? Product::read(path) : "not saved";
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
    void emptyDocument();
    void secondSaveIsIdentical();
    void malformedFileLeavesEverything();
};

void TestReadWrite::differences_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char *name, const char *read, const char *written) {
        QTest::newRow(name) << QByteArray(read) << QByteArray(written);
    };
    const auto points = [](const char *name, const QByteArray &read, const QByteArray &written) {
        QTest::newRow(name) << "<ExtPointSet>" + read + "</ExtPointSet>"
                            << "<ExtPointSet>" + written + "</ExtPointSet>";
    };
    const auto data = [](const char *name, const QByteArray &read, const QByteArray &written) {
        QTest::newRow(name) << "<ExtDataSet>" + read + "</ExtDataSet>"
                            << "<ExtDataSet>" + written + "</ExtDataSet>";
    };
    row("foreign elements of the root are dropped", "<ExtPointSet/><Other a='1'><ExtPoint/></Other>", "<ExtPointSet/>");
    row("root's children are compared exactly", "<extpointset/><ExtPointSet/><EXTDATASET/>", "<ExtPointSet/>");
    row("every set stays, definitions first",
        "<ExtDataSet B=\"tr('x')\"/><ExtPointSet a='1'/><ExtDataSet/><ExtPointSet C='2'/>",
        "<ExtPointSet a='1'/><ExtPointSet c='2'/><ExtDataSet B='tr('x')'/><ExtDataSet/>");
    points("definition names are lowered", "<ExtPoint Id='a' childType='b|c'/>", "<ExtPoint id='a' childtype='b|c'/>");
    points("of two letter cases the lower one wins", "<ExtPoint Name='A' name='b' NAME='C'/>", "<ExtPoint name='b'/>");
    data("realization names stay", "<X Id='a' toolTip='b'/>", "<X Id='a' toolTip='b'/>");
    points("definition type goes in any letter case", "<ExtPoint><Int type='a' key='k'/><Int TYPE='b'/></ExtPoint>",
        "<ExtPoint><Int key='k'/><Int/></ExtPoint>");
    data("realization type goes as written", "<X type='a' Type='b'/>", "<X Type='b'/>");
    points("values are trimmed", "<ExtPoint id='  a b\t'/>", "<ExtPoint id='a b'/>");
    data("here, too", "<X id=' c ' d='  '/>", "<X id='c' d=''/>");
    data("order of the file", "<X z='1' b='2' a='3' y='4'/>", "<X z='1' b='2' a='3' y='4'/>");
    data("marks of translation go", "<X a=\"tr('Open')\" b=\"tr('A')tr('B')\" c=\"tr('half\" d=\"')x\"/>",
        "<X a='Open' b='AB' c='tr('half' d='')x'/>");
    points("not on the definition side", "<ExtPoint name=\"tr('Open')\"/>", "<ExtPoint name='tr('Open')'/>");
    data("Meta loses its key", "<X id='a'><Meta key='k' type='Int' value='1'/><meta key='k'/></X>",
        "<X id='a'><Meta value='1'/><meta key='k'/></X>");
    data("a record's own keys stay without a format", "<ExtData index='1' parent='p' key='k'/>",
        "<ExtData index='1' parent='p' key='k'/>");
    data("below a format they go, by exact kind",
        "<format><ExtData index='1' parent='p' key='k' id='a'/><extdata key='k'/><Menu parent='p'/></format>",
        "<format><ExtData id='a'/><extdata key='k'/><Menu parent='p'/></format>");
    points("unknown elements within a side stay", "<Odd x='1'><Deep/></Odd>", "<Odd x='1'><Deep/></Odd>");
    points("text and comments go", "<!-- c --><ExtPoint>text</ExtPoint>", "<ExtPoint/>");
    data("white space in values survives as references", "<X a='one&#10;two&#9;three'/>",
        "<X a='one&#xa;two&#x9;three'/>");
}

void TestReadWrite::differences()
{
    QFETCH(const QByteArray, read);
    QTEST(savedBody(read), "written");
}

void TestReadWrite::translatableKeys_data()
{
    QTest::addColumn<QByteArray>("points");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray declared = "<ExtPoint id='p'><String key='text' trans='true'/><String key='tip' trans='0'/>"
                                "<SubExtPoint key='Leaf'><String key='title' trans='1'/></SubExtPoint></ExtPoint>";
    const auto row = [](const char *name, const QByteArray &points, const char *records, const char *expected) {
        QTest::newRow(name) << points << QByteArray(records) << QByteArray(expected);
    };
    row("marked keys are wrapped", declared, "<ExtData id='p'><P text='Open' tip='x'/></ExtData>",
        "text=\"tr('Open')\" tip=\"x\"");
    row("empty values are not", declared, "<ExtData id='p'><P text=''/></ExtData>", "text=\"\"");
    row("of a sub point, by lower-cased kind", declared, "<ExtData id='p'><Leaf title='T'/></ExtData>",
        "title=\"tr('T')\"");
    row("point ids match without letter case", declared, "<ExtData id='P'><Leaf title='T'/></ExtData>",
        "title=\"tr('T')\"");
    row("another plug-in's sub point of the same key does not hide the point",
        declared + "<ExtPoint id='q'><SubExtPoint key='p'/></ExtPoint>", "<ExtData id='p'><P text='Open'/></ExtData>",
        "text=\"tr('Open')\"");
    row("an unknown point marks nothing", declared, "<ExtData id='other'><P text='Open'/></ExtData>", "text=\"Open\"");
    row("what was wrapped comes back wrapped", declared,
        "<ExtData id='p'><P text=\"tr('Open')\" tip=\"tr('Tip')\"/></ExtData>", "text=\"tr('Open')\" tip=\"Tip\"");
}

void TestReadWrite::translatableKeys()
{
    QFETCH(const QByteArray, points);
    QFETCH(const QByteArray, records);
    QFETCH(const QByteArray, expected);
    const QByteArray saved = savedWith(points, records);
    QVERIFY2(saved.contains(expected), saved);
}

void TestReadWrite::translatableTableIsNeverCleared()
{
    const Product product;
    const QString path = product.add(s("own"),
        "<P><ExtPointSet><ExtPoint id='p'><String key='text' trans='true'/></ExtPoint><ExtPoint id='q'><String "
        "key='text' trans='false'/></ExtPoint></ExtPointSet><ExtDataSet><ExtData id='q'><Q text='first'/></ExtData>"
        "<ExtData id='p'><P text='second'/></ExtData><ExtData id='q'><Q text='third'/></ExtData></ExtDataSet></P>");
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

void TestReadWrite::emptyDocument()
{
    for (const char *file : { "<Plugin id='own' name='n'/>", "<Plugin><Other/></Plugin>" }) {
        const Product product;
        const QString path = product.add(s("own"), file);
        SourceDataManager manager;
        QVERIFY(manager.load(path) && manager.save());
        QCOMPARE(Product::read(path), QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"));
    }
}

void TestReadWrite::secondSaveIsIdentical()
{
    const Product product;
    QDir samples(s(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
    QStringList plugins;
    for (const QString &entry : samples.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (samples.exists(entry + s("/extension.xml"))) {
            product.add(entry, Product::read(samples.filePath(entry + s("/extension.xml"))));
            plugins.append(entry);
        }
    }
    QVERIFY(plugins.size() >= 12);
    for (const QString &plugin : qAsConst(plugins)) {
        QByteArray saved[2];
        for (QByteArray &bytes : saved) {
            SourceDataManager manager;
            QVERIFY(manager.load(product.file(plugin)));
            manager.startScan(product.file(plugin));
            QVERIFY(manager.save());
            bytes = Product::read(product.file(plugin));
        }
        QVERIFY2(saved[0].contains("<Ext") && saved[1] == saved[0], qPrintable(plugin));
    }
}

void TestReadWrite::malformedFileLeavesEverything()
{
    const Product product;
    const QString path = product.add(s("own"),
        "<P id='one'><ExtPointSet><ExtPoint id='p'/></ExtPointSet><ExtDataSet><format id='f'/></ExtDataSet></P>");
    const QByteArray broken = "<P id='two'><ExtPointSet><ExtPoint id='x'/></ExtPointSet><ExtDataSet><format "
                              "target='t'><Menu id='m'/></format><Layout id='l'/></ExtDataSet></P";
    const QString brokenPath = product.add(s("broken"), broken);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    const QStringList definitions = ModelTesting::tree(manager.definitionRoot());
    const QStringList realizations = ModelTesting::tree(manager.realizationRoot());
    const OwnRealizations::Nodes known = manager.ownRealizations().all();

    QVERIFY(!manager.load(brokenPath));
    QCOMPARE(ModelTesting::tree(manager.definitionRoot()), definitions);
    QCOMPARE(ModelTesting::tree(manager.realizationRoot()), realizations);
    QCOMPARE(manager.pluginId(), s("one"));
    QVERIFY(known.size() == 1 && manager.ownRealizations().all() == known);
    QVERIFY(manager.indexes()[NodeIndexes::Layouts].all().isEmpty());
    // What could not be read is never overwritten.
    QVERIFY(!manager.save());
    QCOMPARE(Product::read(brokenPath), broken);
}

QTEST_MAIN(TestReadWrite)
#include "tst_readwrite.moc"

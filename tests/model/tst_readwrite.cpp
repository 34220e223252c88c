#include "modeltesting.h"

#include "extensionfile/attributes.h"

#include <QDomDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using ModelTesting::Product;
using ModelTesting::s;

namespace {

/// What opening and saving makes of a file beside one that declares these points. Done again, it makes no difference.
QByteArray saved(const QByteArray &file, const QByteArray &points = {})
{
    const Product product;
    product.add(s("sibling"), "<Plugin id='sibling'><ExtPointSet>" + points + "</ExtPointSet></Plugin>");
    const QString path = product.add(s("own"), file);
    QByteArray bytes[2];
    for (QByteArray &saved : bytes) {
        SourceDataManager manager;
        if (!manager.load(path))
            return "not read";
        manager.startScan(path);
        if (!manager.save())
            return "not saved";
        saved = Product::read(path);
    }
    return bytes[0] == bytes[1] ? bytes[0] : "otherwise again: " + bytes[1];
}

using Kind = SaveReport::Kind;
using Reason = SaveReport::Reason;

/// What a value of the realization side is once it has been read.
QString asRead(QString value)
{
    value = value.trimmed();
    static const QRegularExpression whole(s("^tr\\('([^']*)'\\)\\z"));
    if (const auto marked = whole.match(value); marked.hasMatch())
        return marked.captured(1);
    if (!value.contains(s("tr('")) || !value.contains(s("')")))
        return value;
    while (value.contains(s("tr('")) || value.contains(s("')")))
        value.remove(s("tr('")).remove(s("')"));
    return value;
}

/// The values of all records, by "id" and key, as they stand in the file.
QMap<QString, QString> valuesOf(const QByteArray &bytes)
{
    QDomDocument document;
    if (!document.setContent(bytes))
        qFatal("not well-formed: %s", bytes.constData());
    QMap<QString, QString> values;
    const QDomNodeList records = document.elementsByTagName(s("rec"));
    for (int i = 0; i < records.size(); ++i) {
        const QDomElement record = records.at(i).toElement();
        for (const char *key : { "text", "title", "tip" })
            if (record.hasAttribute(s(key)))
                values.insert(record.attribute(s("id")) + QLatin1Char('/') + s(key), record.attribute(s(key)));
    }
    return values;
}

/// What a report says of the marks, but not of these values.
QStringList told(const SaveReport &report, const QStringList &except)
{
    const QMap<Kind, QString> names { { Kind::MarksLost, s("lost ") }, { Kind::MarksGained, s("gained ") },
        { Kind::ReadOtherwise, s("otherwise ") } };
    QStringList found;
    for (const SaveReport::Remark &remark : report.remarks()) {
        const QString value = remark.element.section(QLatin1Char('"'), 1, 1) + QLatin1Char('/') + remark.key;
        if (names.contains(remark.kind) && !except.contains(value))
            found.append(names.value(remark.kind) + value);
    }
    found.sort();
    return found;
}

QByteArray randomData(QRandomGenerator &random)
{
    static const QByteArrayList values { "Open", "tr('Open')", "tr('Open ('all')')", "Open ('all')", "tr('", "')", "",
        "tr('')", " tr(' x ') ", "tr('a') b tr('c')", "  plain " };
    static const QByteArrayList points { "own.p", "sib.p", "sib.plain", "nobody.p" };
    QByteArray body;
    int number = 0;
    for (int i = 0; i < 4; ++i) {
        body += "<ExtData id=\"" + points.at(random.bounded(points.size())) + "\">";
        for (int j = random.bounded(4); j > 0; --j) {
            body += "<rec id=\"r" + QByteArray::number(++number) + '"';
            for (const char *key : { "text", "title", "tip" })
                if (random.bounded(2))
                    body += QByteArray(" ") + key + "=\"" + values.at(random.bounded(values.size())) + '"';
            body += "/>";
        }
        body += "</ExtData>";
    }
    return "<Plugin id=\"own\"><ExtPointSet><ExtPoint id=\"own.p\"><String key=\"title\" trans=\"true\"/></ExtPoint>"
           "</ExtPointSet><ExtDataSet>"
        + body + "</ExtDataSet></Plugin>";
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
    void malformedFileLeavesEverything();
    void marksAreToldAsTheFilesDiffer();
    void marksOfEveryShortText();
    void partsThatGo_data();
    void partsThatGo();
    void unreadSiblings();
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
    data("realization names stay, and their order", "<X z='1' toolTip='b' Id='a'/>", "<X z='1' toolTip='b' Id='a'/>");
    points("definition type goes in any letter case", "<ExtPoint><Int type='a' key='k'/><Int TYPE='b'/></ExtPoint>",
        "<ExtPoint><Int key='k'/><Int/></ExtPoint>");
    data("realization type goes as written", "<X type='a' Type='b'/>", "<X Type='b'/>");
    points("values are trimmed", "<ExtPoint id='  a b\t'/>", "<ExtPoint id='a b'/>");
    data("here, too", "<X id=' c ' d='  '/>", "<X id='c' d=''/>");
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
    points("a record's keys stay here without a format", "<ExtData parent='p'/>", "<ExtData parent='p'/>");
    points("unknown elements within a side stay", "<Odd x='1'><Deep/></Odd>", "<Odd x='1'><Deep/></Odd>");
    points("text and comments go", "<!-- c --><ExtPoint>text</ExtPoint>", "<ExtPoint/>");
    data("white space in values survives as references", "<X a='one&#10;two&#9;three'/>",
        "<X a='one&#xa;two&#x9;three'/>");
}

/// Without the instruction, the root and the white space between tags, and with single quotes.
void TestReadWrite::differences()
{
    QFETCH(const QByteArray, read);
    const QByteArray bytes = saved("<Plugin id='own'>" + read + "</Plugin>");
    const QByteArray start = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"own\">\n";
    const QByteArray end = "</Plugin>\n";
    QVERIFY2(bytes.startsWith(start) && bytes.endsWith(end), bytes);
    QByteArray tags;
    for (const QByteArray &line : bytes.mid(start.size()).chopped(end.size()).split('\n'))
        tags += line.trimmed();
    QTEST(tags.replace('"', '\''), "written");
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
    const QByteArray bytes = saved("<Plugin id='own'><ExtDataSet>" + records + "</ExtDataSet></Plugin>", points);
    QVERIFY2(bytes.contains(expected), bytes);
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
    QVERIFY(Product::read(path).contains("\"first\"") && Product::read(path).contains("tr('second')"));
    QVERIFY2(Product::read(path).contains("tr('third')"), "a later point's \"false\" took the mark back");
    QVERIFY(manager.save());
    QVERIFY2(Product::read(path).contains("tr('first')"), "the second save has forgotten the first");
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

/// The report before a save says exactly how the file afterwards differs from the one before, and another one has
/// nothing to say; a recovery copy depends on no sibling.
void TestReadWrite::marksAreToldAsTheFilesDiffer()
{
    QRandomGenerator random(1);
    int remarks = 0;
    for (int round = 0; round < 150; ++round) {
        const Product product;
        const QString path = product.add(s("own"), randomData(random));
        product.add(s("sib"),
            "<Plugin><ExtPointSet><ExtPoint id='sib.p'><String key='text' trans='true'/></ExtPoint>"
            "<ExtPoint id='sib.plain'><String key='tip'/></ExtPoint></ExtPointSet></Plugin>");
        SourceDataManager manager;
        QVERIFY(manager.load(path));
        const QByteArray early = manager.recoverable();
        manager.startScan(path);
        manager.completeScan();
        QStringList lostFirst;
        QStringList changed; // by the first save, so that the file does not say what is shown
        // What one node teaches after another was written changes the second save.
        for (const bool isFirst : { true, false }) {
            const SaveReport report = manager.saveReport();
            const QMap<QString, QString> old = valuesOf(Product::read(path));
            QVERIFY(manager.save());
            const QMap<QString, QString> now = valuesOf(Product::read(path));
            QStringList expected;
            QStringList otherwise;
            for (auto it = old.cbegin(); it != old.cend(); ++it) {
                const QString value = asRead(it.value());
                const bool wasMarked = value != it.value().trimmed();
                const bool isMarked = now.value(it.key()) == s("tr('%1')").arg(value);
                if (value.isEmpty() || changed.contains(it.key()))
                    continue;
                if (wasMarked != isMarked)
                    expected.append((wasMarked ? s("lost ") : s("gained ")) + it.key());
                if (asRead(now.value(it.key())) != value)
                    otherwise.append(it.key());
            }
            if (isFirst)
                lostFirst = expected.filter(s("lost "));
            for (const QString &key : qAsConst(otherwise))
                expected.append(s("otherwise ") + key);
            expected.sort();
            QCOMPARE(told(report, changed), expected);
            QCOMPARE(report.count(Kind::MarksLost, Reason::Unread), 0);
            remarks += expected.size();
            changed = otherwise;
        }

        SourceDataManager recovered;
        QVERIFY(recovered.load(path, early));
        recovered.startScan(path);
        recovered.completeScan();
        QCOMPARE(told(recovered.saveReport(), {}).filter(s("lost ")), lostFirst);
    }
    QVERIFY(remarks > 250);
}

/// For every short text of the letters that matter: what a reading makes of it; and the expression by which a sheet
/// marks what is being typed says no, exactly where the file would give back another text.
void TestReadWrite::marksOfEveryShortText()
{
    const QString letters = s("tr(')x");
    QStringList texts { QString() };
    for (int i = 0; i < texts.size() && texts.at(i).size() < 7; ++i)
        for (const QChar letter : letters)
            texts.append(texts.at(i) + letter);
    for (const bool isMarked : { false, true }) {
        const QRegularExpression expression(
            ExtensionFile::brokenByTranslationMarks(isMarked), QRegularExpression::DotMatchesEverythingOption);
        for (const QString &text : qAsConst(texts)) {
            const QString written = isMarked ? ExtensionFile::withTranslationMarks(text) : text;
            const QString read = ExtensionFile::withoutTranslationMarks(written);
            if (read != asRead(written) || (!text.isEmpty() && expression.match(text).hasMatch() != (read != text)))
                QFAIL(qPrintable(text));
        }
    }
}

void TestReadWrite::partsThatGo_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("gone");
    const auto row = [](const char *name, const char *file, const char *gone) {
        QTest::newRow(name) << QByteArray(file) << s(gone);
    };
    row("nothing", "<Plugin><ExtPointSet/></Plugin>", "");
    row("comments, text, instructions",
        "<!--one--><Plugin><?two x?><ExtPointSet>three<!--four--></ExtPointSet></Plugin>",
        "<!-- one -->, <?two?>, \"three\", <!-- four -->");
    row("a document type", "<!DOCTYPE Plugin><Plugin><!--b--><ExtPointSet/></Plugin>", "<!DOCTYPE>, <!-- b -->");
    row("other elements, with what is in them", "<Plugin><ExtPointSet/><Other><!--x-->y<z/></Other></Plugin>",
        "<Other>");
    row("a set in another letter case", "<Plugin><extpointset/><ExtDataSet/></Plugin>", "set <extpointset>");
    row("a set with a prefix, and nothing else", "<Plugin xmlns:p='u'><p:ExtDataSet/></Plugin>",
        "set <p:ExtDataSet>, all");
    row("a set too deep", "<Plugin><ExtDataSet/><in><ExtPointSet/></in></Plugin>", "<in>, set <ExtPointSet>");
    row("a root alone", "<Plugin id='own' name='n'/>", "all");
    row("others alone", "<Plugin><Other/></Plugin>", "<Other>, all");
    row("UTF-8 that is called something else",
        "<?xml version='1.0' encoding='iso-8859-1'?><Plugin id='\xc3\xa9'><ExtPointSet/></Plugin>", "utf-8");
    row("Latin-1 that is", "<?xml version='1.0' encoding='iso-8859-1'?><Plugin id='\xe9'><ExtPointSet/></Plugin>", "");
    row("attributes that the format has no place for",
        "<Plugin><ExtDataSet><ExtData id='p'><Meta key='k' type=''/></ExtData></ExtDataSet></Plugin>", "key");
}

void TestReadWrite::partsThatGo()
{
    QFETCH(QByteArray, file);
    const Product product;
    SourceDataManager manager;
    const QString path = product.add(s("own"), file);
    QVERIFY(manager.load(path));
    const SaveReport report = manager.saveReport();
    QStringList told;
    for (const SaveReport::Remark &remark : report.remarks()) {
        if (remark.kind == Kind::Dropped || remark.kind == Kind::SetDropped)
            told.append((remark.kind == Kind::Dropped ? QString() : s("set ")) + remark.detail);
        if (remark.kind == Kind::AttributeDropped && !remark.value.isEmpty())
            told.append(remark.key);
        if (remark.kind == Kind::LooksLikeUtf8)
            told.append(s("utf-8"));
    }
    if (report.count(Kind::NothingLeft) > 0)
        told.append(s("all"));
    QTEST(told.join(s(", ")), "gone");
    QVERIFY(manager.save());
    const QByteArray alone = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
    QCOMPARE(Product::read(path) == alone, told.contains(s("all")));
    QCOMPARE(manager.saveReport().count(Kind::Dropped) + manager.saveReport().count(Kind::SetDropped), 0);
}

/// Why a mark goes: the point is not translatable, or not known, or a sibling could not be read, which may declare it.
void TestReadWrite::unreadSiblings()
{
    const auto check = [](const QByteArray &sibling, const QByteArray &point, Reason reason) {
        const Product product;
        const QString path = product.add(s("own"),
            "<Plugin><ExtPointSet><ExtPoint id='own.p'/></ExtPointSet><ExtDataSet><ExtData id='" + point
                + "'><rec id='r' text=\"tr('Open')\"/></ExtData></ExtDataSet></Plugin>");
        const QString other = product.add(s("sib"), sibling);
        SourceDataManager manager;
        QVERIFY(manager.load(path));
        manager.startScan(path);
        manager.completeScan();
        const SaveReport report = manager.saveReport();
        QCOMPARE(report.count(Kind::MarksLost), 1);
        QCOMPARE(report.count(Kind::MarksLost, reason), 1);
        QCOMPARE(report.unread(), reason == Reason::Unread ? QStringList { other } : QStringList());
    };
    check("<Plugin><ExtPointSet><ExtPoint id='p'/></ExtPointSet></Plugin>", "p", Reason::NotDeclared);
    check("<Plugin/>", "p", Reason::Unknown);
    check("<Plugin><ExtPoin", "p", Reason::Unread);
    check("<Plugin><ExtPoin", "own.p", Reason::Unread);
}

QTEST_MAIN(TestReadWrite)
#include "tst_readwrite.moc"

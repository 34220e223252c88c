#include "realization/realizationpage.h"

#include "definition/childtypemask.h"

#include <QDateTime>
#include <QGroupBox>
#include <QSignalSpy>

using namespace RealizationTesting;

namespace {

const QByteArray twoPoints
    = points("<ExtPoint id='p' name='Point'><String key='text' name='Text'/>"
             "<Enum key='e' value='two'><Data key='1' text='one'/><Data key='2' text='two'/></Enum>"
             "<SubExtPoint key='a' name='A'/><SubExtPoint key='b' name='B'/>"
             "<SubExtPoint key='c' name='C' childtype='a|c'/></ExtPoint><ExtPoint id='q' name='Other'/>");

} // namespace

/// A file on the definition page, driven through the widgets.
class TestDefinitionPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void menuOffers_data();
    void menuOffers();
    void deletion_data();
    void deletion();
    void keys();
    void pointSheet_data();
    void pointSheet();
    void childTypeMask_data();
    void childTypeMask();
    void childTypeEdits_data();
    void childTypeEdits();
    void addProperty();
    void attributeSheet_data();
    void attributeSheet();
    void attributes();
    void createdAndSaved();
};

void TestDefinitionPage::menuOffers_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QStringList>("offered");
    QTest::newRow("plug-in") << s("own") << list({ "Create Point" });
    QTest::newRow("point") << s("Point") << list({ "Create Sub Point", "Delete Point" });
    QTest::newRow("sub point") << s("A") << list({ "Delete Point" });
    QTest::newRow("empty space") << QString() << QStringList();
}

void TestDefinitionPage::menuOffers()
{
    QFETCH(const QString, row);
    const Page page(twoPoints);
    page.define();
    QTreeWidget *tree = page.definitions();
    QTEST(row.isEmpty() ? page.menu(tree, QPoint(20, tree->viewport()->height() - 3))
                        : page.menu(tree, Page::row(tree, qPrintable(row))),
        "offered");
    QCOMPARE(page.modified, 0);
}

void TestDefinitionPage::deletion_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("deleted");
    QTest::newRow("the one shown") << s("Point") << s("Point");
    QTest::newRow("the one above the one shown") << s("B") << s("Point");
    QTest::newRow("another one") << s("Other") << s("Point");
    QTest::newRow("a sub point") << s("C") << s("A");
    QTest::newRow("the last one") << s("Other") << s("Other");
}

void TestDefinitionPage::deletion()
{
    QFETCH(const QString, shown);
    QFETCH(const QString, deleted);
    const Page page(twoPoints);
    page.define(qPrintable(shown));
    const QPointer<PointTreeWidgetItem> victim = Page::row(page.definitions(), qPrintable(deleted));
    PointObject *parent = victim->parent();
    const int before = parent->children().size();
    page.menu(page.definitions(), victim, "Delete Point");
    QVERIFY(!victim);
    QCOMPARE(parent->children().size(), before - 1);
    QCOMPARE(page.modified, 1);
    // What the page shows now is there, and can be worked on.
    page.editPoint("description", s("x"));
    page.press("pushButton_add_attr");
    page.save();
}

void TestDefinitionPage::keys()
{
    const Page page(twoPoints);
    QTreeWidget *tree = page.definitions();
    const auto count = [&] { return Page::lines(tree).size(); };
    page.define();
    page.press(tree, Qt::Key_Delete);
    QVERIFY2(count() == 6, "the plug-in was deleted");
    QTest::keyClick(tree, Qt::Key_Insert);
    QTest::keyClick(tree, Qt::Key_Insert);
    QTest::keyClick(tree, Qt::Key_Insert);
    QCOMPARE(Page::lines(tree).mid(6), list({ "  Piont", "    SubPoint", "    SubPoint" }));
    QTest::keyClick(tree, Qt::Key_Delete);
    QCOMPARE(count(), 8);
    QTest::keyClick(tree, Qt::Key_F2);
    QVERIFY(page.basicInfo()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), s("Typed"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(tree->currentItem()->text(0), s("Typed"));
}

void TestDefinitionPage::pointSheet_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QStringList>("rows");
    const auto row = [](const char *name, const char *element, std::initializer_list<const char *> rows) {
        QTest::newRow(name) << QByteArray(element) << list(rows);
    };
    row("point: id first, description last, the others in file order",
        "<ExtPoint description='d' name='n' other='o' hasformat='true' id='i' displayicon='x' displaylabel='y'/>",
        { "id:5=i /[a-zA-Z][a-zA-Z0-9-_.]{0,255}/", "name:5=n /[^</>'&\"]{0,255}/", "other:0=o", "hasformat:2=true",
            "displayicon:7=x {x}", "displaylabel:7=y {y}", "description:6=d /^.{0,1000}$/" });
    row("sub point: key first",
        "<ExtPoint id='i'><SubExtPoint other='o' description='d' name='n' key='k' childtype='k'/></ExtPoint>",
        { "key:5=k /[a-zA-Z][a-zA-Z0-9-_.]{0,51}/", "other:0=o /[a-zA-Z][a-zA-Z0-9-_.]{1,256}$/",
            "name:5=n /[^</>'&\"]{0,255}/", "childtype:8=1 (int) {k}", "description:6=d /^.{0,1000}$/" });
    row("a point without id has no sheet", "<ExtPoint name='n'/>", {});
    row("a sub point with id has the sub point's sheet", "<ExtPoint id='i'><SubExtPoint id='x' key='k'/></ExtPoint>",
        { "key:5=k /[a-zA-Z][a-zA-Z0-9-_.]{0,51}/", "id:0=x /[a-zA-Z][a-zA-Z0-9-_.]{1,256}$/" });
    const QByteArray both = "<String key='a' name='A'/><File key='f' name='F'/><Int key='i' name='I'/>"
                            "<String key='b' name='B'/><File key='g' name='G'/><string key='z'/>";
    const auto options = [](const char *name, const QByteArray &properties, const QByteArray &attributes,
                             const char *label, const char *icon) {
        const QByteArray point = " displaylabel=" + properties + ">" + attributes;
        QTest::addRow("%s", name) << "<ExtPoint id='p'" + point + "</ExtPoint>"
                                  << list({ "id:5=p /[a-zA-Z][a-zA-Z0-9-_.]{0,255}/", label, icon });
        QTest::addRow("%s, sub point", name) << "<ExtPoint id='p'><SubExtPoint key='k'" + point
                + "</SubExtPoint></ExtPoint>" << list({ "key:5=k /[a-zA-Z][a-zA-Z0-9-_.]{0,51}/", label, icon });
    };
    options("the current one first", "'b' displayicon='g'", both, "displaylabel:7=b {b/B a/A}",
        "displayicon:7=g {g/G f/F}");
    options("none is current", "'x' displayicon=''", both, "displaylabel:7=x {a/A b/B}", "displayicon:7= {f/F g/G}");
    options("without attributes the value alone", "'x' displayicon='y'", "<Int key='i'/>", "displaylabel:7=x {x}",
        "displayicon:7=y {y}");
}

void TestDefinitionPage::pointSheet()
{
    QFETCH(const QByteArray, element);
    const Page page(points(element));
    QTreeWidgetItem *point = page.definitions()->topLevelItem(0)->child(0);
    page.showPage(0);
    Page::click(page.definitions(), point->childCount() > 0 ? point->child(0) : point);
    QTEST(sheetLines(page.basicInfo()->properties()), "rows");
}

void TestDefinitionPage::childTypeMask_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("mask");
    QTest::addColumn<QVariant>("chosen");
    QTest::addColumn<QString>("back");
    const auto row = [](const char *name, const char *stored, int mask, const QVariant &chosen, const char *back) {
        QTest::newRow(name) << s(stored) << mask << chosen << s(back);
    };
    row("none", "", 0, 0, "");
    row("a and c", "a|c", 5, 5, "a|c");
    row("in bit order", "c|b", 6, 6, "b|c");
    row("a dead key counts nothing and goes", "gone|b", 2, 2, "b");
    row("letter case matters", "A|c", 4, 4, "c");
    row("empty parts and repetitions", "|a||a|", 1, 1, "a");
    row("another bit, the last of the mask", "a", 1, 1 << 30, "k30");
    row("what has no bit stays", "k33|a|k31|gone", 1, 6, "b|c|k31|k33");
    row("as a text", "a", 1, s("k33|c|gone|k31||a"), "a|c|k31|k33");
    row("as a text, none", "a|k31", 1, s(""), "");
    row("nothing", "a|k31", 1, QVariant(), "");
}

void TestDefinitionPage::childTypeMask()
{
    QFETCH(const QString, stored);
    PointTreeWidgetItem point { QString() };
    std::vector<std::unique_ptr<PointTreeWidgetItem>> children;
    QStringList kinds = list({ "String:x", "SubExtPoint:a", "subextpoint:b", "Int:y", "SubExtPoint:c" });
    for (int i = 3; i < 34; ++i)
        kinds.append(s("SubExtPoint:k%1").arg(i));
    for (const QString &kind : qAsConst(kinds)) {
        const QStringList words = kind.split(QLatin1Char(':'));
        children.emplace_back(ModelTesting::node(words.first(), { { s("key"), words.last() } }));
        point.addChild(children.back().get(), false);
    }
    const ChildTypeMask types(&point);
    QCOMPARE(types.names().size(), 34);
    QTEST(types.maskOf(stored), "mask");
    QFETCH(const QVariant, chosen);
    const QString text = types.textOf(chosen, stored);
    QTEST(text, "back");
    QVERIFY2(!text.isNull(), "the property would be gone");
}

void TestDefinitionPage::childTypeEdits_data()
{
    QTest::addColumn<int>("subPoints");
    QTest::addColumn<QVariant>("shown");
    QTest::addColumn<QVariant>("chosen");
    QTest::addColumn<QString>("stored");
    QTest::newRow("a mask") << 31 << QVariant((1 << 0) + (1 << 30)) << QVariant(6) << s("k1|k2");
    QTest::newRow("too many for a mask") << 34 << QVariant(s("k0|k30|gone")) << QVariant(s("k0|k33")) << s("k0|k33");
}

void TestDefinitionPage::childTypeEdits()
{
    QFETCH(const int, subPoints);
    QFETCH(const QVariant, chosen);
    QByteArray file;
    for (int i = 0; i < subPoints; ++i)
        file += "<SubExtPoint key='k" + QByteArray::number(i) + "' name='S' childtype='k0|k30|gone'/>";
    const Page page(points("<ExtPoint id='p'>" + file + "</ExtPoint>"));
    page.define("S");
    const PropertyItem record = page.basicInfo()->properties().last();
    QTEST(record.value(), "shown");
    QCOMPARE(record.options().size(), subPoints);
    page.editPoint("childtype", chosen);
    QTEST(Page::row(page.definitions(), "S")->property(s("childtype")).toString(), "stored");
    QCOMPARE(page.modified, 1);
}

void TestDefinitionPage::addProperty()
{
    const Page page(twoPoints);
    page.define();
    QVERIFY2(!page.find<QToolButton>("addPropertyButton")->isEnabled(), "a plug-in has no table of properties");
    page.define("Point");
    QCOMPARE(page.offeredProperties(), s("displaylabel displayicon hasformat description"));
    page.addProperty("hasformat");
    QCOMPARE(sheetLines(page.basicInfo()->properties()).last(), s("hasformat:2="));
    QCOMPARE(page.modified, 1);
    QCOMPARE(page.offeredProperties(), s("displaylabel displayicon description"));
    page.define("A");
    QCOMPARE(page.offeredProperties(), s("displaylabel displayicon childtype description"));
    Page::row(page.definitions(), "A")->setProperty(s("childType"), s("a"));
    QCOMPARE(page.offeredProperties(), s("displaylabel displayicon description"));
}

/// What lacks of an attribute's properties comes when its row is selected, and what has no place there goes.
void TestDefinitionPage::attributeSheet_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QString>("cells");
    QTest::addColumn<QStringList>("rows");
    const QStringList types = list({ "String", "Enum", "Bool", "Int", "File", "ShortCut" });
    const auto row = [&types](const char *name, const char *attribute, const char *cells, QStringList rows) {
        rows.replaceInStrings(QRegularExpression(s("^(key:5=.*)")), s("\\1 /[a-zA-Z][a-zA-Z0-9-_.]{0,51}/"));
        rows.replaceInStrings(QRegularExpression(s("^(name:5=.*)")), s("\\1 /[^</>'&\"]{0,255}/"));
        const QString type = s(cells).section(QLatin1Char('|'), 2, 2);
        QStringList offered = types;
        offered.removeAll(type);
        offered.prepend(type);
        rows.append(s("type:7=%1 {%2}").arg(type, offered.join(QLatin1Char(' '))));
        QTest::newRow(name) << QByteArray(attribute) << s(cells) << rows;
    };
    row("String", "String key='s' name='S' value='v' regexp='[a-z]*' tips='t' trans='true' extra='gone'",
        "s|S|String|v",
        list({ "key:5=s", "name:5=S", "value:5=v /[a-z]*/", "regexp:5=[a-z]*", "tips:5=t", "trans:2=true" }));
    row("String without anything", "String value='v' key='k'", "k||String|v",
        list({ "key:5=k", "name:5=", "value:5=v", "regexp:5=", "tips:5=", "trans:2=" }));
    row("Enum", "Enum key='e' name='E' value='two' mode='m'", "e|E|Enum|two",
        list({ "key:5=e", "name:5=E", "value:7=two {one two}", "mode:5=m" }));
    row("Bool", "Bool key='b' name='B' value='true'", "b|B|Bool|true", list({ "key:5=b", "name:5=B", "value:2=true" }));
    row("type names are lowered for the look-up", "BOOL key='k' extra='1'", "k||BOOL|",
        list({ "key:5=k", "name:5=", "value:5=" }));
    row("Int", "Int key='n' name='N' value='5' min='0' max='9'", "n|N|Int|5",
        list({ "key:5=n", "name:5=N", "value:3=5", "min:3=0", "max:3=9" }));
    row("File", "File key='f' name='F' value='x.png' filter='*.png' title='T' method='open'", "f|F|File|x.png",
        list({ "key:5=f", "name:5=F", "value:18=x.png", "filter:5=*.png", "title:5=T", "method:5=open" }));
    row("ShortCut keeps what it has", "ShortCut key='k' value='Ctrl+O' kept='1'", "k||ShortCut|Ctrl+O",
        list({ "key:5=k", "value:17=Ctrl+O", "kept:5=1" }));
    row("Double keeps what it has", "Double key='d' value='1.5'", "d||Double|1.5", list({ "key:5=d", "value:4=1.5" }));
    row("an unknown type keeps everything", "Size key='k' extra='1'", "k||Size|", list({ "key:5=k", "extra:5=1" }));
}

void TestDefinitionPage::attributeSheet()
{
    QFETCH(const QByteArray, attribute);
    const QByteArray tag = attribute.left(attribute.indexOf(' '));
    const Page page(points("<ExtPoint id='p' name='P'><" + attribute
        + "><Data key='1' text='one'/><Data key='2' text='two' icon='i'/></" + tag + "></ExtPoint>"));
    page.define("P");
    QVERIFY(page.editInfo()->isHidden());
    QFETCH(const QString, cells);
    QCOMPARE(Page::lines(page.attributes()), (QStringList { s("key|name|type|value"), cells }));
    page.clickAttribute(0);
    QTEST(sheetLines(page.editInfo()->properties()), "rows");
    QVERIFY(!page.editInfo()->isHidden());
    QCOMPARE(page.find<QGroupBox>("enumGroup")->isHidden(), tag != "Enum");
    if (tag == "Enum")
        QCOMPARE(Page::lines(page.entries()), list({ "key|text|icon", "1|one|", "2|two|i" }));
    QCOMPARE(page.modified, 0);
    page.define();
    QCOMPARE(Page::lines(page.attributes()).size(), 1);
}

void TestDefinitionPage::attributes()
{
    const Page page(twoPoints);
    const auto keys = [&](int row) {
        return Page::row(page.definitions(), "Point")->children().at(row)->properties().keys().join(QLatin1Char(' '));
    };
    page.define("Point");
    page.press("pushButton_del_attr");
    QVERIFY2(page.attributes()->rowCount() == 2, "nothing was selected");
    page.clickAttribute(0);
    page.editAttribute("type", s("Enum"));
    QCOMPARE(Page::lines(page.attributes()).at(1), s("text|Text|Enum|"));
    QCOMPARE(keys(0), s("key name value mode"));
    QVERIFY(!page.find<QGroupBox>("enumGroup")->isHidden());
    QCOMPARE(page.modified, 1);
    page.editAttribute("type", s("Int"));
    QCOMPARE(keys(0), s("key name value min max"));
    QVERIFY(page.find<QGroupBox>("enumGroup")->isHidden());
    // What is shown after a deletion is what the current row is about.
    page.press("pushButton_del_attr");
    QCOMPARE(page.modified, 3);
    page.editAttribute("name", s("edited"));
    QVERIFY(!page.editInfo()->isHidden());
    QCOMPARE(Page::lines(page.attributes()).mid(1), list({ "e|edited|Enum|two" }));
    QCOMPARE(Page::row(page.definitions(), "Point")->children().size(), 4);
    page.find<QTableWidget>("enumTable")->setCurrentCell(0, 0);
    page.press("pushButton_delete_enmu");
    QCOMPARE(Page::lines(page.entries()).mid(1), list({ "2|two|" }));
    page.editAttribute("icon", s("i.png"));
    QCOMPARE(Page::lines(page.entries()).mid(1), list({ "2|two|i.png" }));
}

void TestDefinitionPage::createdAndSaved()
{
    const Page page("<ExtPointSet/>");
    page.define();
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    page.menu(page.definitions(), Page::row(page.definitions(), "own"), "Create Point");
    QCOMPARE(page.definitions()->currentItem()->text(0), s("Piont"));
    const qint64 id = page.basicInfo()->properties().first().value().toLongLong();
    QVERIFY(id >= before && id <= QDateTime::currentSecsSinceEpoch());
    page.editPoint("id", s("new.point"));
    int edits = 2;
    for (const char *type : { "String", "Enum", "Bool", "Int", "File", "ShortCut" }) {
        page.press("pushButton_add_attr");
        QCOMPARE(Page::lines(page.attributes()).last(), s("||String|"));
        QCOMPARE(page.modified, ++edits);
        page.editAttribute("key", s(type).toLower());
        page.editAttribute("type", s(type));
        if (qstrcmp(type, "Enum") == 0) {
            page.press("pushButton_add_enum");
            page.editAttribute("key", 1);
            page.editAttribute("text", s("one"));
        }
        if (qstrcmp(type, "Bool") == 0)
            page.editAttribute("value", true);
        edits = page.modified;
    }
    page.menu(page.definitions(), Page::row(page.definitions(), "Piont"), "Create Sub Point");
    QCOMPARE(page.definitions()->currentItem()->text(0), s("SubPoint"));
    QCOMPARE(page.modified, edits + 1);
    QCOMPARE(page.lines(page.points()).filter(s("SubPoint")).size(), 1);
    QCOMPARE(QString::fromUtf8(page.save()), s(R"(<?xml version="1.0" encoding="utf-8"?>
<Plugin id="own">
    <ExtPointSet>
        <ExtPoint id="new.point" name="Piont">
            <String key="string" name="" value="" regexp="" tips="" trans=""/>
            <Enum key="enum" name="" value="" mode="">
                <Data key="1" text="one" icon=""/>
            </Enum>
            <Bool key="bool" name="" value="true"/>
            <Int key="int" name="" value="" min="" max=""/>
            <File key="file" name="" value="" filter="" title="" method=""/>
            <ShortCut key="shortcut" name="" value="" regexp="" tips="" trans=""/>
            <SubExtPoint key="SubPoint" name="SubPoint"/>
        </ExtPoint>
    </ExtPointSet>
</Plugin>
)"));
}

QTEST_MAIN(TestDefinitionPage)
#include "tst_definitionpage.moc"

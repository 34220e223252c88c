#include "definitionpage.h"

#include <QDateTime>
#include <QGroupBox>

using namespace DefinitionTesting;

namespace {

const QByteArray sample
    = "<ExtPointSet><ExtPoint id=\"p\" name=\"P\">"
      "<String key=\"s\" name=\"S\" value=\"v\" regexp=\"[a-z]*\" tips=\"t\" trans=\"true\" extra=\"gone\"/>"
      "<Enum key=\"e\" name=\"E\" value=\"two\" mode=\"m\"><Data key=\"1\" text=\"one\" icon=\"i\"/><Data key=\"2\" "
      "text=\"two\"/></Enum>"
      "<Bool key=\"b\" name=\"B\" value=\"true\"/><Int key=\"n\" name=\"N\" value=\"5\" min=\"0\" max=\"9\"/>"
      "<File key=\"f\" name=\"F\" value=\"x.png\" filter=\"*.png\" title=\"T\" method=\"open\"/>"
      "<ShortCut key=\"k\" name=\"K\" value=\"Ctrl+O\" kept=\"1\"/><Double key=\"d\" value=\"1.5\"/><SubExtPoint "
      "key=\"sub\"/></ExtPoint>"
      "<ExtPoint id=\"q\"><SubExtPoint key=\"first\"/><String key=\"after\"/></ExtPoint></ExtPointSet>";

} // namespace

class TestAttributes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void table();
    void sheet_data();
    void sheet();
    void selectionBringsIntoLine_data();
    void selectionBringsIntoLine();
    void validators();
    void addAttribute();
    void typeChange();
    void deleteAttribute();
    void savedFile();
};

void TestAttributes::table()
{
    const Page page(sample);
    page.click(page.row({ 0 }));
    QCOMPARE(Page::texts(page.attributes()),
        (QStringList { s("s|S|String|v"), s("e|E|Enum|two"), s("b|B|Bool|true"), s("n|N|Int|5"), s("f|F|File|x.png"),
            s("k|K|ShortCut|Ctrl+O"), s("d||Double|1.5") }));
    QCOMPARE(page.attributes()->horizontalHeaderItem(2)->text(), s("type"));
    QVERIFY(!(page.attributes()->item(0, 0)->flags() & Qt::ItemIsEditable));
    page.click(page.row({}));
    QCOMPARE(page.attributes()->rowCount(), 0);
    QCOMPARE(page.attributes()->columnCount(), 4);
}

void TestAttributes::sheet_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("records");
    QTest::newRow("String") << 0 << s("key:5=s name:5=S value:5=v regexp:5=[a-z]* tips:5=t trans:2=true type:7=String");
    QTest::newRow("Enum") << 1 << s("key:5=e name:5=E value:7=two mode:5=m type:7=Enum");
    QTest::newRow("Bool") << 2 << s("key:5=b name:5=B value:2=true type:7=Bool");
    QTest::newRow("Int") << 3 << s("key:5=n name:5=N value:3=5 min:3=0 max:3=9 type:7=Int");
    QTest::newRow("File") << 4
                          << s("key:5=f name:5=F value:18=x.png filter:5=*.png title:5=T method:5=open type:7=File");
    QTest::newRow("ShortCut keeps what it has") << 5 << s("key:5=k name:5=K value:17=Ctrl+O kept:5=1 type:7=ShortCut");
    QTest::newRow("Double keeps what it has") << 6 << s("key:5=d value:4=1.5 type:7=Double");
}

void TestAttributes::sheet()
{
    QFETCH(const int, row);
    const Page page(sample);
    page.click(page.row({ 0 }));
    QVERIFY(page.editInfo()->isHidden());
    page.click(page.attributes(), row);
    QTEST(Page::records(page.editInfo()).join(QLatin1Char(' ')), "records");
    QVERIFY(!page.editInfo()->isHidden());
    QCOMPARE(page.find<QGroupBox>("enumGroup")->isHidden(), row != 1);
    const QList<PropertyItem::OptionItem> types = Page::record(page.editInfo(), "type").options();
    QCOMPARE(types.first().value, page.attributes()->item(row, 2)->text());
    QCOMPARE(types.size(), row == 6 ? 7 : 6);
}

void TestAttributes::selectionBringsIntoLine_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QString>("keys");
    QTest::newRow("what is not listed goes, what lacks comes")
        << QByteArray("<String extra=\"1\" value=\"v\" key=\"k\"/>") << s("key=k name= value=v regexp= tips= trans=");
    QTest::newRow("type names are lowered for the look-up")
        << QByteArray("<BOOL key=\"k\" extra=\"1\"/>") << s("key=k name= value=");
    QTest::newRow("an unknown type keeps everything")
        << QByteArray("<Size key=\"k\" extra=\"1\"/>") << s("key=k extra=1");
}

void TestAttributes::selectionBringsIntoLine()
{
    QFETCH(const QByteArray, attribute);
    const Page page("<ExtPointSet><ExtPoint id=\"p\">" + attribute + "</ExtPoint></ExtPointSet>");
    page.click(page.row({ 0 }));
    page.click(page.attributes(), 0);
    QStringList words;
    for (const PropertyHash::Entry &entry : page.row({ 0 })->children().first()->properties())
        words.append(entry.key + QLatin1Char('=') + entry.value.toString());
    QTEST(words.join(QLatin1Char(' ')), "keys");
    QCOMPARE(page.modified, 0);
}

void TestAttributes::validators()
{
    const Page page(sample);
    page.click(page.row({ 0 }));
    page.click(page.attributes(), 0);
    QCOMPARE(Page::record(page.editInfo(), "value").data(s("regexp")).toString(), s("[a-z]*"));
    QCOMPARE(Page::record(page.editInfo(), "key").data(s("regexp")).toString(), s("[a-zA-Z][a-zA-Z0-9-_.]{0,51}"));
    QCOMPARE(Page::record(page.editInfo(), "name").data(s("regexp")).toString(), s("[^</>'&\"]{0,255}"));
    QVERIFY(!Page::record(page.editInfo(), "tips").data(s("regexp")).isValid());
    page.row({ 0 })->children().first()->setProperty(s("regexp"), QVariant());
    page.click(page.attributes(), 1);
    page.click(page.attributes(), 0);
    QVERIFY(!Page::record(page.editInfo(), "value").data(s("regexp")).isValid());
}

void TestAttributes::addAttribute()
{
    Page page(sample);
    page.click(page.row({ 0, 0 }));
    for (int count = 1; count <= 2; ++count) {
        page.press("pushButton_add_attr");
        QCOMPARE(page.attributes()->currentRow(), count - 1);
        QCOMPARE(Page::texts(page.attributes()).last(), s("||String|"));
        PointObject *attribute = page.row({ 0, 0 })->children().last();
        QCOMPARE(attribute->item()->kind(), s("String"));
        QCOMPARE(attribute->properties().keys().join(QLatin1Char(' ')), s("key name value regexp tips trans"));
        QCOMPARE(page.modified, count);
        QCOMPARE(Page::records(page.editInfo()).last(), s("type:7=String"));
    }
    Q_EMIT page.editInfo()->propertyChanged(s("key"), s("k"));
    QCOMPARE(Page::texts(page.attributes()), (QStringList { s("||String|"), s("k||String|") }));
}

void TestAttributes::typeChange()
{
    Page page(sample);
    page.click(page.row({ 0 }));
    page.click(page.attributes(), 0);
    Q_EMIT page.editInfo()->propertyChanged(s("type"), s("Enum"));
    QCOMPARE(page.attributes()->item(0, 2)->text(), s("Enum"));
    QCOMPARE(
        Page::records(page.editInfo()).join(QLatin1Char(' ')), s("key:5=s name:5=S value:7=v mode:5= type:7=Enum"));
    QVERIFY(!page.find<QGroupBox>("enumGroup")->isHidden());
    QCOMPARE(page.modified, 1);
    Q_EMIT page.editInfo()->propertyChanged(s("type"), s("Int"));
    QCOMPARE(
        page.row({ 0 })->children().first()->properties().keys().join(QLatin1Char(' ')), s("key name value min max"));
    QVERIFY(page.find<QGroupBox>("enumGroup")->isHidden());
}

void TestAttributes::deleteAttribute()
{
    Page page(sample);
    page.click(page.row({ 0 }));
    page.press("pushButton_del_attr");
    QCOMPARE(page.attributes()->rowCount(), 7);
    page.click(page.attributes(), 1);
    page.press("pushButton_del_attr");
    QCOMPARE(page.attributes()->rowCount(), 6);
    QCOMPARE(page.modified, 1);
    const QString shown = Page::records(page.editInfo()).first().section(QLatin1Char('='), 1);
    QCOMPARE(page.attributes()->item(page.attributes()->currentRow(), 0)->text(), shown);
    Q_EMIT page.editInfo()->propertyChanged(s("name"), s("edited"));
    QCOMPARE(page.attributes()->item(page.attributes()->currentRow(), 1)->text(), s("edited"));
    QCOMPARE(page.row({ 0 })->children().size(), 7);
}

void TestAttributes::savedFile()
{
    const Page page("<ExtPointSet/>");
    page.press("pushButton_add_extpoint");
    Q_EMIT page.basicInfo()->propertyChanged(s("id"), s("new.point"));
    for (const char *type : { "String", "Enum", "Bool", "Int", "File", "ShortCut" }) {
        page.press("pushButton_add_attr");
        Q_EMIT page.editInfo()->propertyChanged(s("key"), QString(s(type)).toLower());
        if (qstrcmp(type, "String") != 0)
            Q_EMIT page.editInfo()->propertyChanged(s("type"), s(type));
        if (qstrcmp(type, "Enum") == 0) {
            page.press("pushButton_add_enum");
            Q_EMIT page.editInfo()->propertyChanged(s("key"), 1);
            Q_EMIT page.editInfo()->propertyChanged(s("text"), s("one"));
        }
        if (qstrcmp(type, "Bool") == 0)
            Q_EMIT page.editInfo()->propertyChanged(s("value"), true);
    }
    QVERIFY(const_cast<SourceDataManager &>(page.manager).save());
    QFile file(page.path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()),
        s("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
          "<Plugin id=\"own\">\n"
          "    <ExtPointSet>\n"
          "        <ExtPoint id=\"new.point\" name=\"Piont\">\n"
          "            <String key=\"string\" name=\"\" value=\"\" regexp=\"\" tips=\"\" trans=\"\"/>\n"
          "            <Enum key=\"enum\" name=\"\" value=\"\" mode=\"\">\n"
          "                <Data key=\"1\" text=\"one\" icon=\"\"/>\n"
          "            </Enum>\n"
          "            <Bool key=\"bool\" name=\"\" value=\"true\"/>\n"
          "            <Int key=\"int\" name=\"\" value=\"\" min=\"\" max=\"\"/>\n"
          "            <File key=\"file\" name=\"\" value=\"\" filter=\"\" title=\"\" method=\"\"/>\n"
          "            <ShortCut key=\"shortcut\" name=\"\" value=\"\" regexp=\"\" tips=\"\" trans=\"\"/>\n"
          "        </ExtPoint>\n"
          "    </ExtPointSet>\n"
          "</Plugin>\n"));
}

QTEST_MAIN(TestAttributes)
#include "tst_attributes.moc"

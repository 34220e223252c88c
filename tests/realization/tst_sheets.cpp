#include "openedproduct.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/sheetdriver.h"
#include "realization/attributetypes.h"
#include "realization/formatsheet.h"
#include "realization/recordsheet.h"

using RealizationTesting::OpenedProduct;
using RealizationTesting::s;

namespace {

QByteArray point(const char *content)
{
    return QByteArray("<ExtPointSet><ExtPoint id=\"p\">") + content + "</ExtPoint></ExtPointSet>";
}

QByteArray data(const QByteArray &content)
{
    return "<ExtDataSet><ExtData plugin=\"own\" id=\"p\" extPlugin=\"own\">" + content + "</ExtData></ExtDataSet>";
}

/// "key:type=value {options} /pattern/ read-only", what is there of it.
QStringList lines(const QList<PropertyItem> &rows)
{
    QStringList lines;
    for (const PropertyItem &row : rows) {
        const QVariant value = row.value();
        const QString text
            = value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(',')) : value.toString();
        QString line = s("%1:%2=%3").arg(row.name()).arg(int(row.type())).arg(text);
        if (value.type() == QVariant::Int)
            line += s(" (int)");
        QStringList options;
        for (const PropertyItem::OptionItem &option : row.options())
            options.append(option.text == option.value ? option.value : option.value + s("/") + option.text);
        if (!options.isEmpty())
            line += s(" {%1}").arg(options.join(QLatin1Char(' ')));
        const QString pattern = row.data(PropertyKey::RegExp).toString();
        if (!pattern.isEmpty())
            line += s(" /%1/").arg(pattern);
        if (row.dataKeys().contains(PropertyKey::Min) || row.dataKeys().contains(PropertyKey::Max))
            line += s(" %1..%2").arg(row.data(PropertyKey::Min).toString(), row.data(PropertyKey::Max).toString());
        if (!row.isEditable())
            line += s(" read-only");
        lines.append(row.displayText() == row.name() ? line : s("label differs: ") + line);
    }
    return lines;
}

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *text : texts)
        strings.append(s(text));
    return strings;
}

const char everyType[] = "<String key='a'/><Bool key='b'/><ShortCut key='c'/><File key='d'/><Int key='e'/>"
                         "<Double key='f'/><Size key='g'/><Text key='h'/><Colour key='i'/>";

const char idPattern49[] = " /[0-9a-zA-Z_.]{0,49}$/";

} // namespace

class TestSheets : public QObject
{
    Q_OBJECT

private slots:
    void recordSheet_data();
    void recordSheet();
    void storedDefaults_data();
    void storedDefaults();
    void formatSheet_data();
    void formatSheet();
    void formatEntriesOfRecords();
    void iconPaths();
    void editing_data();
    void editing();
};

void TestSheets::recordSheet_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QStringList>("rows");

    const auto withId = [](QStringList rows) {
        rows.prepend(s("id:5=r") + s(idPattern49));
        return rows;
    };
    QTest::newRow("types") << QByteArray(everyType)
                           << QByteArray("<k id='r' a='1' b='true' c='F1' d='x' e='3' f='0.7' g='2x3' h='l' i='j'/>")
                           << withId(list({ "a:5=1", "b:2=true", "c:17=F1", "d:18=x", "e:3=3", "f:4=0.7", "g:14=2x3",
                                  "h:5=l", "i:5=j" }));
    QTest::newRow("patterns, id first, order of the file")
        << QByteArray()
        << QByteArray("<k zz='1' sceneName='' parent='' statusTip='' toolTip='' text='' id='r' tooltip='' aa=''/>")
        << list({ "id:5=r /[0-9a-zA-Z_.]{0,49}$/", "zz:5=1", "sceneName:5= /[0-9a-zA-Z_.]{0,249}$/",
               "parent:5= /[a-zA-Z][a-zA-Z0-9-_.]{0,249}/", "statusTip:5= /^.{0,1000}$/", "toolTip:5= /^.{0,1000}$/",
               "text:5= /^.{0,25}$/", "tooltip:5=", "aa:5=" });
    QTest::newRow("bounds of numbers, and of nothing else") << QByteArray(
        "<Int key='i' min='2' max='9'/><Double key='d' max='0.5'/><Int key='e' min=''/><String key='s' min='1'/>")
                                                            << QByteArray("<k id='r' i='7' d='1' e='' s=''/>")
                                                            << withId(list(
                                                                   { "i:3=7 2..9", "d:4=1 ..0.5", "e:3=", "s:5=" }));
    QTest::newRow("a key takes the letter case of its declaration")
        << QByteArray("<Int key='minWidth'/>") << QByteArray("<k id='r' minwidth='4'/>")
        << withId(list({ "minWidth:3=4" }));
    const QByteArray options("<Data text='one'/><Data text='two'/><Data text='three'/>");
    const QByteArray enumeration = "<Enum key='e' value='two'>" + options + "</Enum>";
    const QByteArray flags = "<Flag key='f' value='3'>" + options + "</Flag>";
    QTest::newRow("enumeration, the current one first")
        << enumeration << QByteArray("<k id='r' e='three'/>") << withId(list({ "e:7=three {three one two}" }));
    QTest::newRow("enumeration, no such option")
        << enumeration << QByteArray("<k id='r' e='four'/>") << withId(list({ "e:7=four {one two three}" }));
    QTest::newRow("flags, a mask") << flags << QByteArray("<k id='r' f='6'/>")
                                   << withId(list({ "f:8=6 (int) {one two three}" }));
    QTest::newRow("flags, names") << flags << QByteArray("<k id='r' f='three|two'/>")
                                  << withId(list({ "f:8=three|two {one two three}" }));
    QTest::newRow("flags, empty where a mask is the default")
        << flags << QByteArray("<k id='r' f=''/>") << withId(list({ "f:8=0 (int) {one two three}" }));
    QTest::newRow("flags, a number that is a name")
        << QByteArray("<Flag key='f'><Data text='2'/><Data text='1'/></Flag>") << QByteArray("<k id='r' f='1'/>")
        << withId(list({ "f:8=1 {2 1}" }));
    QTest::newRow("options without a pattern, whatever the type")
        << QByteArray("<String key='text'>" + options + "</String>") << QByteArray("<k id='r' text='two'/>")
        << withId(list({ "text:5=two {two one three}" }));
    QTest::newRow("of the sub point of its kind")
        << QByteArray("<Int key='a'/><SubExtPoint key='Sub'><Bool key='a'/></SubExtPoint>")
        << QByteArray("<sub id='r' a='1'/>") << withId(list({ "a:2=1" }));
    QTest::newRow("child types") << QByteArray("<SubExtPoint key='k' childType='Menu||entry|'/>")
                                 << QByteArray("<K id='r'/>") << withId(list({ "childType:5=Menu,entry read-only" }));
    QTest::newRow("no child types") << QByteArray("<SubExtPoint key='k' childType='||'/>") << QByteArray("<k id='r'/>")
                                    << withId({});
}

void TestSheets::recordSheet()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, record);
    QFETCH(QStringList, rows);
    OpenedProduct product(point(content.constData()) + data(record));
    QCOMPARE(lines(RecordSheet::of(product.record("r"))), rows);
    if (!rows.isEmpty() && rows.last().startsWith(s("childType")))
        rows.removeLast();
    QCOMPARE(lines(RecordSheet::withoutChildTypes(product.record("r"))), rows);
}

void TestSheets::storedDefaults_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("stored");
    const QByteArray two("<String key='text' value='T'/><Bool key='on' value='true'/>");
    QTest::newRow("both") << two << QByteArray("<k id='r'/>") << s("k id=r text=T on=true");
    QTest::newRow("an empty value is one") << two << QByteArray("<k id='r' text=''/>") << s("k id=r text= on=true");
    QTest::newRow("all there") << two << QByteArray("<k on='false' text='U' id='r'/>") << QString();
    QTest::newRow("a declaration without a default")
        << QByteArray("<String key='text'/>") << QByteArray("<k id='r'/>") << s("k id=r text=");
    QTest::newRow("a declaration without a key")
        << QByteArray("<String value='x'/>") << QByteArray("<k id='r'/>") << QString();
    QTest::newRow("letter case") << QByteArray("<String key='toolTip' value='T'/>")
                                 << QByteArray("<k id='r' tooltip='U'/>") << QString();
}

void TestSheets::storedDefaults()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, record);
    QFETCH(QString, stored);
    OpenedProduct product(point(content.constData()) + data(record));
    PointTreeWidgetItem *node = product.record("r");
    QCOMPARE(RecordSheet::storeDefaults(node), !stored.isEmpty());
    if (!stored.isEmpty())
        QCOMPARE(ModelTesting::tree(node->parentItem()), QStringList { stored });
    QVERIFY2(!RecordSheet::storeDefaults(node), "The second time nothing is lacking.");
}

void TestSheets::formatSheet_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QStringList>("rows");

    const QByteArray options("<Data text='one'/><Data text='two'/>");
    QTest::newRow("own keys in order, id first, all patterns")
        << QByteArray() << QByteArray("<k zz='1' sceneName='' parent='' statusTip='' toolTip='' text='' id='e'/>")
        << list({ "id:5=e /[0-9a-zA-Z_.]{0,40}$/", "zz:5=1", "sceneName:5= /[0-9a-zA-Z_.]{0,249}$/",
               "parent:5= /[a-zA-Z][a-zA-Z0-9-_.]{0,249}/", "statusTip:5= /^.{0,1000}$/", "toolTip:5= /^.{0,1000}$/",
               "text:5= /^.{0,25}$/" });
    QTest::newRow("what it lacks, by default")
        << QByteArray("<Text key='h' value='d'/><Int key='i'/><String key='own' value='d'/>")
        << QByteArray("<k id='e' own=''/>") << list({ "id:5=e /[0-9a-zA-Z_.]{0,40}$/", "own:5=", "h:5=d", "i:3=" });
    QTest::newRow("options as declared, with the pattern")
        << QByteArray("<Enum key='text'>" + options + "</Enum><Flag key='f' value='2'>" + options + "</Flag>")
        << QByteArray("<k id='e' text='two'/>")
        << list({ "id:5=e /[0-9a-zA-Z_.]{0,40}$/", "text:7=two {one two} /^.{0,25}$/", "f:8=2 (int) {one two}" });
    QTest::newRow("child types") << QByteArray("<SubExtPoint key='k' childType='Menu||entry'/>")
                                 << QByteArray("<k id='e'/>")
                                 << list({ "id:5=e /[0-9a-zA-Z_.]{0,40}$/", "childType:5=Menu,entry read-only" });
    for (const char *kind : { "format", "Format", "menubar", "ToolBars" }) {
        QTest::addRow("<%s> shows its own", kind)
            << QByteArray("<String key='text' value='d'/>") << QByteArray("<") + kind + " id='e' a='1'/>"
            << list({ "id:5=e /[0-9a-zA-Z_.]{0,40}$/", "a:5=1" });
    }
}

void TestSheets::formatSheet()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, entry);
    OpenedProduct product(point(content.constData()) + data("<other><x>" + entry + "</x></other>"));
    PointTreeWidgetItem *node = product.reference("e");
    const PropertyHash before = node->properties();
    QTEST(lines(FormatSheet::of(node)), "rows");
    QVERIFY2(node->properties() == before, "Nothing is stored.");
}

void TestSheets::formatEntriesOfRecords()
{
    // An own record goes before a sibling's of the same id; all that the entry lacks is shown, declared or not.
    const QByteArray records("<k id='r' text='own' secret='x'/>");
    const QByteArray entries("<format target='t'><k id='r' size='9'/><k id='q'/></format>");
    OpenedProduct product(
        point("<String key='text' value='d'/><Int key='size' value='1'/><Bool key='on'/>") + data(entries + records),
        "<ExtDataSet><ExtData id='p'><k id='q' text='theirs'/><k id='r' text='theirs'/></ExtData></ExtDataSet>");
    QCOMPARE(lines(FormatSheet::of(product.reference("r"))).mid(1),
        list({ "size:3=9", "text:5=own /^.{0,25}$/", "secret:5=x", "on:2=" }));
    QCOMPARE(lines(FormatSheet::of(product.reference("q"))).mid(1),
        list({ "text:5=theirs /^.{0,25}$/", "size:3=1", "on:2=" }));
}

void TestSheets::iconPaths()
{
    OpenedProduct product(point("<File key='icon' value='d.png'/>")
            + data("<k id='r' icon='i/a.png'/><k id='empty' icon=''/><k id='there' icon='x'/>"
                   "<format target='t'><k id='r'/><k id='q'/><k id='x'/><k id='y' icon='y.png'/></format>"),
        "<ExtDataSet><ExtData id='p'><k id='q' icon='a.png'/></ExtData></ExtDataSet>");
    const QString own = product.directory("own");
    const auto recordIcon
        = [&](const char *id) { return RecordSheet::of(product.record(id)).at(1).value().toString(); };
    const auto formatIcon
        = [&](const char *id) { return FormatSheet::of(product.reference(id)).at(1).value().toString(); };
    QCOMPARE(recordIcon("r"), own + s("i/a.png"));
    QCOMPARE(recordIcon("empty"), QString());
    product.record("there")->setProperty(s("icon"), product.manager.filePath());
    QCOMPARE(recordIcon("there"), product.manager.filePath());
    QCOMPARE(formatIcon("r"), own + s("i/a.png"));
    QCOMPARE(formatIcon("q"), product.directory("other") + s("a.png"));
    QCOMPARE(formatIcon("x"), own + s("d.png"));
    QCOMPARE(formatIcon("y"), own + s("y.png"));
    QCOMPARE(product.record("r")->property(s("icon")).toString(), s("i/a.png"));
}

void TestSheets::editing_data()
{
    QTest::addColumn<bool>("ofFormat");
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QVariant>("committed");

    const QByteArray none;
    const auto chars = [](int count) { return QString(count, QLatin1Char('x')); };
    QTest::newRow("id of a record, 49") << false << none << QByteArray("id") << s("r") << chars(49)
                                        << QVariant(chars(49));
    QTest::newRow("id of a record, 50") << false << none << QByteArray("id") << s("r") << chars(50) << QVariant();
    QTest::newRow("id of an entry, 40") << true << none << QByteArray("id") << s("r") << chars(40)
                                        << QVariant(chars(40));
    QTest::newRow("id of an entry, 41") << true << none << QByteArray("id") << s("r") << chars(41) << QVariant();
    QTest::newRow("id with a blank") << false << none << QByteArray("id") << s("r") << s("a b") << QVariant();
    QTest::newRow("text, 26") << false << QByteArray("text='T'") << QByteArray("text") << s("T") << chars(26)
                              << QVariant();
    QTest::newRow("parent, a digit first")
        << true << QByteArray("parent='P'") << QByteArray("parent") << s("P") << s("1a") << QVariant();
    QTest::newRow("whole number") << false << QByteArray("int='3'") << QByteArray("int") << s("3") << s("4")
                                  << QVariant(s("4"));
    QTest::newRow("no number") << false << QByteArray("int='3'") << QByteArray("int") << s("3") << s("-") << QVariant();
    QTest::newRow("number") << true << QByteArray("double='0.7'") << QByteArray("double") << s("0.7") << s("0.8")
                            << QVariant(s("0.8"));
    QTest::newRow("size") << true << QByteArray("size='2x3'") << QByteArray("size") << s("2x3") << s("4x5")
                          << QVariant(s("4x5"));
    QTest::newRow("yes") << false << QByteArray("bool='true'") << QByteArray("bool") << s("[x]") << QString()
                         << QVariant(false);
    QTest::newRow("no") << true << QByteArray("bool='false'") << QByteArray("bool") << s("[ ]") << QString()
                        << QVariant(true);
    QTest::newRow("mask") << false << QByteArray("flag='5'") << QByteArray("flag") << s("one, three") << s("2")
                          << QVariant(7);
    QTest::newRow("names of flags") << true << QByteArray("flag='one'") << QByteArray("flag") << s("one") << s("2")
                                    << QVariant(s("one|two"));
}

void TestSheets::editing()
{
    QFETCH(bool, ofFormat);
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, key);
    QFETCH(QString, shown);
    QFETCH(QString, typed);
    QFETCH(QVariant, committed);
    const QByteArray node = "<k id='r' " + attributes + "/>";
    OpenedProduct product(point("<Int key='int'/><Double key='double'/><Size key='size'/><Bool key='bool'/>"
                                "<Flag key='flag'><Data text='one'/><Data text='two'/><Data text='three'/></Flag>")
        + data("<format>" + (ofFormat ? node : QByteArray()) + "</format>" + (ofFormat ? QByteArray() : node)));
    SheetDriver driver(SheetDriver::Tree);
    QVERIFY(driver.ready());
    driver.show(ofFormat ? FormatSheet::of(product.reference("r")) : RecordSheet::of(product.record("r")));
    QCOMPARE(driver.shown(key.constData()), shown);

    driver.click(key.constData());
    if (key == "flag") {
        QTRY_VERIFY(QApplication::activePopupWidget());
        auto *flags = QApplication::activePopupWidget()->findChild<QListWidget *>();
        QTest::mouseClick(
            flags->viewport(), Qt::LeftButton, {}, flags->visualItemRect(flags->item(typed.toInt() - 1)).center());
        QTest::keyPress(flags, Qt::Key_Return);
    } else if (key != "bool") {
        SheetDriver::type(typed);
        SheetDriver::press(Qt::Key_Return);
    }
    QCOMPARE(driver.spy().count(), committed.isValid() ? 1 : 0);
    if (committed.isValid()) {
        QCOMPARE(driver.spy().first(), QVariantList({ QString::fromLatin1(key), committed }));
        QCOMPARE(driver.spy().first().last().type(), committed.type());
    }
}

QTEST_MAIN(TestSheets)
#include "tst_sheets.moc"

#include <QtTest>

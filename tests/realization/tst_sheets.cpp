#include "form/filterline.h"
#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertykeys.h"
#include "realization/formatsheet.h"
#include "realization/recordsheet.h"
#include "realizationpage.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QStatusTipEvent>

#include <cmath>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;
using Texts = std::initializer_list<const char *>;

namespace {

const char idOfRecord[] = " /[0-9a-zA-Z_.]{0,49}$/";
const char idOfEntry[] = " /[0-9a-zA-Z_.]{0,40}$/";

QByteArray product(const QByteArray &declarations, const QByteArray &content)
{
    return points("<ExtPoint id='p'>" + declarations + "</ExtPoint>") + data(content, "p");
}

/// The first node with this id that is no record.
Node *reference(const Page &page, const char *id)
{
    for (Node *node : page.manager->ownRealizations().withId(s(id))) {
        if (!node->parentItem()->isKind(QLatin1String("ExtData")))
            return node;
    }
    qFatal("no reference to %s", id);
}

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
    void headings();
    void foreignRowsAreReadable_data();
    void foreignRowsAreReadable();
    void ownAndTakenOver();
    void problemsAreReached_data();
    void problemsAreReached();
    void whatIsTyped();
    void refusedInAPoint_data();
    void refusedInAPoint();
    void chosenFiles_data();
    void chosenFiles();
};

void TestSheets::recordSheet_data()
{
    QTest::addColumn<QByteArray>("declared");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QStringList>("rows"); ///< after that of the id
    const auto row = [](const char *name, const QByteArray &declared, const char *record, Texts rows) {
        QTest::newRow(name) << declared << QByteArray(record) << list(rows);
    };
    row("types",
        "<String key='a'/><Bool key='b'/><ShortCut key='c'/><File key='d'/><Int key='e'/><Double key='f'/>"
        "<Size key='g'/><Text key='h'/><Colour key='i'/>",
        "<k id='r' a='1' b='true' c='F1' d='x' e='3' f='0.7' g='2x3' h='l' i='j'/>",
        { "a:5=1", "b:2=true", "c:17=F1", "d:18=x", "e:3=3", "f:4=0.7", "g:14=2x3", "h:5=l", "i:5=j" });
    row("patterns, id first, order of the file", "",
        "<k zz='1' sceneName='' parent='' statusTip='' toolTip='' text='' id='r' tooltip='' aa=''/>",
        { "zz:5=1", "sceneName:5= /[0-9a-zA-Z_.]{0,249}$/", "parent:5= /[a-zA-Z][a-zA-Z0-9-_.]{0,249}/",
            "statusTip:5= /^.{0,1000}$/", "toolTip:5= /^.{0,1000}$/", "text:5= /^.{0,25}$/", "tooltip:5=", "aa:5=" });
    row("bounds of numbers, and of nothing else",
        "<Int key='i' min='2' max='9'/><Double key='d' max='0.5'/><Int key='e' min=''/><String key='s' min='1'/>",
        "<k id='r' i='7' d='1' e='' s=''/>", { "i:3=7 2..9", "d:4=1 ..0.5", "e:3=", "s:5=" });
    row("a key takes the letter case of its declaration", "<Int key='minWidth'/>", "<k id='r' minwidth='4'/>",
        { "minWidth:3=4" });
    const QByteArray options("<Data text='one'/><Data text='two'/><Data text='three'/>");
    const QByteArray enumeration = "<Enum key='e' value='two'>" + options + "</Enum>";
    const QByteArray flags = "<Flag key='f' value='3'>" + options + "</Flag>";
    row("enumeration, the current one first", enumeration, "<k id='r' e='three'/>", { "e:7=three {three one two}" });
    row("enumeration, no such option", enumeration, "<k id='r' e='four'/>", { "e:7=four {one two three}" });
    row("flags, a mask", flags, "<k id='r' f='6'/>", { "f:8=6 (int) {one two three}" });
    row("flags, names", flags, "<k id='r' f='three|two'/>", { "f:8=three|two {one two three}" });
    row("flags, empty where a mask is the default", flags, "<k id='r' f=''/>", { "f:8=0 (int) {one two three}" });
    row("flags, a number that is a name", "<Flag key='f'><Data text='2'/><Data text='1'/></Flag>", "<k id='r' f='1'/>",
        { "f:8=1 {2 1}" });
    row("options without a pattern, whatever the type", "<String key='text'>" + options + "</String>",
        "<k id='r' text='two'/>", { "text:5=two {two one three}" });
    row("of the sub point of its kind", "<Int key='a'/><SubExtPoint key='Sub'><Bool key='a'/></SubExtPoint>",
        "<sub id='r' a='1'/>", { "a:2=1" });
    row("child types", "<SubExtPoint key='k' childType='Menu||entry|'/>", "<K id='r'/>",
        { "childType:5=Menu,entry read-only" });
    row("no child types", "<SubExtPoint key='k' childType='||'/>", "<k id='r'/>", {});
}

void TestSheets::recordSheet()
{
    QFETCH(const QByteArray, declared);
    QFETCH(const QByteArray, record);
    QFETCH(QStringList, rows);
    const Page page(product(declared, record));
    rows.prepend(s("id:5=r") + s(idOfRecord));
    QCOMPARE(sheetLines(RecordSheet::of(page.record("r"))), rows);
    if (rows.last().startsWith(s("childType")))
        rows.removeLast();
    QCOMPARE(sheetLines(RecordSheet::withoutChildTypes(page.record("r"))), rows);
}

void TestSheets::storedDefaults_data()
{
    QTest::addColumn<QByteArray>("declared");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("stored");
    const auto row = [](const char *name, const char *declared, const char *record, const char *stored) {
        QTest::newRow(name) << QByteArray(declared) << QByteArray(record) << s(stored);
    };
    const char *const two = "<String key='text' value='T'/><Bool key='on' value='true'/>";
    row("both", two, "<k id='r'/>", "k id=r text=T on=true");
    row("an empty value is one", two, "<k id='r' text=''/>", "k id=r text= on=true");
    row("all there", two, "<k on='false' text='U' id='r'/>", "");
    row("a declaration without a default", "<String key='text'/>", "<k id='r'/>", "k id=r text=");
    row("a declaration without a key", "<String value='x'/>", "<k id='r'/>", "");
    row("letter case", "<String key='toolTip' value='T'/>", "<k id='r' tooltip='U'/>", "");
}

void TestSheets::storedDefaults()
{
    QFETCH(const QByteArray, declared);
    QFETCH(const QByteArray, record);
    QFETCH(const QString, stored);
    const Page page(product(declared, record));
    Node *node = page.record("r");
    QCOMPARE(RecordSheet::storeDefaults(node), !stored.isEmpty());
    if (!stored.isEmpty())
        QCOMPARE(ModelTesting::tree(node->parentItem()), QStringList { stored });
    QVERIFY2(!RecordSheet::storeDefaults(node), "The second time nothing is lacking.");
}

void TestSheets::formatSheet_data()
{
    QTest::addColumn<QByteArray>("declared");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QStringList>("rows"); ///< after that of the id
    const auto row = [](const char *name, const QByteArray &declared, const QByteArray &entry, Texts rows) {
        QTest::newRow(name) << declared << entry << list(rows);
    };
    row("own keys in order, id first, all patterns", "",
        "<k zz='1' sceneName='' parent='' statusTip='' toolTip='' text='' id='e'/>",
        { "zz:5=1", "sceneName:5= /[0-9a-zA-Z_.]{0,249}$/", "parent:5= /[a-zA-Z][a-zA-Z0-9-_.]{0,249}/",
            "statusTip:5= /^.{0,1000}$/", "toolTip:5= /^.{0,1000}$/", "text:5= /^.{0,25}$/" });
    row("what it lacks, by default", "<Text key='h' value='d'/><Int key='i'/><String key='own' value='d'/>",
        "<k id='e' own=''/>", { "own:5=", "h:5=d", "i:3=" });
    const QByteArray options("<Data text='one'/><Data text='two'/>");
    row("options as declared, with the pattern",
        "<Enum key='text'>" + options + "</Enum><Flag key='f' value='2'>" + options + "</Flag>",
        "<k id='e' text='two'/>", { "text:7=two {one two} /^.{0,25}$/", "f:8=2 (int) {one two}" });
    row("child types", "<SubExtPoint key='k' childType='Menu||entry'/>", "<k id='e'/>",
        { "childType:5=Menu,entry read-only" });
    for (const char *kind : { "format", "Format", "menubar", "ToolBars" })
        row(kind, "<String key='text' value='d'/>", QByteArray("<") + kind + " id='e' a='1'/>", { "a:5=1" });
}

void TestSheets::formatSheet()
{
    QFETCH(const QByteArray, declared);
    QFETCH(const QByteArray, entry);
    QFETCH(const QStringList, rows);
    const Page page(product(declared, "<other><x>" + entry + "</x></other>"));
    Node *node = reference(page, "e");
    const PropertyHash before = node->properties();
    QCOMPARE(sheetLines(FormatSheet::of(node)), QStringList { s("id:5=e") + s(idOfEntry) } + rows);
    QVERIFY2(node->properties() == before, "Nothing is stored.");
}

/// An own record goes before a sibling's of the same id; all that the entry lacks is shown, declared or not.
void TestSheets::formatEntriesOfRecords()
{
    const Page page(product("<String key='text' value='d'/><Int key='size' value='1'/><Bool key='on'/>",
                        "<format target='t'><k id='r' size='9'/><k id='q'/></format><k id='r' text='own' secret='x'/>"),
        { { "other", data("<k id='q' text='theirs'/><k id='r' text='theirs'/>", "p") } });
    QCOMPARE(sheetLines(FormatSheet::of(reference(page, "r"))).mid(1),
        list({ "size:3=9", "text:5=own /^.{0,25}$/", "secret:5=x", "on:2=" }));
    QCOMPARE(sheetLines(FormatSheet::of(reference(page, "q"))).mid(1),
        list({ "text:5=theirs /^.{0,25}$/", "size:3=1", "on:2=" }));
}

void TestSheets::iconPaths()
{
    const Page page(product("<File key='icon' value='d.png'/>",
                        "<k id='r' icon='i/a.png'/><k id='empty' icon=''/><k id='there' icon='x'/>"
                        "<format target='t'><k id='r'/><k id='q'/><k id='x'/><k id='y' icon='y.png'/></format>"),
        { { "other", data("<k id='q' icon='a.png'/>", "p") } });
    page.record("there")->setProperty(s("icon"), page.path());
    QStringList icons;
    for (const char *id : { "r", "empty", "there" })
        icons.append(RecordSheet::of(page.record(id)).at(1).value().toString());
    for (const char *id : { "r", "q", "x", "y" })
        icons.append(FormatSheet::of(reference(page, id)).at(1).value().toString());
    const QString base = QFileInfo(page.path()).path();
    icons.replaceInStrings(base.chopped(3), QString());
    QCOMPARE(icons,
        list({ "own/i/a.png", "", "own/extension.xml", "own/i/a.png", "other/a.png", "own/d.png", "own/y.png" }));
    QCOMPARE(page.record("r")->property(s("icon")).toString(), s("i/a.png"));
}

/// Who is shown, with the number of uses; nothing is left of it after a click that shows nothing.
void TestSheets::headings()
{
    const Sibling other { "other",
        "<ExtDataSet><ExtData id='host.cmd'><Format target='t'><act id='f'/></Format></ExtData></ExtDataSet>" };
    Page page(points("<ExtPoint id='host.cmd' name='Commands' hasformat='true'><SubExtPoint key='act'/></ExtPoint>"
                     "<ExtPoint id='bare' name='Bare'/>")
            + data("<act id='r'/><act id='q'/><Format target='t'><act id='r'/><act id='r'/></Format>"),
        { other });
    const auto heading = [&] {
        const auto *label = page.sheet()->findChild<QLabel *>(s("sheetHeading"));
        return label->isHidden() ? s("-") : label->accessibleName();
    };
    QCOMPARE(heading(), s("-"));
    page.builder()->onItemClicked(page.point("Commands"), 0);
    QCOMPARE(heading(), s("Records of Commands in this plug-in"));
    page.builder()->onTableItemClicked(page.table()->item(0, 0));
    QCOMPARE(heading(), s("act r, record of Commands, 2 uses"));
    page.tabs()->setCurrentIndex(0);
    page.builder()->onFormatTreeItemClicked(page.entry("r"), 0);
    QCOMPARE(heading(), s("act r, entry of the tab t"));
    page.builder()->onPropertyRealization(s("id"), s("q"));
    QCOMPARE(heading(), s("act q, entry of the tab t"));
    page.builder()->onTableItemClicked(page.table()->item(0, 0));
    QCOMPARE(heading(), s("act r, record of Commands, 1 use"));
    // A sibling's is shown, and nothing in it can be changed.
    page.builder()->onFormatTreeItemClicked(page.entry("f"), 0);
    QCOMPARE(heading(), s("act f, entry of the tab t; belongs to other and can't be changed here"));
    QVERIFY(!page.sheet()->properties().isEmpty());
    for (const PropertyItem &row : page.sheet()->properties())
        QVERIFY(!row.isEditable());
    page.builder()->onPropertyRealization(s("id"), s("stolen"));
    QVERIFY(page.entry("f"));
    page.builder()->onItemClicked(page.point("Bare"), 0);
    QCOMPARE(heading(), s("-"));
    QVERIFY(page.sheet()->properties().isEmpty());
}

void TestSheets::foreignRowsAreReadable_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("ink");
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(35, 38, 41) << QColor(239, 240, 241);
}

/// As painted: paler than own ones, and 4.5:1 all the same.
void TestSheets::foreignRowsAreReadable()
{
    QFETCH(const QColor, ground);
    QFETCH(const QColor, ink);
    const QByteArray bars = "<Format target='t'><act id='%1' text='EHLT'/></Format>";
    const Page page(
        points("<ExtPoint id='p' name='P' hasformat='true'/>") + data(QByteArray(bars).replace("%1", "EHLT"), "p"),
        { { "sib", data(QByteArray(bars).replace("%1", "TLHE"), "p") } });
    page.showTab("t");
    page.clickPoint("P");
    QTRY_VERIFY(page.entry("TLHE"));
    QPalette palette;
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, ink);
    page.formats()->setPalette(palette);
    QFont font = page.formats()->font();
    font.setPixelSize(40);
    page.formats()->setFont(font);
    page.formats()->setCurrentItem(nullptr);
    page.formats()->expandAll();
    const auto luminance = [](const QColor &colour) {
        const auto part
            = [](double value) { return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4); };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
    };
    const auto contrastOf = [&](const char *id) {
        const QImage image = page.formats()->viewport()->grab(page.formats()->visualItemRect(page.entry(id))).toImage();
        double most = 1;
        for (int i = 0; i < image.width() * image.height(); ++i) {
            const double pixel = luminance(image.pixelColor(i % image.width(), i / image.width()));
            const double back = luminance(ground);
            most = qMax(most, (qMax(pixel, back) + 0.05) / (qMin(pixel, back) + 0.05));
        }
        return most;
    };
    QVERIFY(contrastOf("TLHE") >= 4.5);
    QVERIFY(contrastOf("EHLT") > contrastOf("TLHE") + 1);
}

/// An own value given up: the entry shows its record's again and says nothing in the file, the record has the default.
void TestSheets::ownAndTakenOver()
{
    Page page(points("<ExtPoint id='p' name='P' hasformat='true'><SubExtPoint key='act'><Int key='n' "
                     "value='4'/></SubExtPoint><SubExtPoint key='menubar'><Int key='n'/></SubExtPoint></ExtPoint>")
        + data("<act id='r' n='7' text='Record'/><format target='t'><act id='r' text='Mine'/><menubar n='2'/></format>",
            "p"));
    const auto shown = [&](const char *key) {
        for (const PropertyItem &row : page.sheet()->properties()) {
            if (row.name() == s(key)) {
                return s("%1 %2 %3")
                    .arg(row.value().toString(), row.data(PropertyKey::Borrowed).toString(),
                        row.data(PropertyKey::Reset).toString())
                    .simplified();
            }
        }
        return s("no row");
    };
    page.tabs()->setCurrentIndex(0);
    page.builder()->onFormatTreeItemClicked(page.entry("r"), 0);
    QCOMPARE(shown("text"), s("Mine Back to the Record's"));
    QCOMPARE(shown("n"), s("7 Taken over from the record"));
    QCOMPARE(shown("id"), s("r"));
    Q_EMIT page.sheet()->resetRequested(s("text"));
    QCOMPARE(shown("text"), s("Record Taken over from the record"));
    QCOMPARE(page.entry("r")->text(1), s("Record"));
    QCOMPARE(page.modified, 1);
    // What is not there can't be given up.
    Q_EMIT page.sheet()->resetRequested(s("text"));
    QCOMPARE(page.modified, 1);
    // A bar takes nothing over, and would lose the row.
    page.builder()->onFormatTreeItemClicked(page.entry("menubar"), 0);
    QCOMPARE(shown("n"), s("2"));
    page.builder()->onItemClicked(page.point("P"), 0);
    page.builder()->onTableItemClicked(page.table()->item(0, 0));
    QCOMPARE(shown("n"), s("7 Back to the Default"));
    Q_EMIT page.sheet()->resetRequested(s("n"));
    QCOMPARE(shown("n"), s("4 The default of the attribute"));
    const QByteArray saved = page.save();
    QVERIFY(saved.contains("n=\"4\"") && !saved.contains("Mine"));
}

void TestSheets::problemsAreReached_data()
{
    QTest::addColumn<QByteArray>("sets");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("heading");
    QTest::addColumn<QString>("view");
    const QByteArray declared = "<ExtPoint id='p' hasformat='1'><SubExtPoint key='act'><Int key='n' max='5' "
                                "value='%1'/></SubExtPoint></ExtPoint>";
    const auto row = [&](const char *name, const char *standard, const QByteArray &content, int tab,
                         const char *heading, const char *view, const char *point = "p") {
        QTest::newRow(name) << points(QByteArray(declared).replace("%1", standard)) + data(content, point) << tab
                            << s(heading) << s(view);
    };
    row("attribute", "9", "", 0, "Int attribute n of act", "defintionTable");
    row("record", "1", "<act id='a'/><act id='r' n='9'/>", 1, "act r, record of p, 0 uses", "realizTable");
    row("for a point that nobody declares", "1", "<act id='r'/>", 1, "Records of q in this plug-in", "", "q");
    row("entry", "1", "<act id='r'/><format target='t'/><format target='u'><act id='r' parent='gone'/></format>", 1,
        "act r, entry of the tab u", "formatTree");
}

/// From the other page, in another tab, with filters that hide every row: its row and its sheet are shown, with the
/// field being edited.
void TestSheets::problemsAreReached()
{
    QFETCH(const QByteArray, sets);
    QFETCH(const int, tab);
    QFETCH(const QString, heading);
    Page page(sets);
    QTRY_COMPARE(page.manager->problems().all().size(), 1);
    auto *pages = page.find<QTabWidget>("tabWidget");
    pages->setCurrentIndex(1 - tab);
    for (const char *name : { "defintionTree", "defintionTable", "realizationTree", "realizTable", "formatTree" }) {
        if (FilterLine *line = FilterLine::of(page.find<QAbstractItemView>(name)))
            line->findChild<QLineEdit *>()->setText(s("nothing has this"));
    }
    const Problem problem = page.manager->problems().all().first();
    QVERIFY(page.widget->goTo(problem.node, problem.key));
    QCoreApplication::processEvents();
    QCOMPARE(pages->currentIndex(), tab);
    QFETCH(const QString, view);
    if (!view.isEmpty()) {
        const auto *shown = page.find<QAbstractItemView>(qPrintable(view));
        QVERIFY(!shown->visualRect(shown->currentIndex()).isEmpty());
    }
    auto *sheet = tab == 0 ? page.editInfo() : page.sheet();
    QCOMPARE(sheet->findChild<QLabel *>(s("sheetHeading"))->accessibleName(), heading);
    QVERIFY(sheet->editorFor(problem.key));
}

/// A refused text is told and comes back with its field, of that record alone; an id in use is marked and taken.
void TestSheets::whatIsTyped()
{
    struct Tips final : QObject
    {
        QStringList texts;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::StatusTip && !static_cast<QStatusTipEvent *>(event)->tip().isEmpty())
                texts.append(static_cast<QStatusTipEvent *>(event)->tip());
            return false;
        }
    } tips;
    Page page(product("", "<k id='r' text='short'/><k id='q' text='short'/>"));
    page.sheet()->installEventFilter(&tips);
    page.builder()->onItemClicked(Page::row(page.points(), "own")->QTreeWidgetItem::child(0), 0);
    const auto line = [&](const char *key) {
        if (!page.sheet()->openEditor(s(key)))
            qFatal("no editor of %s", key);
        return page.sheet()->editorFor(s(key))->findChild<QLineEdit *>();
    };
    page.builder()->onTableItemClicked(page.table()->item(0, 0));
    const QString refused = s("more than twenty-five characters");
    line("text")->setText(refused);
    (void)line("id");
    QCOMPARE(tips.texts, QStringList { s("text was not taken: %1 (At most 25 characters)").arg(refused) });
    QCOMPARE(page.record("r")->properties().text(s("text")), s("short"));
    page.builder()->onTableItemClicked(page.table()->item(1, 0));
    QCOMPARE(line("text")->text(), s("short"));
    page.builder()->onTableItemClicked(page.table()->item(0, 0));
    QCOMPARE(line("text")->text(), refused);

    QLineEdit *id = line("id");
    QVERIFY(id->toolTip().isEmpty());
    id->setText(s("q"));
    QCOMPARE(id->toolTip(), s("A record (k) of this point has the same id"));
    QVERIFY(page.sheet()->commitEditor());
    QCOMPARE(page.manager->ownRealizations().withId(s("q")).size(), 2);
}

void TestSheets::refusedInAPoint_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text"); // a property of the field
    QTest::addColumn<bool>("leaves");  // the focus goes to the tree
    QTest::newRow("a line") << s("id") << s("text") << true;
    QTest::newRow("a line that keeps the focus") << s("id") << s("text") << false;
    QTest::newRow("several lines") << s("description") << s("plainText") << true;
}

/// The fields of a point stand all the time, and are made anew with each point that is shown.
void TestSheets::refusedInAPoint()
{
    QFETCH(const QString, key);
    QFETCH(const QString, text);
    QFETCH(const bool, leaves);
    const Page page(points("<ExtPoint id='p' name='P' description='d'/><ExtPoint id='q' name='Q' description='e'/>"));
    page.define();
    QVERIFY(QTest::qWaitForWindowActive(page.widget.get()));
    const auto show = [&](const char *point) {
        if (leaves)
            Page::click(page.definitions(), Page::row(page.definitions(), point));
        else
            page.define(point);
    };
    const auto field = [&](const QString &name) {
        QWidget *inner = page.basicInfo()->editorFor(name)->focusProxy();
        inner->setFocus(Qt::TabFocusReason);
        return inner;
    };
    const auto shown = [&] { return page.basicInfo()->editorFor(key)->focusProxy()->property(qPrintable(text)); };
    show("P");
    const QVariant old = shown();
    const QVariant refused = QString(1001, QLatin1Char('-'));
    field(key)->setProperty(qPrintable(text), refused);
    show("Q");
    field(key);
    QVERIFY(shown() != refused);
    show("P");
    QCOMPARE(shown(), leaves ? old : refused);
    for (int i = 0; i < 2; ++i) {
        field(key);
        QCOMPARE(shown(), refused);
        field(s("name"));
        QCOMPARE(shown(), old);
    }
    QCOMPARE(page.modified, 0);
}

void TestSheets::chosenFiles_data()
{
    QTest::addColumn<QString>("old");
    QTest::addColumn<QString>("chosen"); ///< "<dir>" is the plug-in's directory
    QTest::addColumn<QString>("stored");
    QTest::newRow("below the plug-in") << s("") << s("<dir>/images/a.png") << s("images/a.png");
    QTest::newRow("beside, was relative") << s("b.png") << s("<dir>/../a.png") << s("../a.png");
    QTest::newRow("beside, was absolute") << s("/b.png") << s("/usr/a.png") << s("/usr/a.png");
    QTest::newRow("given up") << s("b.png") << s("") << s("b.png");
}

void TestSheets::chosenFiles()
{
    QFETCH(const QString, old);
    QFETCH(QString, chosen);
    QFETCH(const QString, stored);
    Page page(product("<File key='picture'/>", "<k id='r' picture='" + old.toUtf8() + "'/>"));
    const QString directory = QFileInfo(page.path()).absolutePath();
    chosen.replace(s("<dir>"), directory);
    if (!chosen.isEmpty())
        chosen = QDir::cleanPath(chosen);
    QString start;
    PropertyDialogs::setFileDialog([&](QWidget *, const QString &, const QString &from, const QString &) {
        start = from;
        return chosen;
    });
    const auto restore = qScopeGuard([] { PropertyDialogs::setFileDialog({}); });
    page.builder()->onItemClicked(Page::row(page.points(), "own")->QTreeWidgetItem::child(0), 0);
    page.builder()->onTableItemClicked(page.table()->item(0, 0));
    QVERIFY(page.sheet()->openEditor(s("picture")));
    page.sheet()->editorFor(s("picture"))->findChild<QToolButton *>()->click();
    QCOMPARE(start, directory);
    QCOMPARE(page.record("r")->properties().text(s("picture")), stored);
}

QTEST_MAIN(TestSheets)
#include "tst_sheets.moc"

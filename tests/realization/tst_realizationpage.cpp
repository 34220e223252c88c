#include "realizationpage.h"

#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QScrollBar>

using namespace RealizationTesting;

namespace {

/// The plug-in whose point everybody realizes.
const Sibling host { "host",
    R"(<ExtPointSet><ExtPoint id="host.cmd" name="Commands" displaylabel="text" displayicon="icon" hasformat="true">
<String key="text" value="New" trans="true"/><String key="tip" value="Do it"/>
<SubExtPoint key="format" name="Window" childType="context|menubar"/>
<SubExtPoint key="menubar" name="Menu bar" childType="menu"/>
<SubExtPoint key="menu" name="Menu" childType="menu|Action"><String key="text" value="Menu"/></SubExtPoint>
<SubExtPoint key="action" name="Action"/></ExtPoint>
<ExtPoint id="host.plain" name="Plain"/></ExtPointSet>)" };

/// What a tab shows, a row after the other.
QString shown(const Page &page)
{
    return page.formatLines().join(QLatin1Char(';'));
}

} // namespace

class TestRealizationPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tabsShowWhatFillsThem_data();
    void tabsShowWhatFillsThem();
    void records_data();
    void records();
    void refillKeepsWhatThePersonDid();
    void pressMovesNothing_data();
    void pressMovesNothing();
    void menuOffers_data();
    void menuOffers();
    void createsAndDeletesEntries();
    void deletingARootTakesItsTab();
    void addFormatTree();
    void ownPluginStandsOut();
};

void TestRealizationPage::tabsShowWhatFillsThem_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QVector<QByteArray>>("siblings");
    QTest::addColumn<QString>("tabs"); ///< that of a sibling alone in parentheses
    QTest::addColumn<QString>("rows");
    const auto row = [](const char *name, const char *own, const QVector<QByteArray> &siblings, const char *tabs,
                         const char *rows) { QTest::newRow(name) << data(own) << siblings << s(tabs) << s(rows); };
    row("own format", "<format target='t' title='T'><a id='1'/><b/></format>", {}, "t|T", "format=T;  1;  b");
    row("own format with an id", "<format id='i' target='t' toolTip='Tip'><a/></format>", {}, "i|Tip", "i;  a");
    row("two own formats of one target stand under the first",
        "<Format target='t'><a id='1'/></Format><Format target='t'><b id='2' parent='1'/><c/></Format>", {}, "t|t",
        "Format;  1;    2;  c");
    row("all roots of one target, whatever the first is called",
        "<format id='a' target='t'><menu id='1'/></format><format target='t'><menu id='2'/></format>", {}, "a|a",
        "a;  1;  2");
    row("a menu called like a kind, and what names it",
        "<format target='t'><menu/><menu id='menu'/></format><Format target='t'><action id='a' parent='menu'/>"
        "<menu id='b' parent='c'/><action id='c2' parent='b'/></Format>",
        {}, "t|t", "format;  menu;  menu;    a;  b;    c2");
    row("own layout", "<Layout id='l' title='L'><area id='x'/></Layout>", {}, "l|L", "l=L;  x");
    row("sibling's format", "", { "<Format target='t'><a id='1'/></Format>" }, "(t|t)", "Format;  1");
    row("sibling's layout", "", { "<Layout id='l' title='L'><area id='x'/></Layout>" }, "(l|L)", "l=L;  x");
    row("siblings merged, what is left under the second is shown", "",
        { "<Format target='t'><MenuBar><m id='1'/></MenuBar></Format>",
            "<Format target='t'><MenuBar><m id='2'/></MenuBar><z id='3'/></Format>" },
        "(t|t)", "Format;  MenuBar;    1;    2;  3");
    row("own and sibling's, everything in place",
        "<Format target='t'><x id='1' parent='m'/><y id='2' parent='menubar'/><z id='3' parent='nowhere'/></Format>",
        { "<Format target='t'><menubar><m id='m'/></menubar></Format>" }, "t|t",
        "Format;  menubar;    m;      1;    2;  3");
    row("own bars take the sibling's entries", "<format target='t'><menubar><m id='1'/></menubar></format>",
        { "<format target='t'><menubar><m id='2'/></menubar><toolbars><n id='3'/></toolbars></format>" }, "t|t",
        "format;  menubar;    1;    2;  toolbars;    3");
    row("own entries in a sibling's layout",
        "<Format target='l'><x id='1' parent='l'/><y id='2' parent='area'/></Format>",
        { "<Layout id='l' title='L'><area><q id='q'/></area></Layout>" }, "l|L", "l=L;  area;    q;    2;  1");
    row("an entry of both is one row", "<format target='t'><menu id='m'><a id='1'/></menu></format>",
        { "<format target='t'><menu id='m'><a id='2'/></menu></format>" }, "t|t", "format;  m;    1;    2");
    row("no name, no tab", "<format title='T'><a/></format>", { "<Format><a/></Format>" }, "", "");
    row("the last of a ring of parents stays at the top",
        "<Format target='t'><x id='1' parent='2'/><y id='2' parent='1'/></Format>",
        { "<Format target='t'><z/></Format>" }, "t|t", "Format;  z;  2;    1");
}

void TestRealizationPage::tabsShowWhatFillsThem()
{
    QFETCH(const QByteArray, own);
    QFETCH(const QVector<QByteArray>, siblings);
    QFETCH(const QString, rows);
    QVector<Sibling> files { host };
    for (int i = 0; i < siblings.size(); ++i)
        files.append({ i == 0 ? "s1" : "s2", data(siblings.at(i)) });
    Page page(own, files);
    page.clickPoint();
    const QString tabs = page.tabNames().join(QLatin1Char(','));
    QTRY_COMPARE(shown(page), rows);
    QTEST(tabs.isEmpty() || page.formats()->directDrop() ? tabs : QLatin1Char('(') + tabs + QLatin1Char(')'), "tabs");
    // Siblings are never written to, and what was saved shows the same again.
    page.save();
    page.reopen();
    page.clickPoint();
    QTRY_COMPARE(shown(page), rows);
}

void TestRealizationPage::records_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<QString>("rows");
    const auto row = [](const char *name, const char *attributes, const char *shown, const char *rows) {
        QTest::newRow(name) << QByteArray(attributes) << QByteArray(shown) << s(rows);
    };
    const char *const plain = "a|A|a.png(icon);b|B|();c|C|()";
    row("nothing named", "", "P", plain);
    row("named empty", "displaylabel='' displayicon=''", "P", plain);
    row("named", "displayLabel='title' displayIcon='icon'", "P", "a||a.png(icon);b|B|();c|D|()");
    row("other keys", "displayLabel='icon' displayIcon='preview'", "P", "a|a.png(icon)|;b|()|;c|()|c.png");
    row("with formats", "hasformat='true' displayLabel='text'", "P", "a|A|a.png(icon)|2|[x];b||()|0|[ ];c|C|()|0|[ ]");
    row("a sub point", "hasformat='1' displayLabel='title'", "S", "b|B|()|0|[ ];c|C|()|0|[ ]");
}

void TestRealizationPage::records()
{
    QFETCH(const QByteArray, attributes);
    QFETCH(const QByteArray, shown);
    const Page page(points("<ExtPoint name='P' id='p' " + attributes + "><SubExtPoint key='Sub' name='S'/></ExtPoint>")
        + data("<k id='a' text='A' icon='a.png'/><Sub id='b' title='B'/><sub id='c' text='C' title='D' "
               "preview='c.png'/><k text='no id'/><format target='t'><k id='a'/><x><k id='a'/></x></format>",
            "p"));
    page.clickPoint(shown.constData());
    QStringList lines = Page::lines(page.table());
    QCOMPARE(lines.takeFirst(),
        attributes.contains("hasformat") ? s("id|displayLabel|displayIcon|used|format")
                                         : s("id|displayLabel|displayIcon"));
    QTEST(lines.join(QLatin1Char(';')), "rows");
}

void TestRealizationPage::refillKeepsWhatThePersonDid()
{
    QByteArray menus;
    for (int i = 0; i < 60; ++i)
        menus += "<menu id='m" + QByteArray::number(i) + "'><action id='x'/></menu>";
    const Page page(data("<format target='t'><menubar>" + menus + "</menubar></format>"), { host });
    page.clickPoint();
    page.clickEntry("m40");
    page.entry("m3")->setExpanded(false);
    page.formats()->verticalScrollBar()->setValue(25);
    const int scroll = page.formats()->verticalScrollBar()->value();
    const QStringList sheet = page.sheetKeys();
    // A sibling arrives late.
    auto *late = ModelTesting::node(s("Format"), { { s("target"), s("t") } });
    late->addChild(ModelTesting::node(s("context")), false);
    page.manager->allDataRoot()->addChild(late, false);
    page.manager->allFormatRoot(late);
    QWidget *const before = page.entry("m40")->treeWidget();
    // Not while somebody types.
    page.sheet()->openEditor(s("id"));
    Q_EMIT page.manager->scanProgressed();
    QTest::qWait(300);
    QVERIFY(!page.entry("context"));
    page.sheet()->commitEditor();
    page.formats()->setFocus();
    QTRY_VERIFY(page.entry("context"));
    QCOMPARE(page.entry("m40")->treeWidget(), before);
    QVERIFY(!page.entry("m3")->isExpanded() && page.entry("m4")->isExpanded());
    QCOMPARE(page.formats()->currentItem()->text(0), s("m40"));
    QVERIFY(page.entry("m40")->isSelected());
    QCOMPARE(page.formats()->verticalScrollBar()->value(), scroll);
    QCOMPARE(page.sheetKeys(), sheet);
    // The sheet still edits what it shows.
    page.edit("text", "Forty");
    QCOMPARE(page.entry("m40")->QTreeWidgetItem::text(1), s("Forty"));
    QVERIFY(page.save().contains("<menu id=\"m40\" text=\"tr('Forty')\">"));
}

void TestRealizationPage::pressMovesNothing_data()
{
    QTest::addColumn<QString>("end");
    for (const char *end : { "click", "release beside it", "drag" })
        QTest::newRow(end) << s(end);
}

/// What is dragged can only be dropped onto what stays where it is.
void TestRealizationPage::pressMovesNothing()
{
    QFETCH(QString, end);
    QByteArray menus;
    for (int i = 0; i < 80; ++i)
        menus += "<menu id='m" + QByteArray::number(i) + "'/>";
    const Page page(
        data("<format target='t'><menubar>" + menus + "</menubar></format><menu id='m79'/><menu id='m0'/>"), { host });
    page.clickPoint();
    page.clickRecord(1);
    const auto seen = [&page] {
        QStringList selected;
        for (const QTreeWidgetItem *item : page.formats()->selectedItems())
            selected.append(item->text(0));
        return s("%1 at %2, %3 of %4, %5")
            .arg(selected.join(QLatin1Char(' ')))
            .arg(page.formats()->verticalScrollBar()->value() > 0)
            .arg(page.table()->selectionModel()->selectedRows().value(0).row())
            .arg(page.records().size())
            .arg(page.sheet()->properties().value(0).value().toString());
    };
    const QString before = seen();
    QCOMPARE(before, s("m0 at 0, 1 of 2, m0"));
    const QPoint place = page.table()->visualItemRect(page.table()->item(0, 0)).center();
    QTest::mousePress(page.table()->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(seen(), s("m0 at 0, 0 of 2, m0"));
    const bool isDrag = end == s("drag");
    if (isDrag) {
        // On this platform it is over at once.
        QMouseEvent move(QEvent::MouseMove, place + QPoint(60, 0), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(page.table()->viewport(), &move);
    }
    const QPoint beside(0, end == s("release beside it") ? page.table()->rowHeight(0) : 0);
    QTest::mouseRelease(page.table()->viewport(), Qt::LeftButton, {}, place + beside);
    QTRY_COMPARE(seen(), isDrag ? before : s("m79 at 1, 0 of 2, m79"));

    // A point that is dragged shows neither its records nor its format.
    const QPoint plain = page.points()->visualItemRect(page.point("Plain")).center();
    QTest::mousePress(page.points()->viewport(), Qt::LeftButton, {}, plain);
    QCOMPARE(page.records().size(), 2);
    QVERIFY(page.formats()->isVisible());
    if (isDrag) {
        QMouseEvent move(QEvent::MouseMove, plain + QPoint(60, 0), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(page.points()->viewport(), &move);
        QCOMPARE(page.points()->currentItem()->text(0), s("Commands"));
    }
    QTest::mouseRelease(page.points()->viewport(), Qt::LeftButton, {}, plain);
    QTRY_COMPARE(page.formats()->isVisible(), isDrag);
    // The keyboard is not held back by what the mouse has done.
    page.points()->setCurrentItem(page.point(isDrag ? "Plain" : "Commands"));
    QCOMPARE(page.formats()->isVisible(), !isDrag);
    // But what a point could be dropped onto comes into sight for a drag.
    page.clickPoint("host");
    QVERIFY(!page.table()->isVisible());
    const QPoint commands = page.points()->visualItemRect(page.point("Commands")).center();
    QTest::mousePress(page.points()->viewport(), Qt::LeftButton, {}, commands);
    QVERIFY(page.table()->isVisible() && page.formats()->isVisible());
    QTest::mouseRelease(page.points()->viewport(), Qt::LeftButton, {}, commands);
}

void TestRealizationPage::menuOffers_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("offered");
    const auto row = [](const char *name, const char *own, const char *entry, const char *offered) {
        QTest::newRow(name) << data(own) << QByteArray(entry) << s(offered);
    };
    row("a root, both bars", "<format target='t'/>", "format",
        "Child Type;Child Type > context;Child Type > menubar;Child Type > toolbars;Delete;Copy;Cut;-Paste");
    row("a root with a bar", "<format target='t'><MenuBar/></format>", "format",
        "Child Type;Child Type > context;Child Type > toolbars;Delete;Copy;Cut;-Paste");
    row("a root with everything", "<format target='t'><menubar/><toolbars/><context/></format>", "format",
        "-Child Type;Delete;Copy;Cut;-Paste");
    row("the kinds as written", "<format target='t'><menu id='m'/></format>", "m",
        "Child Type;Child Type > menu;Child Type > Action;Delete;Copy;Cut;-Paste");
    row("no definition", "<format target='t'><what id='w'/></format>", "w", "-Child Type;Delete;Copy;Cut;-Paste");
    row("a root tagged so", "<Format target='t'/>", "Format", "-Child Type;-Delete;-Copy;-Cut;-Paste");
}

void TestRealizationPage::menuOffers()
{
    QFETCH(const QByteArray, own);
    QFETCH(const QByteArray, entry);
    const Page page(own, { host });
    page.clickPoint();
    QTEST(page.menuOf(entry).join(QLatin1Char(';')), "offered");
    QVERIFY(page.menu(page.formats(), QPoint(5, page.formats()->viewport()->height() - 2)).isEmpty());
    QCOMPARE(page.menu(page.table(), QPoint(5, page.table()->viewport()->height() - 2)),
        list({ "-Delete", "Meta", "Create Record", "-Copy", "-Paste" }));
}

void TestRealizationPage::createsAndDeletesEntries()
{
    Page page(data("<format target='own.tab'><menubar><menu id='m1'><action id='a2' text='Mine'/></menu></menubar>"
                   "<context><action id='a1'/></context></format>"),
        { host });
    page.clickPoint();
    page.menuOf("format", "Child Type > toolbars");
    QCOMPARE(page.formats()->currentItem(), static_cast<QTreeWidgetItem *>(page.entry("toolbars")));
    page.menuOf("m1", "Child Type > menu");
    const QString id = page.formats()->currentItem()->text(0);
    QVERIFY2(QRegularExpression(s("^own\\.menu\\.[0-9]{1,4}$")).match(id).hasMatch(), qUtf8Printable(id));
    QCOMPARE(page.sheetKeys().first(), s("id"));
    QCOMPARE(page.modified, 2);
    const QByteArray saved = page.save();
    QVERIFY(saved.contains(
        "<action id=\"a2\" text=\"tr('Mine')\"/>\n                        <menu id=\"" + id.toUtf8() + "\"/>"));
    QVERIFY(saved.contains("</context>\n                <toolbars/>"));
    // Bars have no id: the one that was clicked goes.
    page.press(page.formats(), Qt::Key_Delete);
    page.menuOf("menubar", "Delete");
    QCOMPARE(shown(page), s("format;  context;    a1;  toolbars"));
    QCOMPARE(page.modified, 4);
    page.save();
    page.reopen();
    page.clickPoint();
    QCOMPARE(shown(page), s("format;  context;    a1;  toolbars"));
}

void TestRealizationPage::deletingARootTakesItsTab()
{
    const Page page(data("<format target='one'/><format target='two'><x/></format><format target='two'><y/></format>"),
        { host, { "s1", data("<format target='three'><z/></format>") } });
    page.clickPoint();
    QCOMPARE(page.tabNames(), list({ "one|one", "two|two", "three|three" }));
    page.menuOf("format", "Delete");
    QCOMPARE(page.tabNames(), list({ "two|two", "three|three" }));
    QCOMPARE(shown(page), s("format;  x;  y"));
    page.menuOf("format", "Delete");
    QCOMPARE(shown(page), s("format;  y"));
    page.showTab("three");
    QCOMPARE(shown(page), s("format;  z"));
    // The name of a tab can be edited.
    page.showTab("two");
    page.clickEntry("format");
    page.edit("target", "renamed");
    page.edit("title", "Label");
    QCOMPARE(page.tabNames(), list({ "renamed|Label", "three|three" }));
    QVERIFY(page.save().contains("<format target=\"renamed\""));
    page.menuOf("format", "Delete");
    QCOMPARE(page.tabNames(), list({ "three|three" }));
    QVERIFY(!page.save().contains("format"));
}

void TestRealizationPage::addFormatTree()
{
    Page page("", { host });
    page.clickPoint();
    QVERIFY(page.find<QPushButton>("pushButton_add_format_tree")->isHidden());
    page.press("pushButton_add_format_tree");
    const QString name = page.tabs()->widget(0)->objectName();
    QVERIFY2(QRegularExpression(s("^own\\.layout\\.[0-9]{1,4}$")).match(name).hasMatch(), qUtf8Printable(name));
    QCOMPARE(shown(page), s("format"));
    QCOMPARE(page.modified, 1);
    page.menuOf("format", "Child Type > menubar");
    QVERIFY(page.save().contains("<format target=\"" + name.toUtf8() + "\">\n            <menubar/>"));
    page.reopen();
    QCOMPARE(page.tabs()->widget(0)->objectName(), name);
}

void TestRealizationPage::ownPluginStandsOut()
{
    const QByteArray point = points("<ExtPoint id='p' name='P'/>");
    QVector<QByteArray> names;
    for (int i = 10; i < 70; ++i)
        names << "a" + QByteArray::number(i) << "z" + QByteArray::number(i);
    QVector<Sibling> siblings;
    for (const QByteArray &name : qAsConst(names))
        siblings.append({ name.constData(), point });
    Page page(point, siblings, false);
    page.widget.reset();
    page.manager = std::make_unique<SourceDataManager>();
    Controller::instance()->setSourceDataManager(page.manager.get());
    page.widget = std::make_unique<ExtPointWidget>();
    QVERIFY(page.manager->load(page.path()));
    page.widget->reloadPages();
    page.widget->show();
    page.showPage(1);
    const auto standOut = [&page] {
        QStringList rows;
        for (QTreeWidgetItemIterator it(page.points()); *it; ++it) {
            const bool inSight
                = page.points()->viewport()->rect().contains(page.points()->visualItemRect(*it).center());
            const bool isPlugin = (*it)->parent() && !(*it)->parent()->parent();
            if (isPlugin && ((*it)->font(0).bold() || (*it)->isExpanded()))
                rows.append((*it)->text(0) + s((*it)->font(0).bold() ? " bold" : "")
                    + s((*it)->isExpanded() ? " unfolded" : "") + s(inSight ? " seen" : ""));
        }
        return rows;
    };
    QTRY_COMPARE(standOut(), list({ "own bold unfolded seen" }));
    page.manager->startScan(page.path());
    page.manager->completeScan();
    QTRY_COMPARE(standOut(), list({ "own bold unfolded seen" }));
    QCOMPARE(page.point("own")->QTreeWidgetItem::parent()->indexOfChild(page.point("own")), 60);
    page.manager->definitionRoot()->setProperty(s("id"), s("new"));
    Controller::instance()->flushChanges();
    QCOMPARE(standOut(), list({ "new bold unfolded seen" }));
}

QTEST_MAIN(TestRealizationPage)
#include "tst_realizationpage.moc"

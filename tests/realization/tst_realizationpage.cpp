#include "realizationpage.h"

#include <QRegularExpression>
#include <QScrollBar>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;

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

const char ownData[] = R"(<ExtDataSet><ExtData plugin="own" id="host.cmd" extPlugin="host">
<format target="own.tab" title="Own tab"><menubar><menu id="m1"><action id="a1"/><action id="a2" text="Mine"/></menu></menubar>
<context><action id="a1"/></context></format>
<menu id="m1" text="File"/><action id="a1" text="Open" icon="none.png"/><action id="a2" text="Shut"/><action id="a3"/>
</ExtData></ExtDataSet>)";

QByteArray inHolder(const char *content, const char *point = "host.cmd")
{
    return QByteArray("<ExtDataSet><ExtData id=\"") + point + "\">" + content + "</ExtData></ExtDataSet>";
}

} // namespace

class TestRealizationPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tabsShowWhatFillsThem_data();
    void tabsShowWhatFillsThem();
    void refillKeepsWhatThePersonDid();
    void menuOffers_data();
    void menuOffers();
    void createsAndDeletesEntries();
    void deletingARootTakesItsTab();
    void addFormatTree();
};

void TestRealizationPage::tabsShowWhatFillsThem_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QVector<QByteArray>>("siblings");
    QTest::addColumn<QString>("tabs");
    QTest::addColumn<bool>("editable");
    QTest::addColumn<QStringList>("rows");
    const auto row = [](const char *name, const QByteArray &own, const QVector<QByteArray> &siblings, const char *tabs,
                         bool editable, const QStringList &rows) {
        QTest::newRow(name) << own << siblings << s(tabs) << editable << rows;
    };
    row("own format", inHolder("<format target='t' title='T'><a id='1'/><b/></format>"), {}, "t|T", true,
        { s("format=T"), s("  1"), s("  b") });
    row("own format with an id", inHolder("<format id='i' target='t' toolTip='Tip'><a/></format>"), {}, "i|Tip", true,
        { s("i"), s("  a") });
    row("two own formats of one target stand under the first",
        inHolder("<Format target='t'><a id='1'/></Format><Format target='t'><b id='2' parent='1'/><c/></Format>"), {},
        "t|t", true, { s("Format"), s("  1"), s("    2"), s("  c") });
    row("own layout", inHolder("<Layout id='l' title='L'><area id='x'/></Layout>"), {}, "l|L", true,
        { s("l=L"), s("  x") });
    row("sibling's format", "", { "<Format target='t'><a id='1'/></Format>" }, "t|t", false, { s("Format"), s("  1") });
    row("sibling's layout", "", { "<Layout id='l' title='L'><area id='x'/></Layout>" }, "l|L", false,
        { s("l=L"), s("  x") });
    row("siblings merged, what is left under the second is shown", "",
        { "<Format target='t'><MenuBar><m id='1'/></MenuBar></Format>",
            "<Format target='t'><MenuBar><m id='2'/></MenuBar><z id='3'/></Format>" },
        "t|t", false, { s("Format"), s("  MenuBar"), s("    1"), s("    2"), s("  3") });
    row("own and sibling's, everything in place",
        inHolder("<Format target='t'><x id='1' parent='m'/><y id='2' parent='menubar'/><z id='3' "
                 "parent='nowhere'/></Format>"),
        { "<Format target='t'><menubar><m id='m'/></menubar></Format>" }, "t|t", true,
        { s("Format"), s("  menubar"), s("    m"), s("      1"), s("    2"), s("  3") });
    row("own bars take the sibling's entries", inHolder("<format target='t'><menubar><m id='1'/></menubar></format>"),
        { "<format target='t'><menubar><m id='2'/></menubar><toolbars><n id='3'/></toolbars></format>" }, "t|t", true,
        { s("format"), s("  menubar"), s("    1"), s("    2"), s("  toolbars"), s("    3") });
    row("own entries in a sibling's layout",
        inHolder("<Format target='l'><x id='1' parent='l'/><y id='2' parent='area'/></Format>"),
        { "<Layout id='l' title='L'><area><q id='q'/></area></Layout>" }, "l|L", true,
        { s("l=L"), s("  area"), s("    q"), s("    2"), s("  1") });
    row("an entry of both is one row", inHolder("<format target='t'><menu id='m'><a id='1'/></menu></format>"),
        { "<format target='t'><menu id='m'><a id='2'/></menu></format>" }, "t|t", true,
        { s("format"), s("  m"), s("    1"), s("    2") });
    row("no name, no tab", inHolder("<format title='T'><a/></format>"), { "<Format><a/></Format>" }, "", false, {});
    row("the last of a ring of parents stays at the top",
        inHolder("<Format target='t'><x id='1' parent='2'/><y id='2' parent='1'/></Format>"),
        { "<Format target='t'><z/></Format>" }, "t|t", true, { s("Format"), s("  z"), s("  2"), s("    1") });
}

void TestRealizationPage::tabsShowWhatFillsThem()
{
    QFETCH(QByteArray, own);
    // A file without anything can't be opened again.
    own.prepend("<ExtPointSet/>");
    QFETCH(const QVector<QByteArray>, siblings);
    QFETCH(const QString, tabs);
    QFETCH(const bool, editable);
    QVector<Sibling> files { host };
    const char *const names[] = { "s1", "s2" };
    for (int i = 0; i < siblings.size(); ++i)
        files.append({ names[i], inHolder(siblings.at(i).constData()) });
    Page page(own, files);
    page.clickPoint("Commands");
    QCOMPARE(page.tabNames().join(QLatin1Char(',')), tabs);
    QFETCH(const QStringList, rows);
    QTRY_COMPARE(page.formatLines(), rows);
    if (!tabs.isEmpty())
        QCOMPARE(page.formats()->directDrop(), editable);
    // Siblings are never written to, and what was saved shows the same again.
    page.save();
    page.reopen();
    page.clickPoint("Commands");
    QTRY_COMPARE(page.formatLines(), rows);
}

void TestRealizationPage::refillKeepsWhatThePersonDid()
{
    QByteArray menus;
    for (int i = 0; i < 60; ++i)
        menus += "<menu id='m" + QByteArray::number(i) + "'><action id='x'/></menu>";
    Page page(inHolder(("<format target='t'><menubar>" + menus + "</menubar></format>").constData()), { host });
    page.clickPoint("Commands");
    page.clickEntry("m40");
    page.entry("m3")->setExpanded(false);
    page.formats()->verticalScrollBar()->setValue(25);
    const int scroll = page.formats()->verticalScrollBar()->value();
    const QStringList sheet = page.sheetKeys();
    // A sibling arrives late.
    auto *late = new Node(QString());
    late->setKind(s("Format"));
    late->setPluginId(s("late"));
    late->setProperty(s("target"), s("t"));
    auto *entry = new Node(QString());
    entry->setKind(s("context"));
    late->addChild(entry, false);
    page.manager->allDataRoot()->addChild(late, false);
    page.manager->allFormatRoot(late);
    QWidget *const before = page.entry("m40")->treeWidget();
    {
        // Not while somebody types.
        page.sheet()->openEditor(s("id"));
        Q_EMIT page.manager->scanProgressed();
        QTest::qWait(300);
        QVERIFY(!page.entry("context"));
        page.sheet()->commitEditor();
        page.formats()->setFocus();
    }
    QTRY_VERIFY(page.entry("context"));
    QCOMPARE(page.entry("m40")->treeWidget(), before);
    QVERIFY(!page.entry("m3")->isExpanded() && page.entry("m4")->isExpanded());
    QCOMPARE(page.formats()->currentItem()->text(0), s("m40"));
    QVERIFY(page.entry("m40")->isSelected());
    QCOMPARE(page.formats()->verticalScrollBar()->value(), scroll);
    QCOMPARE(page.sheetKeys(), sheet);
    // The sheet still edits what it shows.
    page.edit("text", s("Forty"));
    QCOMPARE(page.entry("m40")->QTreeWidgetItem::text(1), s("Forty"));
    QVERIFY(page.save().contains("<menu id=\"m40\" text=\"tr('Forty')\">"));
}

void TestRealizationPage::menuOffers_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("offered");
    const auto row = [](const char *name, const char *own, const char *entry, const QStringList &offered) {
        QTest::newRow(name) << inHolder(own) << s(entry) << offered;
    };
    const QString types = s("Child Type");
    row("a root, both bars", "<format target='t'/>", "format",
        { types, s("Child Type > context"), s("Child Type > menubar"), s("Child Type > toolbars"), s("Delete") });
    row("a root with a bar", "<format target='t'><MenuBar/></format>", "format",
        { types, s("Child Type > context"), s("Child Type > toolbars"), s("Delete") });
    row("a root with everything", "<format target='t'><menubar/><toolbars/><context/></format>", "format",
        { s("-Child Type"), s("Delete") });
    row("the kinds as written", "<format target='t'><menu id='m'/></format>", "m",
        { types, s("Child Type > menu"), s("Child Type > Action"), s("Delete") });
    row("no definition", "<format target='t'><what id='w'/></format>", "w", { s("-Child Type"), s("Delete") });
    row("a root tagged so", "<Format target='t'/>", "Format", { s("-Child Type"), s("-Delete") });
}

void TestRealizationPage::menuOffers()
{
    QFETCH(const QByteArray, own);
    QFETCH(const QString, entry);
    Page page(own, { host });
    page.clickPoint("Commands");
    QTEST(page.menuOf(entry.toUtf8().constData()), "offered");
    QVERIFY(page.menu(page.formats(), QPoint(5, page.formats()->viewport()->height() - 2)).isEmpty());
}

void TestRealizationPage::createsAndDeletesEntries()
{
    Page page(ownData, { host });
    page.clickPoint("Commands");
    page.menuOf("format", s("Child Type > toolbars"));
    QCOMPARE(page.formats()->currentItem(), static_cast<QTreeWidgetItem *>(page.entry("toolbars")));
    page.menuOf("m1", s("Child Type > menu"));
    Node *menu = Node::fromRow(page.formats()->currentItem());
    const QString id = menu->property(s("id")).toString();
    QVERIFY2(QRegularExpression(s("^own\\.menu\\.[0-9]{1,4}$")).match(id).hasMatch(), qUtf8Printable(id));
    QCOMPARE(page.sheetKeys().first(), s("id"));
    QCOMPARE(page.modified, 2);
    QByteArray saved = page.save();
    QVERIFY(saved.contains(
        "<action id=\"a2\" text=\"tr('Mine')\"/>\n                        <menu id=\"" + id.toUtf8() + "\"/>"));
    QVERIFY(saved.contains("</context>\n                <toolbars/>"));
    // Bars have no id: the one that was clicked goes.
    page.press(page.formats(), Qt::Key_Delete);
    page.menuOf("menubar", s("Delete"));
    QCOMPARE(
        page.formatLines(), (QStringList { s("format=Own tab"), s("  context"), s("    a1=Open"), s("  toolbars") }));
    saved = page.save();
    QVERIFY(!saved.contains("menubar") && saved.contains("<context>") && saved.contains("<toolbars/>"));
    QCOMPARE(page.modified, 4);
    page.reopen();
    page.clickPoint("Commands");
    QCOMPARE(
        page.formatLines(), (QStringList { s("format=Own tab"), s("  context"), s("    a1=Open"), s("  toolbars") }));
}

void TestRealizationPage::deletingARootTakesItsTab()
{
    Page page(inHolder("<format target='one'/><format target='two'><x/></format><format target='two'><y/></format>"),
        { host, { "s1", inHolder("<format target='three'><z/></format>") } });
    page.clickPoint("Commands");
    QCOMPARE(page.tabNames(), (QStringList { s("one|one"), s("two|two"), s("three|three") }));
    page.menuOf("format", s("Delete"));
    QCOMPARE(page.tabNames(), (QStringList { s("two|two"), s("three|three") }));
    QCOMPARE(page.formatLines(), (QStringList { s("format"), s("  x"), s("  y") }));
    page.menuOf("format", s("Delete"));
    QCOMPARE(page.formatLines(), (QStringList { s("format"), s("  y") }));
    page.showTab("three");
    QCOMPARE(page.formatLines(), (QStringList { s("format"), s("  z") }));
    // The name of a tab can be edited.
    page.showTab("two");
    page.clickEntry("format");
    page.edit("target", s("renamed"));
    QCOMPARE(page.tabNames(), (QStringList { s("renamed|renamed"), s("three|three") }));
    QVERIFY(page.save().contains("<format target=\"renamed\">"));
    page.edit("title", s("Label"));
    QCOMPARE(page.tabNames(), (QStringList { s("renamed|Label"), s("three|three") }));
    page.menuOf("format", s("Delete"));
    QCOMPARE(page.tabNames(), QStringList { s("three|three") });
    QVERIFY(!page.save().contains("format"));
}

void TestRealizationPage::addFormatTree()
{
    Page page("", { host });
    page.clickPoint("Commands");
    QVERIFY(page.find<QPushButton>("pushButton_add_format_tree")->isHidden());
    page.find<QPushButton>("pushButton_add_format_tree")->click();
    const QString name = page.tabs()->widget(0)->objectName();
    QVERIFY2(QRegularExpression(s("^own\\.layout\\.[0-9]{1,4}$")).match(name).hasMatch(), qUtf8Printable(name));
    QCOMPARE(page.formatLines(), QStringList { s("format") });
    QCOMPARE(page.modified, 1);
    page.menuOf("format", s("Child Type > menubar"));
    const QByteArray saved = page.save();
    QVERIFY(saved.contains("<format target=\"" + name.toUtf8() + "\">\n            <menubar/>"));
    page.reopen();
    QCOMPARE(page.tabs()->widget(0)->objectName(), name);
}

QTEST_MAIN(TestRealizationPage)
#include "tst_realizationpage.moc"

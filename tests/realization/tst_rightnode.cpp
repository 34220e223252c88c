// What a user does reaches the node that was meant, all of it, and nothing else: by the file that is saved.

#include "realizationpage.h"

#include "form/drops/entrymove.h"
#include "form/drops/recorddrop.h"

#include <QLineEdit>
#include <QPlainTextEdit>

#include <functional>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;
using Check = std::function<void(Page &)>;
using Texts = std::initializer_list<const char *>;

Q_DECLARE_METATYPE(Check)

namespace {

const Sibling host { "host",
    R"(<ExtPointSet><ExtPoint id="host.cmd" name="Commands" hasformat="true"><String key="text" trans="true"/>
<SubExtPoint key="format" childType="menubar|menu|action"/><SubExtPoint key="menubar" childType="menu"/>
<SubExtPoint key="layout" childType="menu"/><SubExtPoint key="menu" childType="menu|action"><String key="text" trans="true"/></SubExtPoint>
<SubExtPoint key="action" name="Action"><String key="text" trans="true"/></SubExtPoint></ExtPoint></ExtPointSet>)" };

/// Types into a field and leaves it as it is, without Return.
void type(const QWidget *editor, const char *text)
{
    if (auto *line = editor->findChild<QLineEdit *>())
        line->setText(s(text));
    else
        editor->findChild<QPlainTextEdit *>()->setPlainText(s(text));
    editor->focusProxy()->setFocus();
}

/// What a person does: steps "verb name=value" with "; " between them.
void perform(Page &page, const char *steps)
{
    using Step = std::function<void(const char *, const char *)>;
    const QHash<QString, Step> verbs {
        { s("define"), [&](auto name, auto) { page.define(name); } },
        { s("point"), [&](auto key, auto value) { page.editPoint(key, s(value)); } },
        { s("type-point"), [&](auto key, auto value) { type(page.basicInfo()->editorFor(s(key)), value); } },
        { s("property"), [&](auto key, auto) { page.addProperty(key); } },
        { s("attribute"), [&](auto row, auto) { page.clickAttribute(atoi(row)); } },
        { s("edit-attribute"), [&](auto key, auto value) { page.editAttribute(key, s(value)); } },
        { s("press"), [&](auto button, auto) { page.press(button); } },
        { s("delete"), [&](auto, auto) { page.press(page.definitions(), Qt::Key_Delete); } },
        { s("insert"), [&](auto, auto) { page.press(page.definitions(), Qt::Key_Insert); } },
        { s("page"), [&](auto number, auto) { page.showPage(atoi(number)); } },
        { s("realize"), [&](auto point, auto) { page.dropOnTable(point); } },
        { s("show"), [&](auto point, auto) { page.clickPoint(point); } },
        { s("tab"), [&](auto name, auto) { page.showTab(name); } },
        { s("entry"), [&](auto id, auto) { page.clickEntry(id); } },
        { s("above"), [&](auto id, auto) { Page::click(page.formats(), page.entry(id)->QTreeWidgetItem::parent()); } },
        { s("told"), [&](auto id, auto) { Q_EMIT page.formats()->itemClicked(page.entry(id), 0); } },
        { s("record"), [&](auto row, auto) { page.clickRecord(atoi(row)); } },
        { s("delete-record"), [&](auto row, auto) { page.menuOfRecord(atoi(row), "Delete"); } },
        { s("edit"), [&](auto key, auto value) { page.edit(key, value); } },
        { s("type"),
            [&](auto key, auto value) {
                QVERIFY(page.sheet()->openEditor(s(key)));
                type(page.sheet()->editorFor(s(key)), value);
            } },
        { s("delete-entry"), [&](auto, auto) { page.press(page.formats(), Qt::Key_Delete); } },
        { s("move"),
            [&](auto id, auto to) { page.drop(EntryMove::perform(page.site(page.entry(to)), page.entry(id))); } },
        { s("contribute"),
            [&](auto id, auto to) {
                QTRY_VERIFY(page.entry(to));
                page.drop(RecordDrop::perform(page.site(page.entry(to)), page.record(id)));
            } },
    };
    for (const QString &step : s(steps).split(s("; "), Qt::SkipEmptyParts)) {
        const QString rest = step.section(QLatin1Char(' '), 1);
        verbs.value(step.section(QLatin1Char(' '), 0, 0))(rest.section(QLatin1Char('='), 0, 0).toUtf8().constData(),
            rest.section(QLatin1Char('='), 1).toUtf8().constData());
    }
}

} // namespace

class TestRightNode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saved_data();
    void saved();
    void shown_data();
    void shown();
    void labelIsPaintedAnew();
};

void TestRightNode::saved_data()
{
    QTest::addColumn<QByteArray>("sets");
    QTest::addColumn<QByteArray>("steps");
    QTest::addColumn<QStringList>("expected"); ///< one with "!" before it is not to be there
    const auto row = [](const char *name, const QByteArray &sets, const char *steps, Texts expected) {
        QTest::newRow(name) << sets << QByteArray(steps) << list(expected);
    };

    // Opened and saved.
    const QByteArray trans = "<String key='t' trans='true'/>";
    const auto marks = [&](const char *name, const QByteArray &before, const QByteArray &after, const char *point) {
        row(name, points(before + trans + after) + data("<k t=\"tr('v')\"/>", point), "", { "t=\"tr('v')\"" });
    };
    marks("marks below elements that are no points", "<x><y><ExtPoint id='o.p'>", "</ExtPoint></y></x>", "o.p");
    marks("marks of a sub point in a child that is no point", "<ExtPoint id='o.p'><x id='o.p'><SubExtPoint key='k'>",
        "</SubExtPoint></x></ExtPoint>", "o.p");
    marks("marks of a sub point directly in the set", "<SubExtPoint key='k'>", "</SubExtPoint>", "own");
    marks("marks of a sub point with an id of its own", "<ExtPoint id='o.p'><SubExtPoint key='k' id='other'>",
        "</SubExtPoint></ExtPoint>", "o.p");
    const QByteArray marked = points("<ExtPoint id='o.p'>" + trans + "</ExtPoint>");
    row("blanks inside marks", marked + data("<k id='1' t=\"tr(' km ')\"/><k id='2' t=\"tr(' ')\"/>", "o.p"), "",
        { "\"tr(' km ')\"", "\"tr(' ')\"" });
    row("points that differ in letter case",
        marked + data("<k t=\"tr('a')\"/></ExtData><ExtData id='o.p'><k t=\"tr('b')\"/>", "O.p"), "",
        { "\"tr('b')\"" });
    row("both letter cases of a key", data("<Layout id='l' toolTip='A' tooltip='B'/>"), "",
        { "toolTip=\"A\" tooltip=\"B\"" });

    // Typed, and then something else was done.
    const QByteArray point = points("<ExtPoint id='o.p' name='P' description='d'/>");
    row("typed, then a property added", point, "define P; type-point name=typed; property hasformat", { "=\"typed\"" });
    row("typed in lines, then a property added", point, "define P; type-point description=typed; property hasformat",
        { "=\"typed\"" });
    row("typed, then a point added by its button", point,
        "define P; type-point name=typed; press pushButton_add_extpoint", { "=\"typed\"" });
    row("typed for a holder, then another page and back", data("<action id='a'/>"),
        "show Commands; type text=typed; page 0; page 1", { "text=\"tr('typed')\"" });
    row("typed for a record, and saved", data("<action id='a'/>"), "show Commands; record 0; type text=typed",
        { "<action id=\"a\" text=\"tr('typed')\"/>" });
    const QByteArray target = data("<format target='t'><menu id='m'/></format>");
    const Texts both { "<format target=\"u\">", "<menu id=\"m\" text=\"tr('after')\"/>" };
    row("a target typed, then another page and back", target,
        "show Commands; entry format; type target=u; page 0; page 1; tab u; entry m; edit text=after", both);
    row("a target typed, then the row clicked", target,
        "show Commands; entry format; type target=u; told m; edit text=after", both);
    row("two rows typed into, with blanks", point, "define P; type-point description=long; type-point name=  n ",
        { "name=\"n\"", "description=\"long\"" });
    row("the letter case of the file", data("<format target='t'><menu id='m' tooltip='old'/></format>"),
        "show Commands; entry m; edit toolTip=new", { "<menu id=\"m\" tooltip=\"new\"/>" });

    // Kinds that become elements.
    row("a fresh point realized", points(""), "define own; press pushButton_add_extpoint; page 1; realize Piont",
        { "<_1", " id=\"own._1" });
    row("a sub point without key", points("<ExtPoint id='o.p' name='P'><SubExtPoint name='S'/></ExtPoint>"),
        "realize S", { "<p id=\"own.p" });
    row("the attribute named type", points("<ExtPoint id='o.p' name='P'><ShortCut key='k' type='x'/></ExtPoint>"),
        "define P; attribute 0; edit-attribute type=no name", { "<ShortCut key=\"k\"" });
    row("the type of a sub point in an attribute's row",
        points("<ExtPoint id='o.p' name='P'><SubExtPoint key='k'/><String key='a'/></ExtPoint>"),
        "define P; attribute 0; edit-attribute type=Int", { "<SubExtPoint key=\"k\"/>" });

    row("a record deleted by its menu", data("<action id='a'/><action id='b'/>"), "show Commands; delete-record 0",
        { "!id=\"a\"", "<action id=\"b\"" });

    // Whom a rename reaches.
    row("a record called like a tag", data("<format target='t'><menu/><menu id='menu'/></format><action id='menu'/>"),
        "show Commands; record 0; edit id=new", { "<menu/>", "<menu id=\"new\"/>", "<action id=\"new\"" });
    row("a record called like its holder",
        data("<action id='host.cmd'/><format target='t'><action id='host.cmd'/></format>"),
        "show Commands; record 0; edit id=new",
        { "<ExtData id=\"host.cmd\"", "<format target=\"t\">\n                <action id=\"new\"/>" });
    row("a root that is a record, in its tab", data("<format id='f'><menu id='m'/></format><format id='g'/>"),
        "show Commands; tab f; entry f; edit id=h; record 0; edit text=T",
        { "<format id=\"h\" text=\"tr('T')\">", "<format id=\"g\"/>" });

    // What names another entry as its "parent" goes on doing so, and nothing else does.
    row("what stands under a sibling's menu, while an own one is called like it for a moment",
        data("<format target='shared'><menu id='mine'/></format>"
             "<Format target='shared'><action id='r' parent='file'/></Format>"),
        "show Commands; tab shared; entry mine; edit id=file; edit id=mine", { "parent=\"file\"" });
    row("what stands under the first of two namesakes",
        data("<format target='t'><menu id='x'/><menu id='x'><action id='in'/></menu></format>"
             "<Format target='t'><action id='a' parent='x'/></Format>"),
        "show Commands; tab t; above in; edit id=y", { "parent=\"x\"" });
    row("what stands under the renamed entry",
        data("<format target='t'><menu id='m'/></format><Format target='t'><action id='a' parent='M'/></Format>"),
        "show Commands; tab t; entry m; edit id=n", { "parent=\"n\"" });
    row("what stands under a bar, and not under the menu that is called like it",
        data("<format target='t'><menubar/><menu id='menubar2'/></format>"
             "<Format target='t'><action id='b' parent='menubar'/></Format>"),
        "show Commands; tab t; entry menubar2; edit id=z", { "parent=\"menubar\"" });

    // A point's records stay its own.
    const QByteArray held = points("<ExtPoint id='o.p' name='P'/><ExtPoint id='o.q' name='Q'/>")
        + data("<p id='1'/>", "o.p") + data("<x id='2'/>", "far");
    row("a point called like another for a moment", held, "define P; point id=o.q; point id=o.p",
        { "<ExtData id=\"o.p\"" });
    row("a point called like what the file holds something for", held, "define P; point id=far; point id=o.p",
        { "<ExtData id=\"o.p\"", "<ExtData id=\"far\"" });

    // Roots.
    row("the own root stays the one after a recorded drop",
        data("<Layout id='lay'><menu id='m'/></Layout><action id='a'/>"),
        "show Commands; tab lay; contribute a=theirs; entry lay; edit title=Mine",
        { "<Layout id=\"lay\" title=\"Mine\">", "parent=\"theirs\"" });
    row("what another file's entry of that id takes, and the own one does not",
        data("<format target='shared'><action id='file'/></format><action id='a'/>"),
        "show Commands; tab shared; contribute a=more; contribute a=file", { "parent=\"file\"" });
    row("a property that takes an id", points("<ExtPoint name='P'/>"), "define P; property id; type-point id=o.p",
        { "id=\"o.p\"" });
    row("deleting a point stores nothing elsewhere",
        points("<ExtPoint id='o.p' name='P'/><ExtPoint id='o.q' name='Q'><String key='k' value='v'/></ExtPoint>")
            + data("<q id='r'/>", "o.q"),
        "show P; define P; delete", { "!k=\"v\"" });
}

void TestRightNode::saved()
{
    QFETCH(const QByteArray, sets);
    QFETCH(const QByteArray, steps);
    QFETCH(const QStringList, expected);
    const Sibling theirs { "zzz",
        data("<Layout id='lay'><menu id='theirs'/></Layout><format target='shared'><menu id='file'/><menu "
             "id='more'/></format>") };
    Page page(sets, { host, theirs });
    perform(page, steps);
    page.widget->commitEditors();
    const QString bytes = QString::fromUtf8(page.save());
    for (const QString &text : expected) {
        const bool wanted = !text.startsWith(QLatin1Char('!'));
        QVERIFY2(bytes.contains(wanted ? text : text.mid(1)) == wanted, qPrintable(text + QLatin1Char('\n') + bytes));
    }
    page.reopen();
    QCOMPARE(QString::fromUtf8(page.save()), bytes);
}

void TestRightNode::shown_data()
{
    QTest::addColumn<QByteArray>("sets");
    QTest::addColumn<QByteArray>("steps");
    QTest::addColumn<Check>("check");
    const auto row = [](const char *name, const QByteArray &sets, const char *steps, const Check &check) {
        QTest::newRow(name) << sets << QByteArray(steps) << check;
    };
    row("own formats in a layout have a tab of their own",
        data("<Layout id='l'><format id='in'><menu id='m'/></format></Layout>"), "show Commands; tab in",
        [](Page &page) {
            QCOMPARE(page.formatLines(), list({ "in", "  m" }));
        });
    row("own formats of one name",
        data("<format id='x' target='t'><action id='a'/></format><Format target='x'><action id='b'/></Format>"),
        "show Commands; tab x", [](Page &page) {
            QCOMPARE(page.formatLines(), list({ "x", "  a", "  b" }));
        });
    row("the first of several roots of one target",
        data("<format id='a' target='t'><menu id='1'/></format><format id='b' target='t'/><format/>"),
        "show Commands; tab a", [](Page &page) { QCOMPARE(page.formatLines().value(1), s("  1")); });
    row("a root keeps its last name", data("<format target='t'/>"),
        "show Commands; entry format; edit target=", [](Page &page) {
            QCOMPARE(page.tabNames(), list({ "t|t" }));
            QCOMPARE(page.modified, 0);
            QCOMPARE(page.sheet()->properties().first().value().toString(), s("t"));
        });
    row("keys act on what is selected",
        data("<format target='t'><action id='a'/><action id='b'/></format><action id='a'/><action id='b'/>"
             "<action id='c'/>"),
        "show Commands; entry a; record 1; delete-entry; record 2; delete-entry", [](Page &page) {
            QCOMPARE(page.formatLines(), list({ "format", "  a" }));
        });
    row("parents follow ids",
        data("<format target='t'><menu id='m'/></format><Format target='t'><action id='a' parent='m'/></Format>"
             "<menu id='m'/>"),
        "show Commands; record 0; edit id=n", [](Page &page) {
            QTRY_COMPARE(page.formatLines(), list({ "format", "  n", "    a" }));
            perform(page, "entry n; edit id=o; entry a");
            QCOMPARE(sheetLines(page.sheet()->properties()).filter(s("parent")).value(0).left(10), s("parent:5=o"));
            page.edit("parent", "nobody");
            QTRY_COMPARE(page.formatLines(), list({ "format", "  o", "  a" }));
        });
    row("a sub point under one plug-in", points("<ExtPoint id='o.p' name='P'/>"),
        "define own; point id=renamed; define P; insert", [](Page &page) {
            const QStringList lines = Page::lines(page.points());
            QCOMPARE(lines.filter(QRegularExpression(s("^ *(P|SubPoint)$"))).size(), 2);
            QCOMPARE(lines.filter(s("renamed")).size(), 1);
        });
    row("the parent after a move", data("<format target='t'><menu id='m'/><action id='a' parent='m'/></format>"),
        "show Commands; entry a; move a=m", [](Page &page) { QVERIFY(!page.sheetKeys().contains(s("parent"))); });
    row("the sheet of a record while the tabs change", data("<action id='a'/><format target='t'/><format target='u'/>"),
        "show Commands; record 0; tab u", [](Page &page) { QVERIFY(page.sheet()->isEnabled()); });
    row("the current record where it moves, and none for it when it goes",
        data("<action id='a'/><action id='b'/><action id='c'/>"), "show Commands; record 1", [](Page &page) {
            OwnEdits::move(page.record("b"), page.record("b")->parentItem(), 0);
            page.manager->changes().flush();
            QCOMPARE(page.table()->currentRow(), 0);
            QVERIFY(page.table()->item(0, 0)->isSelected());
            PointTreeWidgetItem::destroySubtree(page.record("b"));
            page.manager->changes().flush();
            QCOMPARE(page.table()->currentRow(), -1);
        });
    row("one letter case of a key",
        data("<action id='a' toolTip='R'/><format target='t'><action id='a' tooltip='E'/></format>"),
        "show Commands; entry a",
        [](Page &page) { QCOMPARE(page.sheetKeys().filter(s("tip"), Qt::CaseInsensitive), list({ "toolTip" })); });
    row("nothing of a deleted point", points("<ExtPoint id='o.p' name='P'><ExtPoint id='in' name='In'/></ExtPoint>"),
        "define P; delete",
        [](Page &page) { QCOMPARE(page.basicInfo()->properties().value(0).value().toString(), s("own")); });
    row("tool tips name the plug-in that holds the record", points(""), "realize Commands",
        [](Page &page) { QVERIFY(page.table()->item(0, 0)->toolTip().contains(s("Plug-in: own"))); });
    row("a first key is registered, an emptied id is not",
        points("<ExtPoint id='o.p' name='P'><SubExtPoint name='S'/></ExtPoint>"),
        "define S; property key; type-point key=K; define P", [](Page &page) {
            QVERIFY(page.manager->definitions().first(s("k")));
            page.editPoint("id", QString());
            QVERIFY(!page.manager->definitions().first(s("o.p")));
        });
    row("own answers go first after a rename and back", points("<ExtPoint id='host.cmd' name='P' hasformat='false'/>"),
        "define P; point id=other; point id=host.cmd",
        [](Page &page) { QCOMPARE(page.manager->definitions().first(s("host.cmd"))->pluginId(), s("own")); });
}

void TestRightNode::shown()
{
    QFETCH(const QByteArray, sets);
    QFETCH(const QByteArray, steps);
    QFETCH(const Check, check);
    Page page(sets, { host });
    perform(page, steps);
    check(page);
}

/// A row with an icon paints a new text in its second column at once.
void TestRightNode::labelIsPaintedAnew()
{
    QTreeWidget tree;
    tree.setColumnCount(2);
    auto *row = new Node(s("id"));
    tree.addTopLevelItem(row);
    QPixmap picture(8, 8);
    picture.fill(Qt::red);
    row->setIcon(0, QIcon(picture));
    int announced = -1;
    connect(tree.model(), &QAbstractItemModel::dataChanged, this,
        [&](const QModelIndex &, const QModelIndex &last) { announced = last.column(); });
    row->setText(1, s("label"));
    QCOMPARE(announced, 1);
    tree.takeTopLevelItem(0);
    delete row;
}

QTEST_MAIN(TestRightNode)
#include "tst_rightnode.moc"

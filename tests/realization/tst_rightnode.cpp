// What a user does reaches the node that was meant, all of it, and nothing else: by the file that is saved.

#include "realizationpage.h"

#include "form/drops/entrymove.h"
#include "form/drops/recorddrop.h"
#include "form/drops/tabledrop.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QToolButton>

#include <functional>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;
using Action = std::function<void(Page &)>;

Q_DECLARE_METATYPE(Action)

namespace {

const Sibling host { "host",
    R"(<ExtPointSet><ExtPoint id="host.cmd" name="Commands" hasformat="true"><String key="text" trans="true"/>
<SubExtPoint key="format" childType="menubar|menu|action"/><SubExtPoint key="menubar" childType="menu"/>
<SubExtPoint key="layout" childType="menu"/><SubExtPoint key="menu" childType="menu|action"><String key="text" trans="true"/></SubExtPoint>
<SubExtPoint key="action" name="Action"><String key="text" trans="true"/></SubExtPoint></ExtPoint></ExtPointSet>)" };

QByteArray data(const QByteArray &records, const QByteArray &point = "host.cmd")
{
    return "<ExtDataSet><ExtData id=\"" + point + "\">" + records + "</ExtData></ExtDataSet>";
}

QByteArray points(const QByteArray &content)
{
    return "<ExtPointSet>" + content + "</ExtPointSet>";
}

/// Types into a field and leaves it as it is, without Return.
void type(QWidget *editor, const char *text)
{
    if (auto *line = editor->findChild<QLineEdit *>()) {
        line->setFocus();
        line->setText(s(text));
    } else if (auto *lines = editor->findChild<QPlainTextEdit *>()) {
        lines->setFocus();
        lines->setPlainText(s(text));
    }
}

void typeBasic(Page &page, const char *key, const char *text)
{
    type(page.find<GroupPropertyBrowser>("basicInfo")->editorFor(s(key)), text);
}

void typeSheet(Page &page, const char *key, const char *text)
{
    QVERIFY(page.sheet()->openEditor(s(key)));
    type(page.sheet()->editorFor(s(key)), text);
}

void definition(Page &page, const char *name)
{
    page.find<QTabWidget>("tabWidget")->setCurrentIndex(0);
    auto *tree = page.find<QTreeWidget>("defintionTree");
    tree->setCurrentItem(Page::row(tree, name));
}

void addProperty(Page &page, const char *key)
{
    QMenu *menu = page.find<QToolButton>("addPropertyButton")->menu();
    Q_EMIT menu->aboutToShow();
    for (QAction *action : menu->actions()) {
        if (action->text() == s(key)) {
            action->trigger();
            return;
        }
    }
    QFAIL("not offered");
}

void drop(Page &page, const DropOutcome &outcome)
{
    for (const DropOutcome::Addition &addition : outcome.additions) {
        if (addition.format)
            Q_EMIT page.formats()->setTarget(addition.format);
        if (addition.row)
            Q_EMIT page.formats()->dropPoint(addition.row);
    }
    if (outcome.modified)
        Q_EMIT page.formats()->modified(true);
}

DropSite site(Page &page, const char *entry)
{
    // What has just been shown gets its place first.
    QCoreApplication::processEvents();
    page.formats()->scrollToItem(page.entry(entry));
    return page.formats()->siteAt(page.formats()->visualItemRect(page.entry(entry)).center());
}

void dropOnTable(Page &page, const char *point)
{
    page.clickPoint(point);
    const TableDrop::Outcome outcome = TableDrop::perform(page.point(point));
    if (outcome.record)
        Q_EMIT page.table()->addTableRealization(outcome.parent, outcome.record, outcome.isSubPoint);
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
    QTest::addColumn<Action>("action");
    QTest::addColumn<QStringList>("expected"); ///< one with "!" before it is not to be there
    const auto row = [](const char *name, const QByteArray &sets, const Action &action, const QStringList &expected) {
        QTest::newRow(name) << sets << action << expected;
    };
    const Action nothing = [](Page &) {};

    // Opened and saved.
    const QByteArray trans = "<String key='t' trans='true'/>";
    row("marks below elements that are no points",
        points("<x><y><ExtPoint id='o.p'>" + trans + "</ExtPoint></y></x>") + data("<k t=\"tr('v')\"/>", "o.p"),
        nothing, { s("t=\"tr('v')\"") });
    row("marks of a sub point in a child that is no point",
        points("<ExtPoint id='o.p'><x id='o.p'><SubExtPoint key='k'>" + trans + "</SubExtPoint></x></ExtPoint>")
            + data("<k t=\"tr('v')\"/>", "o.p"),
        nothing, { s("t=\"tr('v')\"") });
    row("marks of a sub point directly in the set",
        points("<SubExtPoint key='k'>" + trans + "</SubExtPoint>") + data("<k t=\"tr('v')\"/>", "own"), nothing,
        { s("t=\"tr('v')\"") });
    row("marks of a sub point with an id of its own",
        points("<ExtPoint id='o.p'><SubExtPoint key='k' id='other'>" + trans + "</SubExtPoint></ExtPoint>")
            + data("<k t=\"tr('v')\"/>", "o.p"),
        nothing, { s("t=\"tr('v')\"") });
    row("blanks inside marks",
        points("<ExtPoint id='o.p'>" + trans + "</ExtPoint>")
            + data("<k id='1' t=\"tr(' km ')\"/><k id='2' t=\"tr(' ')\"/>", "o.p"),
        nothing, { s("\"tr(' km ')\""), s("\"tr(' ')\"") });
    row("points that differ in letter case",
        points("<ExtPoint id='o.p'>" + trans + "</ExtPoint>")
            + "<ExtDataSet><ExtData id='O.p'><k t=\"tr('a')\"/></ExtData><ExtData id='o.p'><k "
              "t=\"tr('b')\"/></ExtData></ExtDataSet>",
        nothing, { s("\"tr('b')\"") });
    row("both letter cases of a key", data("<Layout id='l' toolTip='A' tooltip='B'/>"), nothing,
        { s("toolTip=\"A\" tooltip=\"B\"") });

    // Typed, and then something else was done.
    const QByteArray point = points("<ExtPoint id='o.p' name='P' description='d'/>");
    const QStringList typed { s("=\"typed\"") };
    row(
        "typed, then a property added", point,
        [](Page &page) {
            definition(page, "P");
            typeBasic(page, "name", "typed");
            addProperty(page, "hasformat");
        },
        typed);
    row(
        "typed in lines, then a property added", point,
        [](Page &page) {
            definition(page, "P");
            typeBasic(page, "description", "typed");
            addProperty(page, "hasformat");
        },
        typed);
    row(
        "typed, then a point added by its button", point,
        [](Page &page) {
            definition(page, "P");
            typeBasic(page, "name", "typed");
            page.find<QPushButton>("pushButton_add_extpoint")->click();
        },
        typed);
    row("typed for a holder, then another page and back", data("<action id='a'/>"),
        [](Page &page) {
            page.clickPoint("Commands");
            typeSheet(page, "text", "typed");
            for (const int shown : { 0, 1 })
                page.find<QTabWidget>("tabWidget")->setCurrentIndex(shown);
        },
        { s("text=\"tr('typed')\"") });
    row("a target typed, then another page and back", data("<format target='t'><menu id='m'/></format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.clickEntry("format");
            typeSheet(page, "target", "u");
            for (const int shown : { 0, 1 })
                page.find<QTabWidget>("tabWidget")->setCurrentIndex(shown);
            QCOMPARE(page.tabNames().filter(s("u|u")).size(), 1);
            page.clickEntry("m");
            page.edit("text", s("after"));
        },
        { s("<format target=\"u\">"), s("<menu id=\"m\" text=\"tr('after')\"/>") });
    row("a target typed, then the row clicked", data("<format target='t'><menu id='m'/></format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.clickEntry("format");
            typeSheet(page, "target", "u");
            Q_EMIT page.formats()->itemClicked(page.entry("m"), 0);
            page.edit("text", s("after"));
        },
        { s("<format target=\"u\">"), s("<menu id=\"m\" text=\"tr('after')\"/>") });
    row(
        "blanks around what is typed", point,
        [](Page &page) {
            definition(page, "P");
            typeBasic(page, "name", "  typed ");
        },
        typed);

    // Kinds that become elements.
    row("a fresh point realized", points(""),
        [](Page &page) {
            definition(page, "own");
            page.find<QPushButton>("pushButton_add_extpoint")->click();
            page.find<QTabWidget>("tabWidget")->setCurrentIndex(1);
            dropOnTable(page, "Piont");
        },
        { s("<_1"), s(" id=\"own._1") });
    row("a sub point without key", points("<ExtPoint id='o.p' name='P'><SubExtPoint name='S'/></ExtPoint>"),
        [](Page &page) { dropOnTable(page, "S"); }, { s("<p id=\"own.p") });
    row("the attribute named type", points("<ExtPoint id='o.p' name='P'><ShortCut key='k' type='x'/></ExtPoint>"),
        [](Page &page) {
            definition(page, "P");
            auto *attributes = page.find<QTableWidget>("defintionTable");
            attributes->setCurrentCell(0, 0);
            Q_EMIT page.find<TreePropertyBrowser>("editInfoWidget")->propertyChanged(s("type"), s("no name"));
        },
        { s("<ShortCut key=\"k\"") });
    row("the type of a sub point in an attribute's row",
        points("<ExtPoint id='o.p' name='P'><SubExtPoint key='k'/><String key='a'/></ExtPoint>"),
        [](Page &page) {
            definition(page, "P");
            auto *attributes = page.find<QTableWidget>("defintionTable");
            attributes->setCurrentCell(0, 0);
            Q_EMIT page.find<TreePropertyBrowser>("editInfoWidget")->propertyChanged(s("type"), s("Int"));
        },
        { s("<SubExtPoint key=\"k\"/>") });

    // Whom a rename reaches.
    const auto rename = [](const char *from, const char *to) {
        return [=](Page &page) {
            page.clickPoint("Commands");
            for (int line = 0; line < page.table()->rowCount(); ++line) {
                if (page.table()->item(line, 0)->text() == s(from))
                    page.clickRecord(line);
            }
            page.edit("id", s(to));
        };
    };
    row("a record called like a tag", data("<format target='t'><menu/><menu id='menu'/></format><action id='menu'/>"),
        rename("menu", "new"), { s("<menu/>"), s("<menu id=\"new\"/>"), s("<action id=\"new\"") });
    row("a record called like its holder",
        data("<action id='host.cmd'/><format target='t'><action id='host.cmd'/></format>"), rename("host.cmd", "new"),
        { s("<ExtData id=\"host.cmd\""), s("<format target=\"t\">\n                <action id=\"new\"/>") });
    row("a root that is a record, in its tab", data("<format id='f'><menu id='m'/></format><format id='g'/>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.showTab("f");
            page.clickEntry("f");
            page.edit("id", s("h"));
            page.clickRecord(0);
            page.edit("text", s("T"));
        },
        { s("<format id=\"h\" text=\"tr('T')\">"), s("<format id=\"g\"/>") });

    // What names another entry as its "parent" goes on doing so, and nothing else does.
    const auto edit = [](const char *entry, const char *key, std::initializer_list<const char *> values) {
        const QVector<const char *> all(values);
        return [=](Page &page) {
            page.clickPoint("Commands");
            page.showTab("t");
            page.clickEntry(entry);
            for (const char *value : all)
                page.edit(key, s(value));
        };
    };
    row("what stands under a sibling's menu, while an own one is called like it for a moment",
        data("<format target='shared'><menu id='mine'/></format><Format target='shared'><action id='r' "
             "parent='file'/></Format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.showTab("shared");
            page.clickEntry("mine");
            for (const char *id : { "file", "mine" })
                page.edit("id", s(id));
        },
        { s("parent=\"file\"") });
    row("what stands under the first of two namesakes",
        data(
            "<format target='t'><menu id='x'/><menu id='x'><action id='in'/></menu></format><Format target='t'><action "
            "id='a' parent='x'/></Format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.showTab("t");
            Page::click(page.formats(), page.entry("in")->QTreeWidgetItem::parent());
            page.edit("id", s("y"));
        },
        { s("parent=\"x\"") });
    row("what stands under the renamed entry",
        data("<format target='t'><menu id='m'/></format><Format target='t'><action id='a' parent='M'/></Format>"),
        edit("m", "id", { "n" }), { s("parent=\"n\"") });
    row("what stands under a bar, and not under the menu that is called like it",
        data("<format target='t'><menubar/><menu id='menubar2'/></format><Format target='t'><action id='b' "
             "parent='menubar'/></Format>"),
        edit("menubar2", "id", { "z" }), { s("parent=\"menubar\"") });

    // A point's records stay its own.
    const QByteArray twoPoints = points("<ExtPoint id='o.p' name='P'/><ExtPoint id='o.q' name='Q'/>");
    const auto pointId = [](std::initializer_list<const char *> ids) {
        const QVector<const char *> all(ids);
        return [=](Page &page) {
            definition(page, "P");
            for (const char *id : all)
                Q_EMIT page.find<GroupPropertyBrowser>("basicInfo")->propertyChanged(s("id"), s(id));
        };
    };
    row("a point called like another for a moment", twoPoints + data("<p id='1'/>", "o.p"), pointId({ "o.q", "o.p" }),
        { s("<ExtData id=\"o.p\"") });
    row("a point called like what the file holds something for",
        points("<ExtPoint id='o.p' name='P'/>") + data("<p id='1'/>", "o.p") + data("<x id='2'/>", "far"),
        pointId({ "far", "o.p" }), { s("<ExtData id=\"o.p\""), s("<ExtData id=\"far\"") });
    row("two rows typed into, one with blanks", points("<ExtPoint id='o.p' name='P' description='d'/>"),
        [](Page &page) {
            definition(page, "P");
            page.find<GroupPropertyBrowser>("basicInfo")
                ->editorFor(s("description"))
                ->findChild<QPlainTextEdit *>()
                ->setPlainText(s("long"));
            page.find<GroupPropertyBrowser>("basicInfo")
                ->editorFor(s("name"))
                ->findChild<QLineEdit *>()
                ->setText(s("n "));
        },
        { s("name=\"n\""), s("description=\"long\"") });

    // Roots.
    const QByteArray layout = data("<Layout id='lay'><menu id='m'/></Layout><action id='a'/>");
    row("the own root stays the one after a recorded drop", layout,
        [](Page &page) {
            page.clickPoint("Commands");
            page.showTab("lay");
            QTRY_VERIFY(page.entry("theirs"));
            drop(page, RecordDrop::perform(site(page, "theirs"), page.manager->ownRealizations().record(s("a"))));
            page.clickEntry("lay");
            page.edit("title", s("Mine"));
        },
        { s("<Layout id=\"lay\" title=\"Mine\">"), s("parent=\"theirs\"") });
    row("a property that takes an id", points("<ExtPoint name='P'/>"),
        [](Page &page) {
            definition(page, "P");
            addProperty(page, "id");
            typeBasic(page, "id", "o.p");
        },
        { s("id=\"o.p\"") });
    row("deleting a point stores nothing elsewhere",
        points("<ExtPoint id='o.p' name='P'/><ExtPoint id='o.q' name='Q'><String key='k' value='v'/></ExtPoint>")
            + data("<q id='r'/>", "o.q"),
        [](Page &page) {
            page.clickPoint("P");
            definition(page, "P");
            page.press(page.find<QTreeWidget>("defintionTree"), Qt::Key_Delete);
        },
        { s("!k=\"v\"") });
}

void TestRightNode::saved()
{
    QFETCH(const QByteArray, sets);
    QFETCH(const Action, action);
    QFETCH(const QStringList, expected);
    const Sibling theirs { "zzz",
        data("<Layout id='lay'><menu id='theirs'/></Layout><format target='shared'><menu id='file'/></format>") };
    Page page(sets, { host, theirs });
    action(page);
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
    QTest::addColumn<Action>("action");
    const auto row
        = [](const char *name, const QByteArray &sets, const Action &action) { QTest::newRow(name) << sets << action; };
    row("own formats in a layout have a tab of their own",
        data("<Layout id='l'><format id='in'><menu id='m'/></format></Layout>"), [](Page &page) {
            page.clickPoint("Commands");
            page.showTab("in");
            QCOMPARE(page.formatLines(), (QStringList { s("in"), s("  m") }));
        });
    row("the first of several roots of one target",
        data("<format id='a' target='t'><menu id='1'/></format><format id='b' target='t'/><format/>"), [](Page &page) {
            page.clickPoint("Commands");
            page.showTab("a");
            QCOMPARE(page.formatLines().value(1), s("  1"));
            QCOMPARE(page.manager->ownRealizations().formatOfTarget(s("t"))->property(s("id")).toString(), s("a"));
        });
    row("a sub point under one plug-in", points("<ExtPoint id='o.p' name='P'/>"), [](Page &page) {
        definition(page, "own");
        Q_EMIT page.find<GroupPropertyBrowser>("basicInfo")->propertyChanged(s("id"), s("renamed"));
        definition(page, "P");
        page.press(page.find<QTreeWidget>("defintionTree"), Qt::Key_Insert);
        QCOMPARE(page.pointLines().filter(QRegularExpression(s("^ *(P|SubPoint)$"))).size(), 2);
        QCOMPARE(page.pointLines().filter(s("renamed")).size(), 1);
    });
    row("the parent after a move", data("<format target='t'><menu id='m'/><action id='a' parent='m'/></format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.clickEntry("a");
            drop(page, EntryMove::perform(site(page, "m"), page.entry("a")));
            QVERIFY(!page.sheetKeys().contains(s("parent")));
        });
    row("all roots of one target, whatever the first is called",
        data("<format id='a' target='t'><menu id='1'/></format><format target='t'><menu id='2'/></format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            QCOMPARE(page.formatLines().mid(1), (QStringList { s("  1"), s("  2") }));
        });
    row("a menu called like a kind, and what names it",
        data("<format target='t'><menu/><menu id='menu'/></format><Format target='t'><action id='a' "
             "parent='menu'/><menu id='b' parent='c'/><action id='c2' parent='b'/></Format>"),
        [](Page &page) {
            page.clickPoint("Commands");
            QCOMPARE(page.formatLines().mid(1),
                (QStringList { s("  menu"), s("  menu"), s("    a"), s("  b"), s("    c2") }));
        });
    row("the sheet of a record while the tabs change", data("<action id='a'/><format target='t'/><format target='u'/>"),
        [](Page &page) {
            page.clickPoint("Commands");
            page.clickRecord(0);
            page.showTab("u");
            QVERIFY(page.sheet()->isEnabled());
        });
    row("one letter case of a key",
        data("<action id='a' toolTip='R'/><format target='t'><action id='a' tooltip='E'/></format>"), [](Page &page) {
            page.clickPoint("Commands");
            page.clickEntry("a");
            QCOMPARE(page.sheetKeys().filter(s("tip"), Qt::CaseInsensitive), QStringList { s("toolTip") });
        });
    row("nothing of a deleted point", points("<ExtPoint id='o.p' name='P'><ExtPoint id='in' name='In'/></ExtPoint>"),
        [](Page &page) {
            definition(page, "P");
            page.press(page.find<QTreeWidget>("defintionTree"), Qt::Key_Delete);
            QCOMPARE(page.find<GroupPropertyBrowser>("basicInfo")->properties().value(0).value().toString(), s("own"));
        });
    row("tool tips name the plug-in that holds the record", points(""), [](Page &page) {
        dropOnTable(page, "Commands");
        QVERIFY(page.table()->item(0, 0)->toolTip().contains(s("Plug-in: own")));
    });
    row("a first key is registered, an emptied id is not",
        points("<ExtPoint id='o.p' name='P'><SubExtPoint name='S'/></ExtPoint>"), [](Page &page) {
            definition(page, "S");
            addProperty(page, "key");
            typeBasic(page, "key", "K");
            definition(page, "P");
            QVERIFY(page.manager->definitions().first(s("k")));
            Q_EMIT page.find<GroupPropertyBrowser>("basicInfo")->propertyChanged(s("id"), QString());
            QVERIFY(!page.manager->definitions().first(s("o.p")));
        });
    row("own answers go first after a rename and back", points("<ExtPoint id='host.cmd' name='P' hasformat='false'/>"),
        [](Page &page) {
            definition(page, "P");
            for (const char *id : { "other", "host.cmd" })
                Q_EMIT page.find<GroupPropertyBrowser>("basicInfo")->propertyChanged(s("id"), s(id));
            QCOMPARE(page.manager->definitions().first(s("host.cmd"))->pluginId(), s("own"));
        });
}

void TestRightNode::shown()
{
    QFETCH(const QByteArray, sets);
    QFETCH(const Action, action);
    Page page(sets, { host });
    action(page);
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

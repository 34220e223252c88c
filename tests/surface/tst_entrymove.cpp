#include "droptesting.h"
#include "form/drops/entrymove.h"

using namespace DropTesting;

namespace {

// The format of the tab "bench", in the opened file and in a sibling.
const QByteArray ownFormat = R"(
<ExtDataSet><ExtData id="kit.menus">
  <Format target="bench">
    <menu id="m1"><menu id="m2"><Item id="i1"/><Item id="i2"/></menu><Item id="i3"/></menu>
    <gap/><gap/>
    <menu id="m3" parent="x"/>
  </Format>
</ExtData></ExtDataSet>)";
const QByteArray kitFormat = R"(
<ExtDataSet><ExtData id="kit.menus">
  <Format id="theirs" target="bench"><menu id="t1"><Item id="t2"/></menu><MenuBar/></Format>
</ExtData></ExtDataSet>)";

} // namespace

/// Entries of a format tree that are moved within it, without a mouse.
class TestEntryMove : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void move_data();
    void move();
    void moveBesideRecorded_data();
    void moveBesideRecorded();
    void moveStaysInItsFormat();
};

void TestEntryMove::move_data()
{
    QTest::addColumn<QByteArray>("kit");
    QTest::addColumn<bool>("direct");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QString>("plan");
    QTest::addColumn<QStringList>("savedFormat");
    QTest::addColumn<QStringList>("rows");

    const QStringList saved { s("menu id=m1"), s("  menu id=m2"), s("    Item id=i1"), s("    Item id=i2"),
        s("  Item id=i3"), s("gap"), s("gap"), s("menu id=m3 parent=x") };
    const QStringList shown { s("m1"), s("  m2"), s("    i1"), s("    i2"), s("  i3"), s("gap"), s("gap"), s("m3") };
    const auto row
        = [](const char *name, const char *dragged, const char *onto, const char *plan, const QStringList &savedFormat,
              const QStringList &rows, const QByteArray &kit = {}, bool direct = true) {
              QTest::newRow(name) << kit << direct << s(dragged) << s(onto) << s(plan) << savedFormat << rows;
          };
    row("into a menu", "i1", "m3", "into through m3",
        { s("menu id=m1"), s("  menu id=m2"), s("    Item id=i2"), s("  Item id=i3"), s("gap"), s("gap"),
            s("menu id=m3 parent=x"), s("  Item id=i1") },
        { s("m1"), s("  m2"), s("    i2"), s("  i3"), s("gap"), s("gap"), s("m3"), s("  i1") });
    row("a menu with all its entries", "m2", "m3", "into through m3",
        { s("menu id=m1"), s("  Item id=i3"), s("gap"), s("gap"), s("menu id=m3 parent=x"), s("  menu id=m2"),
            s("    Item id=i1"), s("    Item id=i2") },
        { s("m1"), s("  i3"), s("gap"), s("gap"), s("m3"), s("  m2"), s("    i1"), s("    i2") });
    row("to the end of where it stands, in another letter case", "m1", "root", "into through Format",
        { s("gap"), s("gap"), s("menu id=m3 parent=x"), s("menu id=m1"), s("  menu id=m2"), s("    Item id=i1"),
            s("    Item id=i2"), s("  Item id=i3") },
        { s("gap"), s("gap"), s("m3"), s("m1"), s("  m2"), s("    i1"), s("    i2"), s("  i3") });
    row("under an own row the parent's name goes", "m3", "m1", "into through m1",
        { s("menu id=m1"), s("  menu id=m2"), s("    Item id=i1"), s("    Item id=i2"), s("  Item id=i3"),
            s("  menu id=m3"), s("gap"), s("gap") },
        { s("m1"), s("  m2"), s("    i1"), s("    i2"), s("  i3"), s("  m3"), s("gap"), s("gap") });
    row("before a later sibling", "i1", "i2", "before through m2", saved, shown);
    row("before an earlier sibling", "i2", "i1", "before through m2",
        { s("menu id=m1"), s("  menu id=m2"), s("    Item id=i2"), s("    Item id=i1"), s("  Item id=i3"), s("gap"),
            s("gap"), s("menu id=m3 parent=x") },
        { s("m1"), s("  m2"), s("    i2"), s("    i1"), s("  i3"), s("gap"), s("gap"), s("m3") });
    row("before a row of another menu", "i1", "i3", "before through m1",
        { s("menu id=m1"), s("  menu id=m2"), s("    Item id=i2"), s("  Item id=i1"), s("  Item id=i3"), s("gap"),
            s("gap"), s("menu id=m3 parent=x") },
        { s("m1"), s("  m2"), s("    i2"), s("  i1"), s("  i3"), s("gap"), s("gap"), s("m3") });
    row("before a later row, past others", "m1", "gap", "before through Format", saved, shown);
    row("the first of two without an id", "gap", "m1", "before through Format",
        { s("gap"), s("menu id=m1"), s("  menu id=m2"), s("    Item id=i1"), s("    Item id=i2"), s("  Item id=i3"),
            s("gap"), s("menu id=m3 parent=x") },
        { s("gap"), s("m1"), s("  m2"), s("    i1"), s("    i2"), s("  i3"), s("gap"), s("m3") });
    row("before one that names a parent", "m2", "gap", "before through Format",
        { s("menu id=m1"), s("  Item id=i3"), s("menu id=m2"), s("  Item id=i1"), s("  Item id=i2"), s("gap"), s("gap"),
            s("menu id=m3 parent=x") },
        { s("m1"), s("  i3"), s("m2"), s("  i1"), s("  i2"), s("gap"), s("gap"), s("m3") });
    row("onto itself", "m1", "m1", "nothing", saved, shown);
    row("onto a descendant", "m1", "i2", "nothing", saved, shown);
    row("the root", "root", "m1", "nothing", saved, shown);
    row("where nobody takes it", "i1", "gap", "nothing", saved, shown);
    row("onto the root, which has none above", "i1", "root", "nothing", saved, shown);
    row("not directly", "i1", "m3", "nothing", saved, shown, {}, false);

    // With a sibling's format in the same tab.
    const QStringList both = shown + QStringList { s("t1"), s("  t2"), s("MenuBar") };
    row("a sibling's entry", "t2", "m3", "nothing", saved, both, kitFormat);
    row("before a sibling's row", "i1", "t2", "nothing", saved, both, kitFormat);
    row("onto a sibling's menu", "i1", "t1", "into, recorded through t1",
        { s("menu id=m1"), s("  menu id=m2"), s("    Item id=i2"), s("  Item id=i3"), s("gap"), s("gap"),
            s("menu id=m3 parent=x"), s("Item id=i1 parent=t1") },
        { s("m1"), s("  m2"), s("    i2"), s("  i3"), s("gap"), s("gap"), s("m3"), s("t1"), s("  t2"), s("  i1"),
            s("MenuBar") },
        kitFormat);
    row("onto a sibling's bar, which has no id", "m2", "MenuBar", "into, recorded through MenuBar",
        { s("menu id=m1"), s("  Item id=i3"), s("gap"), s("gap"), s("menu id=m3 parent=x"),
            s("menu id=m2 parent=MenuBar"), s("  Item id=i1"), s("  Item id=i2") },
        { s("m1"), s("  i3"), s("gap"), s("gap"), s("m3"), s("t1"), s("  t2"), s("MenuBar"), s("  m2"), s("    i1"),
            s("    i2") },
        kitFormat);
}

void TestEntryMove::move()
{
    QFETCH(QByteArray, kit);
    QFETCH(bool, direct);
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    Model model(ownFormat, kit);
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const Shown shown(realizations.formats(s("bench")) + realizations.siblingFormats(s("bench")));
    const DropSite site = shown.site(onto, direct, s("bench"));
    PointTreeWidgetItem *row = shown.row(dragged);
    PointTreeWidgetItem *behind = row->master()->item();

    QTEST(words(EntryMove::plan(site, row)), "plan");
    const DropOutcome outcome = EntryMove::perform(site, row);
    QCOMPARE(words(outcome), direct ? s("modified") : QString());
    QTEST(ModelTesting::tree(realizations.formats(s("bench")).first()), "savedFormat");
    QTEST(shown.rows(), "rows");
    QCOMPARE(model.complaints(), QStringList());
    QCOMPARE(row->master()->item(), behind);
}

void TestEntryMove::moveBesideRecorded_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QStringList>("savedFormat");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("to the recorded ones: the same parent")
        << s("i1") << s("e2")
        << QStringList { s("menu id=m1"), s("  Item id=i2"), s("Item id=e1 parent=t1"), s("Item id=i1 parent=t1"),
               s("Item id=e2 parent=t1") }
        << QStringList { s("m1"), s("  i2"), s("  t9"), s("t1"), s("  e1"), s("  i1"), s("  e2") };
    QTest::newRow("away from them: no parent")
        << s("e1") << s("i2")
        << QStringList { s("menu id=m1"), s("  Item id=i1"), s("  Item id=e1"), s("  Item id=i2"),
               s("Item id=e2 parent=t1") }
        << QStringList { s("m1"), s("  i1"), s("  e1"), s("  i2"), s("  t9"), s("t1"), s("  e2") };
    QTest::newRow("among them") << s("e2") << s("e1")
                                << QStringList { s("menu id=m1"), s("  Item id=i1"), s("  Item id=i2"),
                                       s("Item id=e2 parent=t1"), s("Item id=e1 parent=t1") }
                                << QStringList { s("m1"), s("  i1"), s("  i2"), s("  t9"), s("t1"), s("  e2"),
                                       s("  e1") };
    QTest::newRow("onto a sibling's row that stands under it")
        << s("m1") << s("t9")
        << QStringList { s("menu id=m1"), s("  Item id=i1"), s("  Item id=i2"), s("Item id=e1 parent=t1"),
               s("Item id=e2 parent=t1") }
        << QStringList { s("m1"), s("  i1"), s("  i2"), s("  t9"), s("t1"), s("  e1"), s("  e2") };
}

void TestEntryMove::moveBesideRecorded()
{
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    Model model("<ExtDataSet><ExtData id=\"kit.menus\"><Format target=\"bench\"><menu id=\"m1\"><Item id=\"i1\"/>"
                "<Item id=\"i2\"/></menu><Item id=\"e1\" parent=\"t1\"/><Item id=\"e2\" parent=\"t1\"/></Format>"
                "</ExtData></ExtDataSet>",
        "<ExtDataSet><ExtData id=\"kit.menus\"><Format target=\"bench\"><menu id=\"t1\"/>"
        "<menu id=\"t9\" parent=\"m1\"/></Format></ExtData></ExtDataSet>");
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    Shown shown(realizations.formats(s("bench")) + realizations.siblingFormats(s("bench")));
    // What is recorded waits until the sibling's rows are there.
    for (const char *id : { "e1", "e2" }) {
        PointTreeWidgetItem *entry = shown.row(s(id));
        entry->parentItem()->detachChild(entry);
        entry->takeRow();
        shown.row(s("t1"))->addChild(entry, false);
        shown.row(s("t1"))->QTreeWidgetItem::addChild(entry);
    }
    const DropSite site = shown.site(onto, true, s("bench"));
    QCOMPARE(words(EntryMove::perform(site, shown.row(dragged))), s("modified"));
    QTEST(ModelTesting::tree(realizations.formats(s("bench")).first()), "savedFormat");
    QTEST(shown.rows(), "rows");
    QCOMPARE(model.complaints(), QStringList());
}

void TestEntryMove::moveStaysInItsFormat()
{
    Model model("<ExtDataSet><ExtData id=\"kit.menus\"><Format target=\"bench\"/><Format target=\"bench\">"
                "<menu id=\"m1\"><Item id=\"i1\"/></menu></Format></ExtData></ExtDataSet>",
        kitFormat);
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const Shown shown(realizations.formats(s("bench")) + realizations.siblingFormats(s("bench")));
    EntryMove::perform(shown.site(s("t1"), true, s("bench")), shown.row(s("i1")));
    QCOMPARE(ModelTesting::tree(realizations.holders(s("kit.menus")).first()),
        (QStringList {
            s("Format target=bench"), s("Format target=bench"), s("  menu id=m1"), s("  Item id=i1 parent=t1") }));
    QCOMPARE(model.complaints(), QStringList());
}

QTEST_MAIN(TestEntryMove)
#include "tst_entrymove.moc"

#include "droptesting.h"
#include "form/drops/entrymove.h"

using namespace DropTesting;

/// Entries of a format tree that are moved within it, without a mouse.
class TestEntryMove : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void move_data();
    void move();
};

void TestEntryMove::move_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("kit");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QString>("plan");
    QTest::addColumn<QString>("saved");
    QByteArray own = "<menu id='m1'><menu id='m2'><Item id='i1'/><Item id='i2'/></menu><Item id='i3'/></menu>"
                     "<gap/><gap/><menu id='m3' parent='x'/>";
    QByteArray kit;
    const auto row = [&](const char *name, const char *dragged, const char *onto, const char *plan, const char *saved) {
        QTest::newRow(name) << own << kit << s(dragged) << s(onto) << s(plan) << s(saved);
    };
    const char *unmoved = "m1(m2(i1, i2), i3), gap, gap, m3 parent=x";
    row("into a menu", "i1", "m3", "into through m3", "m1(m2(i2), i3), gap, gap, m3 parent=x(i1)");
    row("a menu with all its entries", "m2", "m3", "into through m3", "m1(i3), gap, gap, m3 parent=x(m2(i1, i2))");
    row("to the end of where it stands, in another letter case", "m1", "root", "into through Format",
        "gap, gap, m3 parent=x, m1(m2(i1, i2), i3)");
    row("under an own row the parent's name goes", "m3", "m1", "into through m1", "m1(m2(i1, i2), i3, m3), gap, gap");
    row("before a later sibling", "i1", "i2", "before through m2", unmoved);
    row("before an earlier sibling", "i2", "i1", "before through m2", "m1(m2(i2, i1), i3), gap, gap, m3 parent=x");
    row("before a row of another menu", "i1", "i3", "before through m1", "m1(m2(i2), i1, i3), gap, gap, m3 parent=x");
    row("before a later row, past others", "m1", "gap", "before through Format", unmoved);
    row("the first of two without an id", "gap", "m1", "before through Format",
        "gap, m1(m2(i1, i2), i3), gap, m3 parent=x");
    row("before a row of the root", "m2", "gap", "before through Format", "m1(i3), m2(i1, i2), gap, gap, m3 parent=x");
    row("onto itself", "m1", "m1", "nothing", unmoved);
    row("onto a descendant", "m1", "i2", "nothing", unmoved);
    row("the root", "root", "m1", "nothing", unmoved);
    row("where nobody takes it", "i1", "gap", "nothing", unmoved);
    row("onto the root, which has none above", "i1", "root", "nothing", unmoved);

    kit = "<Format id='theirs' target='bench'><menu id='t1'><Item id='t2'/></menu><MenuBar/></Format>";
    row("a sibling's entry", "t2", "m3", "nothing", unmoved);
    row("before a sibling's row", "i1", "t2", "nothing", unmoved);
    row("onto a sibling's menu", "i1", "t1", "into, recorded through t1",
        "m1(m2(i2), i3), gap, gap, m3 parent=x, i1 parent=t1");
    row("onto a sibling's bar, which has no id", "m2", "MenuBar", "into, recorded through MenuBar",
        "m1(i3), gap, gap, m3 parent=x, m2 parent=MenuBar(i1, i2)");
    own = "</Format><Format target='bench'><menu id='m1'><Item id='i1'/></menu>";
    row("recorded, it stays in its own format", "i1", "t1", "into, recorded through t1", " / m1, i1 parent=t1");

    own = "<menu id='m1'><Item id='i1'/><Item id='i2'/></menu><Item id='e1' parent='t1'/><Item id='e2' parent='t1'/>";
    kit = "<Format target='bench'><menu id='t1'/><menu id='t9' parent='m1'/></Format>";
    row("to the recorded ones: the same parent", "i1", "e2", "before through t1",
        "m1(i2), e1 parent=t1, i1 parent=t1, e2 parent=t1");
    row("away from them: no parent", "e1", "i2", "before through m1", "m1(i1, e1, i2), e2 parent=t1");
    row("among them", "e2", "e1", "before through t1", "m1(i1, i2), e2 parent=t1, e1 parent=t1");
    row("onto a sibling's row that stands under it", "m1", "t9", "nothing", "m1(i1, i2), e1 parent=t1, e2 parent=t1");
}

void TestEntryMove::move()
{
    QFETCH(QByteArray, own);
    QFETCH(QByteArray, kit);
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    const QByteArray start = "<ExtDataSet><ExtData id='kit.menus'>";
    const QByteArray end = "</ExtData></ExtDataSet>";
    Model model(start + "<Format target='bench'>" + own + "</Format>" + end, start + kit + end);
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const auto roots = [&] { return realizations.formats(s("bench")) + realizations.siblingFormats(s("bench")); };
    const Shown shown(roots());
    PointTreeWidgetItem *row = shown.row(dragged);
    PointTreeWidgetItem *behind = row->master()->item();

    // In a tree that is changed by recording alone no entry moves.
    QCOMPARE(words(EntryMove::perform(shown.site(onto, false, s("bench")), row)), QString());
    const DropSite site = shown.site(onto, true, s("bench"));
    QTEST(words(EntryMove::plan(site, row)), "plan");
    QCOMPARE(words(EntryMove::perform(site, row)), s("modified"));
    QStringList saved;
    for (const PointTreeWidgetItem *format : realizations.formats(s("bench")))
        saved.append(picture(format).remove(s("menu:")).remove(s("Item:")));
    QTEST(saved.join(s(" / ")), "saved");
    // The rows stand where they would if the file were opened anew.
    QCOMPARE(shown.rows(), Shown(roots()).rows());
    QCOMPARE(model.complaints(), QStringList());
    QCOMPARE(row->master()->item(), behind);
}

QTEST_MAIN(TestEntryMove)
#include "tst_entrymove.moc"

#include "droptesting.h"
#include "form/drops/pointdrop.h"
#include "form/drops/recorddrop.h"

using namespace DropTesting;

/// Where a drop into a format tree goes, and what points and records do there, without a mouse.
class TestFormatDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void drop_data();
    void drop();
    void deadSourcesAreForgotten();
};

void TestFormatDrops::drop_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QString>("plan");
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QString>("rows");
    const char *tree = "direct";
    QByteArray own = "<ExtData id='kit.menus'><Format target='bench'><menu id='m'/><MenuBar/></Format></ExtData>";
    const auto row = [&](const char *name, const char *dragged, const char *onto, const char *plan, const char *saved,
                         const char *rows) {
        QTest::newRow(name) << s(tree) << own << s(dragged) << s(onto) << s(plan) << s(saved) << s(rows);
    };
    const auto refused = [&](const char *name, const char *dragged, const char *onto, const char *saved,
                             const char *rows) { row(name, dragged, onto, "nothing", saved, rows); };

    // Points.
    row("sub point, the text of its declarations first", "Item", "m", "into through m",
        "ExtData:kit.menus(Format target=bench(menu:m(Item:own.Item#), MenuBar))",
        "m(own.Item# | New item), MenuBar, t1(t2)");
    row("sub point, then the title", "menu", "MenuBar", "into through MenuBar",
        "ExtData:kit.menus(Format target=bench(menu:m, MenuBar(menu:own.menu#)))",
        "m, MenuBar(own.menu# | New menu), t1(t2)");
    row("point by its key", "kit.tools", "m", "into through m",
        "ExtData:kit.menus(Format target=bench(menu:m(item:own.item#), MenuBar))",
        "m(own.item# | Tool), MenuBar, t1(t2)");
    row("tool bars are shown by their kind", "ToolBars", "root", "into through Format",
        "ExtData:kit.menus(Format target=bench(menu:m, MenuBar, ToolBars:own.ToolBars#))",
        "m, MenuBar, t1(t2), ToolBars");
    const char *unchanged = "ExtData:kit.menus(Format target=bench(menu:m, MenuBar))";
    refused("a second menu bar", "MenuBar", "root", unchanged, "m, MenuBar, t1(t2)");
    refused("tool bars under a menu", "ToolBars", "m", unchanged, "m, MenuBar, t1(t2)");
    refused("a kind that is not taken", "Item", "root", unchanged, "m, MenuBar, t1(t2)");
    row("a sibling's row in a direct tree", "Item", "t1", "into, recorded through t1",
        "ExtData:kit.menus(Format target=bench(menu:m, MenuBar, Item:own.Item# parent=t1), Item:own.Item#)",
        "m, MenuBar, t1(t2, own.Item# | New item)");
    own = "<ExtData id='kit.menus'><Format target='bench'><gap/></Format></ExtData>";
    refused("a kind that stands there already", "gap", "root", "ExtData:kit.menus(Format target=bench(gap))",
        "gap, t1(t2), MenuBar");
    own = "<ExtData id='own.p'><Format target='bench'/></ExtData>";
    row("a kind that only the sibling behind the row takes", "gap", "root", "into, recorded through theirs",
        "ExtData:own.p(Format target=bench), ExtData plugin=own:kit.menus extPlugin=kit("
        "Format(gap:own.gap# parent=theirs), gap:own.gap#)",
        "t1(t2), MenuBar, own.gap#");

    tree = "recorded";
    own.clear();
    row("everything is made", "Item", "t1", "into, recorded through t1",
        "ExtData plugin=own:kit.menus extPlugin=kit(Format(Item:own.Item# parent=t1), Item:own.Item#)",
        "t1(t2, own.Item# | New item), MenuBar");
    refused("recorded, not taken", "Item", "MenuBar", "", "t1(t2), MenuBar");
    own = "<ExtData id='a'/><ExtData id='kit.tools'><item id='x'/></ExtData>";
    row("the point's own data, its format first", "kit.tools", "t1", "into, recorded through t1",
        "ExtData:a, ExtData:kit.tools(Format(item:own.item# parent=t1), item:x, item:own.item#)",
        "t1(t2, own.item# | Tool), MenuBar");
    own = "<ExtData id='kit.menus'><Format target='a'/><Format id='b'/><format id='bench'/><Format/></ExtData>";
    row("the format of this tab is used, others are passed over", "menu", "MenuBar", "into, recorded through MenuBar",
        "ExtData:kit.menus(Format target=a, Format:b, format:bench(menu:own.menu# parent=MenuBar), Format,"
        " menu:own.menu#)",
        "t1(t2), MenuBar(own.menu# | New menu)");

    const QByteArray records
        = "<menu id='r1' title='First'/><Item id='r2' text='Second' title='no'/><other id='r3'/></ExtData>";
    const auto record = [&](const char *name, const QByteArray &formats, const char *dragged, const char *onto,
                            const char *plan, const char *saved, const char *rows) {
        own = "<ExtData id='kit.menus'>" + formats + records;
        const QByteArray whole
            = QByteArray("ExtData:kit.menus(") + saved + "menu:r1 title=First, Item:r2 text=Second title=no, other:r3)";
        row(name, dragged, onto, plan, whole.constData(), rows);
    };
    tree = "direct";
    const QByteArray menu = "<Format target='bench'><menu id='m'/></Format>";
    record("a record directly", menu, "r2", "m", "into through m", "Format target=bench(menu:m(Item:r2)), ",
        "m(r2 | Second), t1(t2), MenuBar");
    record("a record directly, labelled by its title", menu, "r1", "root", "into through Format",
        "Format target=bench(menu:m, menu:r1), ", "m, t1(t2), MenuBar, r1 | First");
    record("a record, not taken", menu, "r2", "root", "nothing", "Format target=bench(menu:m), ", "m, t1(t2), MenuBar");
    record("a record onto a sibling's row in a direct tree", menu, "r2", "t1", "into, recorded through t1",
        "Format target=bench(menu:m, Item:r2 parent=t1), ", "m, t1(t2, r2 | Second), MenuBar");
    tree = "recorded";
    record("a record of a kind that nobody knows", "", "r3", "t1", "nothing", "", "t1(t2), MenuBar");
    record("a record, the format is made first", "", "r2", "t1", "into, recorded through t1",
        "Format(Item:r2 parent=t1), ", "t1(t2, r2 | Second), MenuBar");
    record("a record under what has no id", "", "r1", "MenuBar", "into, recorded through MenuBar",
        "Format(menu:r1 parent=MenuBar), ", "t1(t2), MenuBar(r1 | First)");
    const QByteArray three = "<Format target='a'/><Format target='bench'/><format/>";
    record("a record, in the format of this tab alone", three, "r2", "t1", "into, recorded through t1",
        "Format target=a, Format target=bench(Item:r2 parent=t1), format, ", "t1(t2, r2 | Second), MenuBar");
    record("a record, formats of other tabs do not serve", "<Format target='a'/><Format id='b'/>", "r2", "t1",
        "into, recorded through t1", "Format(Item:r2 parent=t1), Format target=a, Format:b, ",
        "t1(t2, r2 | Second), MenuBar");
    tree = "of no tab";
    record("a record in a tree of no tab, in every format", three, "r2", "t1", "into, recorded through t1",
        "Format target=a(Item:r2 parent=t1), Format target=bench(Item:r2 parent=t1), format(Item:r2 parent=t1), ",
        "t1(t2, r2 | Second), MenuBar");
    record("a record in a tree of no tab, without a format", "", "r2", "t1", "into, recorded through t1",
        "Format(Item:r2 parent=t1), ", "t1(t2, r2 | Second), MenuBar");
}

void TestFormatDrops::drop()
{
    QFETCH(QString, tree);
    QFETCH(QByteArray, own);
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    Model model(own.isEmpty() ? own : "<ExtDataSet>" + own + "</ExtDataSet>",
        "<ExtDataSet><ExtData id='kit.menus'><Format id='theirs' target='bench'><menu id='t1'><Item id='t2'/></menu>"
        "<MenuBar/></Format></ExtData></ExtDataSet>");
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const bool direct = tree == s("direct");
    const Shown shown(
        (direct ? realizations.formats(s("bench")) : Shown::Nodes()) + realizations.siblingFormats(s("bench")));
    const DropSite site = shown.site(onto, direct, tree == s("of no tab") ? QString() : s("bench"));
    PointTreeWidgetItem *point = model.point(dragged);
    PointTreeWidgetItem *record = model.record(dragged);
    QVERIFY(site.row && PointDrop::takes(point) != bool(record));

    QTEST(words(record ? RecordDrop::plan(site, record) : PointDrop::plan(site, point)), "plan");
    OwnSlots::FirstFound found;
    const DropOutcome outcome = record ? RecordDrop::perform(site, record) : PointDrop::perform(site, point, &found);
    QFETCH(QString, plan);
    QFETCH(QString, saved);
    // Every format that records it is told of.
    QString announced = s("target drop ").repeated(saved.count(s("parent="))) + s("modified");
    if (!plan.contains(s("recorded")))
        announced = s(plan == s("nothing") ? "" : record ? "drop modified" : "drop");
    QCOMPARE(words(outcome), announced);
    QCOMPARE(model.saved(), saved.isEmpty() ? saved : s("ExtDataSet(%1)").arg(saved));
    QTEST(shown.rows(), "rows");
    QCOMPARE(model.complaints(), QStringList());
    QVERIFY(!RecordDrop::plan(site, nullptr));
    // Nobody to record it with.
    PointTreeWidgetItem stray((QString()));
    stray.setKind(s("menu"));
    QVERIFY(direct || !RecordDrop::plan(site, &stray));
    if (outcome.additions.isEmpty())
        return;

    const DropOutcome::Addition addition = outcome.additions.first();
    QVERIFY(realizations.isOwn(addition.row));
    QCOMPARE(PointTreeWidgetItemTestAccess::isDroppedCopy(*addition.row), bool(record));
    // The point of the place that it is kept in, as the file will say when it is opened again.
    QCOMPARE(addition.row->pointId(), addition.row->link()->parent()->item()->pointId());
    if (point && addition.format) {
        QCOMPARE(addition.row->link()->parent(), addition.format.data());
        PointTreeWidgetItem *twin = realizations.record(addition.row->property(s("id")).toString());
        QVERIFY(twin);
        QCOMPARE(twin->pointId(), point->pointId());
        QVERIFY(PointTreeWidgetItemTestAccess::isNew(*twin));
    }
    // What is edited there reaches every saved copy.
    addition.row->setProperty(s("text"), s("edited"));
    QCOMPARE(model.saved().count(s("text=edited")), outcome.additions.size());
}

void TestFormatDrops::deadSourcesAreForgotten()
{
    auto *row = new PointTreeWidgetItem(s("row"));
    auto *first = new PointTreeWidgetItem(s("first"));
    PointTreeWidgetItem second(s("second"));
    const MergedSources sources({ { row, first }, { row, &second } });
    QCOMPARE(sources.of(row), (MergedSources::Nodes { first, &second }));
    delete first;
    QCOMPARE(sources.of(row), (MergedSources::Nodes { &second }));
    delete row;
    // Another row may come to stand in the same memory.
    QCOMPARE(sources.of(row), MergedSources::Nodes());
    QCOMPARE(sources.of(nullptr), MergedSources::Nodes());
}

QTEST_MAIN(TestFormatDrops)
#include "tst_formatdrops.moc"

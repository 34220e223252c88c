#include "droptesting.h"
#include "form/drops/entrymove.h"
#include "form/drops/pointdrop.h"
#include "form/drops/recorddrop.h"
#include "form/drops/tabledrop.h"

using namespace DropTesting;

/// What drops and moves do to the model and to the rows, without a mouse.
class TestDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void move_data();
    void move();
    void intoFormats_data();
    void intoFormats();
    void rowsOfNoFile();
    void deadSourcesAreForgotten();
    void ontoTable_data();
    void ontoTable();
    void ontoTableWithoutModel();
};

void TestDrops::move_data()
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

void TestDrops::move()
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

void TestDrops::intoFormats_data()
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

void TestDrops::intoFormats()
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

void TestDrops::rowsOfNoFile()
{
    Model model("<ExtDataSet><ExtData id='kit.menus'><menu id='r1'/></ExtData></ExtDataSet>");
    QTreeWidget tree;
    auto *root = new PointTreeWidgetItem(s("root"));
    root->setKind(s("Format"));
    root->setPointId(s("kit.menus"));
    auto *above = new PointTreeWidgetItem(s("above"));
    tree.addTopLevelItem(above);
    above->addChild(root, false);
    above->QTreeWidgetItem::addChild(root);
    DropSite site;
    site.row = root;
    OwnSlots::FirstFound found;
    PointTreeWidgetItem *first = PointDrop::perform(site, model.point(s("menu")), &found).additions.value(0).row;
    PointTreeWidgetItem *second = RecordDrop::perform(site, model.record(s("r1"))).additions.value(0).row;
    // What was dropped there is found as an own entry all the same.
    for (PointTreeWidgetItem *entry : { first, second })
        QCOMPARE(Controller::instance()->ownRealizations().all().count(entry), 1);
    site.row = first;
    QCOMPARE(words(EntryMove::perform(site, second)), s("modified"));
    QCOMPARE(picture(root), s("menu:own.menu#(menu:r1)"));
    QCOMPARE(first->child(0), static_cast<QTreeWidgetItem *>(second));
    site.row = root;
    EntryMove::perform(site, second);
    QCOMPARE(picture(root), s("menu:own.menu#, menu:r1"));
    QCOMPARE(root->child(1), static_cast<QTreeWidgetItem *>(second));
}

void TestDrops::deadSourcesAreForgotten()
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

void TestDrops::ontoTable_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<int>("times");
    QTest::addColumn<QString>("saved");
    const auto row = [](const char *name, const char *own, const char *dragged, int times, const char *saved) {
        QTest::newRow(name) << QByteArray(own) << s(dragged) << times << s(saved);
    };
    row("a point with a key, its data is made", "<ExtDataSet/>", "kit.tools", 1,
        "ExtDataSet(ExtData plugin=own:kit.tools extPlugin=kit(item:own.item# text=Tool))");
    row("dropped again, only a record is made", "<ExtDataSet/>", "kit.tools", 2,
        "ExtDataSet(ExtData plugin=own:kit.tools extPlugin=kit(item:own.item# text=Tool, item:own.item# text=Tool))");
    row("a point where no data set is", "", "kit.tools", 1,
        "ExtDataSet(ExtData plugin=own:kit.tools extPlugin=kit(item:own.item# text=Tool))");
    row("a point without a key goes by the end of its id; sub points declare nothing for it", "<ExtDataSet/>",
        "kit.menus", 1, "ExtDataSet(ExtData plugin=own:kit.menus extPlugin=kit(menus:own.menus# icon=menus.svg))");
    row("a declaration without a value", "<ExtDataSet/>", "kit.plain", 1,
        "ExtDataSet(ExtData plugin=own:kit.plain extPlugin=kit(plain:own.plain# text=))");
    row("the kind is declared", "<ExtDataSet/>", "kit.declared", 1,
        "ExtDataSet(ExtData plugin=own:kit.declared extPlugin=kit(thing:own.thing# Key=thing))");
    row("into the first data of the point, past namesakes of another kind",
        "<ExtDataSet><other id='kit.tools'/><ExtData id='kit.menus'/></ExtDataSet>"
        "<ExtDataSet><extdata id='kit.tools'><a/></extdata><ExtData id='kit.tools'/></ExtDataSet>",
        "kit.tools", 1,
        "ExtDataSet(other:kit.tools, ExtData:kit.menus), "
        "ExtDataSet(extdata:kit.tools(a, item:own.item# text=Tool), ExtData:kit.tools)");
    row("new data goes into the first data set", "<ExtDataSet><ExtData id='a'/></ExtDataSet><ExtDataSet/>", "kit.tools",
        1, "ExtDataSet(ExtData:a, ExtData plugin=own:kit.tools extPlugin=kit(item:own.item# text=Tool)), ExtDataSet");
    row("a sub point of its own declarations, whose id does not stay", "<ExtDataSet/>", "gap", 1,
        "ExtDataSet(ExtData plugin=own:kit.menus extPlugin=kit(gap:own.gap# size=8))");
    row("a sub point where nothing is, twice", "", "menu", 2,
        "ExtDataSet(ExtData plugin=own:kit.menus extPlugin=kit("
        "menu:own.menu# title=New menu, menu:own.menu# title=New menu))");
    row("a sub point in its owner's data", "<ExtDataSet><ExtData id='kit.menus'><Format/></ExtData></ExtDataSet>",
        "menu", 1, "ExtDataSet(ExtData:kit.menus(Format, menu:own.menu# title=New menu))");
}

void TestDrops::ontoTable()
{
    QFETCH(QString, dragged);
    QFETCH(int, times);
    QFETCH(QByteArray, own);
    Model model(own);
    PointTreeWidgetItem *point = model.point(dragged);
    QVERIFY(point);
    for (int i = 0; i < times; ++i) {
        const TableDrop::Outcome outcome = TableDrop::perform(point);
        QVERIFY(outcome.record && TableDrop::takes(point));
        if (!outcome.parent->parent()) {
            QCOMPARE(model.saved(), QString());
            // As the page does it.
            OwnEdits::insert(Controller::instance()->ownEdits().ensureDataSet(), outcome.parent);
        }
        QCOMPARE(outcome.record->parentItem(), outcome.parent.data());
        QCOMPARE(outcome.parent->children().last()->item(), outcome.record.data());
        QCOMPARE(outcome.parent->pointId(), point->pointId());
        QCOMPARE(outcome.record->pointId(), point->pointId());
        QVERIFY(outcome.record->basePath().endsWith(s("/own/")));
        QCOMPARE(outcome.record->text(0), outcome.record->property(s("id")).toString());
        QCOMPARE(outcome.isSubPoint, point->isKind(QLatin1String("SubExtPoint")));
        // The page finds what it is to show.
        QVERIFY(Controller::instance()->ownRealizations().recordsOf(point).contains(outcome.record));
    }
    QTEST(model.saved(), "saved");
    QCOMPARE(model.complaints(), QStringList());
}

void TestDrops::ontoTableWithoutModel()
{
    QVERIFY(!TableDrop::takes(nullptr));
    PointTreeWidgetItem node(s("p"));
    node.setProperty(s("id"), s("p"));
    QVERIFY2(!TableDrop::takes(&node), "no point");
    node.setKind(s("ExtPoint"));
    QVERIFY(TableDrop::takes(&node) && !TableDrop::perform(&node).record);
    node.setProperty(s("id"), QString());
    QVERIFY2(!TableDrop::takes(&node), "a point without an id");
}

QTEST_MAIN(TestDrops)
#include "tst_drops.moc"

#include "droptesting.h"
#include "form/drops/pointdrop.h"
#include "form/drops/recorddrop.h"

using namespace DropTesting;

namespace {

const QByteArray kitFormat = R"(
<ExtDataSet><ExtData id="kit.menus">
  <Format id="theirs" target="bench"><menu id="t1"><Item id="t2"/></menu><MenuBar/></Format>
</ExtData></ExtDataSet>)";

/// An opened file with records, and with the formats in @p formats before them.
QByteArray records(const QByteArray &formats)
{
    return "<ExtDataSet><ExtData id=\"kit.menus\">" + formats
        + "<menu id=\"r1\" title=\"First\"/><Item id=\"r2\" text=\"Second\" title=\"no\"/><other id=\"r3\"/>"
          "</ExtData></ExtDataSet>";
}

} // namespace

/// Where a drop into a format tree goes, and what points and records do there, without a mouse.
class TestFormatDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void point_data();
    void point();
    void record_data();
    void record();
    void editsReachEverySavedReference();
    void deadSourcesAreForgotten();
};

void TestFormatDrops::point_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("kit");
    QTest::addColumn<bool>("direct");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QString>("plan");
    QTest::addColumn<QString>("announced");
    QTest::addColumn<QStringList>("saved");
    QTest::addColumn<QStringList>("rows");
    const QByteArray small = "<ExtDataSet><ExtData id=\"kit.menus\"><Format target=\"bench\"><menu id=\"m\"/>"
                             "<MenuBar/></Format></ExtData></ExtDataSet>";
    const QByteArray theirs = small.mid(0).replace("\"m\"", "\"t\"");
    const QStringList head { s("ExtDataSet"), s("  ExtData id=kit.menus"), s("    Format target=bench") };
    const QStringList smallSaved = head + QStringList { s("      menu id=m"), s("      MenuBar") };
    const QStringList smallRows { s("m"), s("MenuBar") };
    const QStringList theirRows { s("t"), s("MenuBar") };

    QTest::newRow("sub point, the text of its declarations first")
        << small << QByteArray() << true << s("Item") << s("m") << s("into through m") << s("drop")
        << head + QStringList { s("      menu id=m"), s("        Item id=own.Item#"), s("      MenuBar") }
        << QStringList { s("m"), s("  own.Item# | New item"), s("MenuBar") };
    QTest::newRow("sub point, then the title")
        << small << QByteArray() << true << s("menu") << s("MenuBar") << s("into through MenuBar") << s("drop")
        << smallSaved + QStringList { s("        menu id=own.menu#") }
        << QStringList { s("m"), s("MenuBar"), s("  own.menu# | New menu") };
    QTest::newRow("point by its key") << small << QByteArray() << true << s("kit.tools") << s("m")
                                      << s("into through m") << s("drop")
                                      << head
            + QStringList { s("      menu id=m"), s("        item id=own.item#"), s("      MenuBar") }
                                      << QStringList { s("m"), s("  own.item# | Tool"), s("MenuBar") };
    QTest::newRow("tool bars are shown by their kind")
        << small << QByteArray() << true << s("ToolBars") << s("root") << s("into through Format") << s("drop")
        << smallSaved + QStringList { s("      ToolBars id=own.ToolBars#") }
        << QStringList { s("m"), s("MenuBar"), s("ToolBars") };
    QTest::newRow("a second menu bar") << small << QByteArray() << true << s("MenuBar") << s("root") << s("nothing")
                                       << QString() << smallSaved << smallRows;
    QTest::newRow("tool bars under a menu") << small << QByteArray() << true << s("ToolBars") << s("m") << s("nothing")
                                            << QString() << smallSaved << smallRows;
    QTest::newRow("a kind that is not taken") << small << QByteArray() << true << s("Item") << s("root") << s("nothing")
                                              << QString() << smallSaved << smallRows;
    QTest::newRow("a kind that stands there already")
        << QByteArray(small).replace("<MenuBar/>", "<gap/>") << QByteArray() << true << s("gap") << s("root")
        << s("nothing") << QString() << head + QStringList { s("      menu id=m"), s("      gap") }
        << QStringList { s("m"), s("gap") };

    QTest::newRow("onto a sibling's, everything is made")
        << QByteArray() << theirs << false << s("Item") << s("t") << s("into, recorded through t")
        << s("target drop modified")
        << QStringList { s("ExtDataSet"), s("  ExtData plugin=own id=kit.menus extPlugin=kit"), s("    Format"),
               s("      Item id=own.Item# parent=t"), s("    Item id=own.Item#") }
        << QStringList { s("t"), s("  own.Item# | New item"), s("MenuBar") };
    QTest::newRow("the point's own data, its format first")
        << QByteArray(
               "<ExtDataSet><ExtData id=\"a\"/><ExtData id=\"kit.tools\"><item id=\"x\"/></ExtData></ExtDataSet>")
        << theirs << false << s("kit.tools") << s("t") << s("into, recorded through t") << s("target drop modified")
        << QStringList { s("ExtDataSet"), s("  ExtData id=a"), s("  ExtData id=kit.tools"), s("    Format"),
               s("      item id=own.item# parent=t"), s("    item id=x"), s("    item id=own.item#") }
        << QStringList { s("t"), s("  own.item# | Tool"), s("MenuBar") };
    QTest::newRow("the format of this tab is used, others are passed over")
        << QByteArray("<ExtDataSet><ExtData id=\"kit.menus\"><Format target=\"a\"/><Format id=\"b\"/>"
                      "<format id=\"bench\"/><Format/></ExtData></ExtDataSet>")
        << theirs << false << s("menu") << s("MenuBar") << s("into, recorded through MenuBar")
        << s("target drop modified")
        << QStringList { s("ExtDataSet"), s("  ExtData id=kit.menus"), s("    Format target=a"), s("    Format id=b"),
               s("    format id=bench"), s("      menu id=own.menu# parent=MenuBar"), s("    Format"),
               s("    menu id=own.menu#") }
        << QStringList { s("t"), s("MenuBar"), s("  own.menu# | New menu") };
    QTest::newRow("a sibling's row in a direct tree")
        << small << QByteArray(theirs).replace("<MenuBar/>", "") << true << s("Item") << s("t")
        << s("into, recorded through t") << s("target drop modified")
        << smallSaved + QStringList { s("      Item id=own.Item# parent=t"), s("    Item id=own.Item#") }
        << QStringList { s("m"), s("MenuBar"), s("t"), s("  own.Item# | New item") };
    QTest::newRow("a kind that only the sibling behind the row takes")
        << QByteArray("<ExtDataSet><ExtData id=\"own.p\"><Format target=\"bench\"/></ExtData></ExtDataSet>")
        << QByteArray(theirs).replace("<Format ", "<Format id=\"root of theirs\" ") << true << s("gap") << s("root")
        << s("into, recorded through root of theirs") << s("target drop modified")
        << QStringList { s("ExtDataSet"), s("  ExtData id=own.p"), s("    Format target=bench"),
               s("  ExtData plugin=own id=kit.menus extPlugin=kit"), s("    Format"),
               s("      gap id=own.gap# parent=root of theirs"), s("    gap id=own.gap#") }
        << QStringList { s("t"), s("MenuBar"), s("own.gap#") };
    QTest::newRow("recorded, not taken") << QByteArray() << theirs << false << s("Item") << s("MenuBar") << s("nothing")
                                         << QString() << QStringList() << theirRows;
}

void TestFormatDrops::point()
{
    QFETCH(QByteArray, own);
    QFETCH(QByteArray, kit);
    QFETCH(bool, direct);
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    Model model(own, kit);
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const Shown::Nodes ours
        = own.contains("<menu id=\"m\"") || own.contains("own.p") ? realizations.formats(s("bench")) : Shown::Nodes();
    const Shown shown(ours + realizations.siblingFormats(s("bench")));
    const DropSite site = shown.site(onto, direct, s("bench"));
    PointTreeWidgetItem *point = model.point(dragged);
    QVERIFY(point && site.row && PointDrop::takes(point));

    QTEST(words(PointDrop::plan(site, point)), "plan");
    OwnSlots::FirstFound found;
    const DropOutcome outcome = PointDrop::perform(site, point, &found);
    QTEST(words(outcome), "announced");
    QTEST(model.saved(), "saved");
    QTEST(shown.rows(), "rows");
    QCOMPARE(model.complaints(), QStringList());
    if (outcome.additions.isEmpty())
        return;
    PointTreeWidgetItem *entry = outcome.additions.first().row;
    QVERIFY(realizations.isOwn(entry));
    // The point of the place that it is kept in, as the file will say when it is opened again.
    QCOMPARE(entry->pointId(), entry->link()->parent()->item()->pointId());
    if (outcome.additions.first().format) {
        QCOMPARE(entry->link()->parent(), outcome.additions.first().format.data());
        PointTreeWidgetItem *twin = realizations.record(entry->property(s("id")).toString());
        QVERIFY(twin);
        QCOMPARE(twin->pointId(), point->pointId());
        QVERIFY(PointTreeWidgetItemTestAccess::isNew(*twin));
    }
}

void TestFormatDrops::record_data()
{
    QTest::addColumn<QByteArray>("formats");
    QTest::addColumn<bool>("direct");
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QString>("announced");
    QTest::addColumn<QStringList>("data");
    QTest::addColumn<QStringList>("rows");
    const QStringList rest { s("menu id=r1 title=First"), s("Item id=r2 text=Second title=no"), s("other id=r3") };
    const QByteArray own = "<Format target=\"bench\"><menu id=\"m\"/></Format>";
    const QByteArray three = "<Format target=\"a\"/><Format target=\"bench\"/><format/>";
    const QStringList theirs { s("t1"), s("  t2"), s("MenuBar") };
    const QStringList withSecond { s("t1"), s("  t2"), s("  r2 | Second"), s("MenuBar") };

    QTest::newRow("directly") << own << true << s("bench") << s("r2") << s("m") << s("drop modified")
                              << QStringList { s("Format target=bench"), s("  menu id=m"), s("    Item id=r2") } + rest
                              << QStringList { s("m"), s("  r2 | Second") } + theirs;
    QTest::newRow("directly, labelled by its title")
        << own << true << s("bench") << s("r1") << s("root") << s("drop modified")
        << QStringList { s("Format target=bench"), s("  menu id=m"), s("  menu id=r1") } + rest
        << QStringList { s("m"), s("t1"), s("  t2"), s("MenuBar"), s("r1 | First") };
    QTest::newRow("not taken") << own << true << s("bench") << s("r2") << s("root") << QString()
                               << QStringList { s("Format target=bench"), s("  menu id=m") } + rest
                               << QStringList { s("m") } + theirs;
    QTest::newRow("of a kind that nobody knows")
        << QByteArray() << false << s("bench") << s("r3") << s("t1") << QString() << rest << theirs;
    QTest::newRow("recorded, the format is made first")
        << QByteArray() << false << s("bench") << s("r2") << s("t1") << s("target drop modified")
        << QStringList { s("Format"), s("  Item id=r2 parent=t1") } + rest << withSecond;
    QTest::newRow("recorded, named by the kind")
        << QByteArray() << false << s("bench") << s("r1") << s("MenuBar") << s("target drop modified")
        << QStringList { s("Format"), s("  menu id=r1 parent=MenuBar") } + rest
        << QStringList { s("t1"), s("  t2"), s("MenuBar"), s("  r1 | First") };
    QTest::newRow("recorded, in the format of this tab alone")
        << three << false << s("bench") << s("r2") << s("t1") << s("target drop modified")
        << QStringList { s("Format target=a"), s("Format target=bench"), s("  Item id=r2 parent=t1"), s("format") }
            + rest
        << withSecond;
    QTest::newRow("recorded, formats of other tabs do not serve")
        << QByteArray("<Format target=\"a\"/><Format id=\"b\"/>") << false << s("bench") << s("r2") << s("t1")
        << s("target drop modified")
        << QStringList { s("Format"), s("  Item id=r2 parent=t1"), s("Format target=a"), s("Format id=b") } + rest
        << withSecond;
    QTest::newRow("recorded in a tree of no tab, in every format")
        << three << false << QString() << s("r2") << s("t1") << s("target drop target drop target drop modified")
        << QStringList { s("Format target=a"), s("  Item id=r2 parent=t1"), s("Format target=bench"),
               s("  Item id=r2 parent=t1"), s("format"), s("  Item id=r2 parent=t1") }
            + rest
        << withSecond;
    QTest::newRow("recorded in a tree of no tab, without a format")
        << QByteArray() << false << QString() << s("r2") << s("t1") << s("target drop modified")
        << QStringList { s("Format"), s("  Item id=r2 parent=t1") } + rest << withSecond;
    QTest::newRow("a sibling's row in a direct tree")
        << own << true << s("bench") << s("r2") << s("t1") << s("target drop modified")
        << QStringList { s("Format target=bench"), s("  menu id=m"), s("  Item id=r2 parent=t1") } + rest
        << QStringList { s("m") } + withSecond;
}

void TestFormatDrops::record()
{
    QFETCH(QByteArray, formats);
    QFETCH(bool, direct);
    QFETCH(QString, tab);
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    QFETCH(QString, announced);
    Model model(records(formats), kitFormat);
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const Shown shown(
        (direct ? realizations.formats(s("bench")) : Shown::Nodes()) + realizations.siblingFormats(s("bench")));
    const DropSite site = shown.site(onto, direct, tab);

    QCOMPARE(bool(RecordDrop::plan(site, model.record(dragged))), !announced.isEmpty());
    const DropOutcome outcome = RecordDrop::perform(site, model.record(dragged));
    QCOMPARE(words(outcome), announced);
    QTEST(ModelTesting::tree(realizations.holders(s("kit.menus")).first()), "data");
    QTEST(shown.rows(), "rows");
    QCOMPARE(model.complaints(), QStringList());
    for (const DropOutcome::Addition &addition : outcome.additions) {
        QVERIFY(PointTreeWidgetItemTestAccess::isDroppedCopy(*addition.row));
        QVERIFY(realizations.isOwn(addition.row));
    }
    QVERIFY(!RecordDrop::plan(site, nullptr));

    // Nobody to record it with.
    PointTreeWidgetItem stray((QString()));
    stray.setKind(s("menu"));
    if (!direct)
        QVERIFY(!RecordDrop::plan(site, &stray));
}

void TestFormatDrops::editsReachEverySavedReference()
{
    Model model(records("<Format/><Format/>"), kitFormat);
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const Shown shown(realizations.siblingFormats(s("bench")));
    const DropOutcome outcome = RecordDrop::perform(shown.site(s("t1"), false), model.record(s("r2")));
    outcome.additions.first().row->setProperty(s("text"), s("edited"));
    QCOMPARE(ModelTesting::tree(realizations.holders(s("kit.menus")).first()).mid(0, 4),
        (QStringList { s("Format"), s("  Item id=r2 parent=t1 text=edited"), s("Format"),
            s("  Item id=r2 parent=t1 text=edited") }));
    QCOMPARE(realizations.references(s("r2")).size(), 2);
    QCOMPARE(model.complaints(), QStringList());
}

void TestFormatDrops::deadSourcesAreForgotten()
{
    auto *row = new PointTreeWidgetItem(s("row"));
    auto *first = new PointTreeWidgetItem(s("first"));
    auto *second = new PointTreeWidgetItem(s("second"));
    const MergedSources sources({ { row, first }, { row, second } });
    QCOMPARE(sources.of(row), (MergedSources::Nodes { first, second }));
    delete first;
    QCOMPARE(sources.of(row), (MergedSources::Nodes { second }));
    delete row;
    // Another row may come to stand in the same memory.
    QCOMPARE(sources.of(row), MergedSources::Nodes());
    QCOMPARE(sources.of(nullptr), MergedSources::Nodes());
    delete second;
}

QTEST_MAIN(TestFormatDrops)
#include "tst_formatdrops.moc"

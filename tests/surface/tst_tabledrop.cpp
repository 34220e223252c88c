#include "droptesting.h"
#include "form/drops/tabledrop.h"

using namespace DropTesting;

/// What a point or a sub point that is dropped onto the table does to the model.
class TestTableDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void drop_data();
    void drop();
    void dropWithoutModel();
};

void TestTableDrop::drop_data()
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

void TestTableDrop::drop()
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
        QCOMPARE(outcome.record->text(0), outcome.record->property(s("id")).toString());
        QCOMPARE(outcome.isSubPoint, point->isKind(QLatin1String("SubExtPoint")));
        // The page finds what it is to show.
        QVERIFY(Controller::instance()->ownRealizations().recordsOf(point).contains(outcome.record));
    }
    QTEST(model.saved(), "saved");
    QCOMPARE(model.complaints(), QStringList());
}

void TestTableDrop::dropWithoutModel()
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

QTEST_MAIN(TestTableDrop)
#include "tst_tabledrop.moc"

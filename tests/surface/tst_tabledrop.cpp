#include "droptesting.h"
#include "form/drops/tabledrop.h"
#include "model/generatedid.h"

#include <QTime>

using namespace DropTesting;

/// What a point or a sub point that is dropped onto the table does to the model.
class TestTableDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void drop_data();
    void drop();
    void dropWithoutDataSet();
    void dropWithoutModel();
    void generatedIds();
};

void TestTableDrop::drop_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<int>("times");
    QTest::addColumn<QStringList>("saved");
    const QByteArray emptySet = "<ExtDataSet/>";
    const QStringList made { s("ExtDataSet"), s("  ExtData plugin=own id=kit.menus extPlugin=kit") };

    QTest::newRow("a point with a key, its data is made")
        << emptySet << s("kit.tools") << 1
        << QStringList { s("ExtDataSet"), s("  ExtData plugin=own id=kit.tools extPlugin=kit"),
               s("    item id=own.item# text=Tool") };
    QTest::newRow("dropped again, only a record is made")
        << emptySet << s("kit.tools") << 2
        << QStringList { s("ExtDataSet"), s("  ExtData plugin=own id=kit.tools extPlugin=kit"),
               s("    item id=own.item# text=Tool"), s("    item id=own.item# text=Tool") };
    QTest::newRow("a point without a key goes by the end of its id; sub points declare nothing for it")
        << emptySet << s("kit.menus") << 1 << made + QStringList { s("    menus id=own.menus# icon=menus.svg") };
    QTest::newRow("a declaration without a value")
        << emptySet << s("kit.plain") << 1
        << QStringList { s("ExtDataSet"), s("  ExtData plugin=own id=kit.plain extPlugin=kit"),
               s("    plain id=own.plain# text=") };
    QTest::newRow("the kind is declared")
        << emptySet << s("kit.declared") << 1
        << QStringList { s("ExtDataSet"), s("  ExtData plugin=own id=kit.declared extPlugin=kit"),
               s("    thing id=own.thing# Key=thing") };
    QTest::newRow("into the first data of the point, past namesakes of another kind")
        << QByteArray("<ExtDataSet><other id=\"kit.tools\"/><ExtData id=\"kit.menus\"/></ExtDataSet>"
                      "<ExtDataSet><extdata id=\"kit.tools\"><a/></extdata><ExtData id=\"kit.tools\"/></ExtDataSet>")
        << s("kit.tools") << 1
        << QStringList { s("ExtDataSet"), s("  other id=kit.tools"), s("  ExtData id=kit.menus"), s("ExtDataSet"),
               s("  extdata id=kit.tools"), s("    a"), s("    item id=own.item# text=Tool"),
               s("  ExtData id=kit.tools") };
    QTest::newRow("new data goes into the first data set")
        << QByteArray("<ExtDataSet><ExtData id=\"a\"/></ExtDataSet><ExtDataSet/>") << s("kit.tools") << 1
        << QStringList { s("ExtDataSet"), s("  ExtData id=a"), s("  ExtData plugin=own id=kit.tools extPlugin=kit"),
               s("    item id=own.item# text=Tool"), s("ExtDataSet") };
    QTest::newRow("a sub point of its own declarations, whose id does not stay")
        << emptySet << s("gap") << 1 << made + QStringList { s("    gap id=own.gap# size=8") };
    QTest::newRow("a sub point where nothing is, twice")
        << QByteArray() << s("menu") << 2
        << made + QStringList { s("    menu id=own.menu# title=New menu"), s("    menu id=own.menu# title=New menu") };
    QTest::newRow("a sub point in its owner's data")
        << QByteArray("<ExtDataSet><ExtData id=\"kit.menus\"><Format/></ExtData></ExtDataSet>") << s("menu") << 1
        << QStringList { s("ExtDataSet"), s("  ExtData id=kit.menus"), s("    Format"),
               s("    menu id=own.menu# title=New menu") };
    QTest::newRow("a plug-in") << emptySet << s("kit") << 1 << QStringList { s("ExtDataSet") };
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
        QCOMPARE(bool(outcome.record), TableDrop::takes(point));
        if (!outcome.record)
            continue;
        QCOMPARE(outcome.record->parentItem(), outcome.parent.data());
        QCOMPARE(outcome.parent->children().last()->item(), outcome.record.data());
        QCOMPARE(outcome.parent->pointId(), point->pointId());
        QCOMPARE(outcome.record->pointId(), point->pointId());
        QCOMPARE(outcome.record->properties().keys().first(), s("id"));
        QCOMPARE(outcome.record->text(0), outcome.record->property(s("id")).toString());
        QCOMPARE(outcome.isSubPoint, point->isKind(QLatin1String("SubExtPoint")));
        // The page finds what it is to show.
        QVERIFY(Controller::instance()->ownRealizations().recordsOf(point).contains(outcome.record));
    }
    QTEST(model.saved(), "saved");
    QCOMPARE(model.complaints(), QStringList());
}

void TestTableDrop::dropWithoutDataSet()
{
    Model model { QByteArray() };
    const TableDrop::Outcome outcome = TableDrop::perform(model.point(s("kit.tools")));
    QCOMPARE(model.saved(), QStringList());
    QVERIFY(outcome.parent && !outcome.parent->parent());
    QCOMPARE(Model::masked(ModelTesting::tree(outcome.parent)), QStringList { s("item id=own.item# text=Tool") });

    // As the page does it.
    OwnEdits::insert(Controller::instance()->ownEdits().ensureDataSet(), outcome.parent);
    QCOMPARE(model.saved(),
        (QStringList { s("ExtDataSet"), s("  ExtData plugin=own id=kit.tools extPlugin=kit"),
            s("    item id=own.item# text=Tool") }));
    QCOMPARE(model.complaints(), QStringList());
}

void TestTableDrop::dropWithoutModel()
{
    PointTreeWidgetItem point(s("p"));
    point.setKind(s("ExtPoint"));
    point.setProperty(s("id"), s("p"));
    QVERIFY(!TableDrop::perform(&point).record);
    QVERIFY(!TableDrop::takes(nullptr));
}

void TestTableDrop::generatedIds()
{
    Model model(QByteArray("<ExtDataSet/>"));
    QStringList ids;
    int before = 0;
    // Again where a second ended between the drops.
    do {
        ids.clear();
        before = QTime::currentTime().second();
        for (const char *point : { "menu", "kit.tools", "menu" })
            ids.append(TableDrop::perform(model.point(s(point))).record->property(s("id")).toString());
    } while (QTime::currentTime().second() != before);
    QCOMPARE(ids.at(0), ids.at(2));
    const QString number = ids.at(0).mid(s("own.menu").size());
    QVERIFY2(QRegularExpression(s("^(0|[1-9][0-9]{0,3})$")).match(number).hasMatch(), qPrintable(number));
    QCOMPARE(ids.at(1), s("own.item") + number);
}

QTEST_MAIN(TestTableDrop)
#include "tst_tabledrop.moc"

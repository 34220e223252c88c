#include "dragbench.h"

#include <QScrollBar>
#include <QSignalSpy>

using namespace DropTesting;

/// Drags by the pointer between the widgets, on a real X server: what is changed, said and painted.
class TestPointerDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void dropsByPointer_data();
    void dropsByPointer();
    void marks_data();
    void marks();
    void sourceDiesInMidDrag();
};

void TestPointerDrops::init()
{
    Controller::instance()->setSourceDataManager(nullptr);
    QCursor::setPos(2, 2);
}

void TestPointerDrops::dropsByPointer_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QStringList>("heard");
    QTest::addColumn<QStringList>("data");
    const QStringList untouched { s("Format target=bench"), s("  menu id=m1"), s("    Item id=i1"), s("    Item id=i2"),
        s("  menu id=m2"), s("Item id=r1 text=Record") };
    QTest::newRow("an entry") << s("format") << s("i2") << s("m2") << QStringList { s("modified") }
                              << QStringList { s("Format target=bench"), s("  menu id=m1"), s("    Item id=i1"),
                                     s("  menu id=m2"), s("    Item id=i2"), s("Item id=r1 text=Record") };
    QTest::newRow("an entry, before") << s("format") << s("i2") << s("i1") << QStringList { s("modified") }
                                      << QStringList { s("Format target=bench"), s("  menu id=m1"), s("    Item id=i2"),
                                             s("    Item id=i1"), s("  menu id=m2"), s("Item id=r1 text=Record") };
    QTest::newRow("an entry onto itself") << s("format") << s("i2") << s("i2") << QStringList() << untouched;
    QTest::newRow("a sub point") << s("points") << s("Item") << s("m2") << QStringList { s("drop own.Item#") }
                                 << QStringList { s("Format target=bench"), s("  menu id=m1"), s("    Item id=i1"),
                                        s("    Item id=i2"), s("  menu id=m2"), s("    Item id=own.Item#"),
                                        s("Item id=r1 text=Record") };
    QTest::newRow("a sub point onto a sibling's row")
        << s("points") << s("Item") << s("t1") << QStringList { s("target Format"), s("drop own.Item#"), s("modified") }
        << QStringList { s("Format target=bench"), s("  menu id=m1"), s("    Item id=i1"), s("    Item id=i2"),
               s("  menu id=m2"), s("  Item id=own.Item# parent=t1"), s("Item id=r1 text=Record"),
               s("Item id=own.Item#") };
    QTest::newRow("a record") << s("table") << s("r1") << s("m2") << QStringList { s("drop r1"), s("modified") }
                              << QStringList { s("Format target=bench"), s("  menu id=m1"), s("    Item id=i1"),
                                     s("    Item id=i2"), s("  menu id=m2"), s("    Item id=r1"),
                                     s("Item id=r1 text=Record") };
    QTest::newRow("a record that is not taken") << s("table") << s("r1") << s("root") << QStringList() << untouched;
    QTest::newRow("what is no record") << s("table") << s("i1") << s("m2") << QStringList() << untouched;
    QTest::newRow("a sub point onto the table")
        << s("points") << s("Item") << s("table") << QStringList { s("add own.Item# true"), s("modified") }
        << untouched + QStringList { s("Item id=own.Item# text=New item title=no") };
    QTest::newRow("a point onto the table")
        << s("points") << s("kit.menus") << s("table") << QStringList { s("add own.menus# false"), s("modified") }
        << untouched + QStringList { s("menus id=own.menus# icon=menus.svg") };
    QTest::newRow("an entry onto the table")
        << s("format") << s("i1") << s("table") << QStringList { s("modified") } << untouched;
    QTest::newRow("a record onto the table") << s("table") << s("r1") << s("table") << QStringList() << untouched;
}

void TestPointerDrops::dropsByPointer()
{
    QFETCH(QString, source);
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    Bench bench;
    QStringList heard;
    const auto id = [](const PointTreeWidgetItem *node) { return node->properties().value(s("id")).toString(); };
    const auto changed = [&heard](bool flag) { heard.append(flag ? s("modified") : s("unmodified")); };
    connect(bench.format, &RealizationTreeWidget::modified, &bench, changed);
    connect(bench.points, &RealizationTreeWidget::modified, &bench, changed);
    connect(bench.table, &RealizationTableWidget::modified, &bench, changed);
    connect(bench.format, &RealizationTreeWidget::setTarget, &bench,
        [&](const PointTreeWidgetItem *format) { heard.append(s("target ") + format->kind()); });
    connect(bench.format, &RealizationTreeWidget::dropPoint, &bench,
        [&](const PointTreeWidgetItem *row) { heard.append(s("drop ") + id(row)); });
    connect(bench.table, &RealizationTableWidget::addTableRealization, &bench,
        [&](const PointTreeWidgetItem *, const PointTreeWidgetItem *child, bool flag) {
            heard.append(s("add ") + id(child) + (flag ? s(" true") : s(" false")));
        });

    QPoint from;
    if (source == s("table")) {
        const QTableWidgetItem *cell = bench.table->findItems(dragged, Qt::MatchExactly).constFirst();
        from = bench.inWindow(bench.table, bench.table->visualItemRect(cell).center());
    } else if (source == s("points")) {
        PointTreeWidgetItem *point = bench.model.point(dragged);
        bench.points->scrollToItem(point);
        from = bench.inWindow(bench.points, bench.place(point));
    } else {
        from = bench.inWindow(bench.format, bench.place(bench.row(qPrintable(dragged))));
    }
    const QPoint to = onto == s("table") ? bench.inWindow(bench.table, bench.table->viewport()->rect().center())
                                         : bench.inWindow(bench.format, bench.place(bench.row(qPrintable(onto))));
    drag(&bench, from, to);
    QTRY_VERIFY(!bench.format->isDragging() && !bench.points->isDragging() && !bench.table->isDragging());
    QTEST(Model::masked(heard), "heard");
    const PointTreeWidgetItem *holder = Controller::instance()->ownRealizations().holders(s("kit.menus")).first();
    QTEST(Model::masked(ModelTesting::tree(holder)), "data");
    QCOMPARE(bench.model.complaints(), QStringList());
}

void TestPointerDrops::marks_data()
{
    QTest::addColumn<QString>("onto");
    QTest::addColumn<bool>("highlighted");
    QTest::newRow("into") << s("m2") << true;
    QTest::newRow("before") << s("i1") << true;
    QTest::newRow("nothing") << s("root") << false;
}

void TestPointerDrops::marks()
{
    QFETCH(QString, onto);
    QFETCH(bool, highlighted);
    Bench bench;
    // A colour that nothing else has.
    QPalette palette = bench.palette();
    for (const auto group : { QPalette::Active, QPalette::Inactive })
        palette.setColor(group, QPalette::Highlight, QColor(250, 0, 250));
    QImage marked;
    QImage left;
    QImage tableMarked;
    QImage tableLeft;
    TreeItemMimeData entry;
    entry.setItem(s("ItemMimeData"), bench.row("i2"));
    TreeItemMimeData point;
    point.setItem(s("ItemMimeData"), bench.model.point(s("kit.tools")));
    QVERIFY(whileDragging(bench.format, bench.place(bench.row("i2")), [&] {
        QDragMoveEvent move(bench.place(bench.row(qPrintable(onto))), Qt::CopyAction, &entry, Qt::LeftButton, {});
        bench.format->dragMoveEvent(&move);
        bench.format->setCurrentItem(nullptr);
        bench.format->setPalette(palette);
        marked = bench.format->viewport()->grab().toImage();
        QDragLeaveEvent leave;
        bench.format->dragLeaveEvent(&leave);
        left = bench.format->viewport()->grab().toImage();

        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &point, Qt::LeftButton, {});
        bench.table->dragEnterEvent(&enter);
        tableMarked = bench.table->viewport()->grab().toImage();
        bench.table->dragLeaveEvent(&leave);
        tableLeft = bench.table->viewport()->grab().toImage();
    }));
    QVERIFY(marked != left);
    const auto pixels = [](const QImage &image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == QColor(250, 0, 250) ? 1 : 0;
        }
        return count;
    };
    QCOMPARE(pixels(left), 0);
    QCOMPARE(pixels(marked) > 0, highlighted);
    QVERIFY(tableMarked != tableLeft);
}

void TestPointerDrops::sourceDiesInMidDrag()
{
    Bench bench;
    auto *tree = new OpenTree;
    auto *row = new PointTreeWidgetItem(s("row"));
    tree->addTopLevelItem(row);
    tree->show();
    QVERIFY(QTest::qWaitForWindowExposed(tree));
    bool died = false;
    QTimer::singleShot(0, &bench, [&] {
        died = tree->isDragging();
        delete tree;
    });
    QTimer::singleShot(5000, &bench, [] { QDrag::cancel(); });
    QMouseEvent press(QEvent::MouseButtonPress, bench.place(row), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(tree->viewport(), &press);
    QMouseEvent move(QEvent::MouseMove, bench.place(row) + QPoint(0, 40), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree->viewport(), &move);
    QVERIFY(died);
}

QTEST_MAIN(TestPointerDrops)
#include "tst_pointerdrops.moc"

#include "droptesting.h"
#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "form/treeitemmimedata.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QToolTip>
#include <QWindow>

#include <functional>
#include <memory>

using namespace DropTesting;

namespace {

/// With the handlers in reach.
template <typename Widget>
class Open final : public Widget
{
public:
    using Widget::dragEnterEvent;
    using Widget::dragLeaveEvent;
    using Widget::dragMoveEvent;
    using Widget::dropEvent;
    using Widget::Widget;
};

using OpenTree = Open<RealizationTreeWidget>;
using OpenTable = Open<RealizationTableWidget>;

class OpenPayload final : public TreeItemMimeData
{
public:
    using TreeItemMimeData::retrieveData;
};

/// The three places of the page side by side: the points, a format tree, and the table.
class Bench final : public QWidget
{
public:
    Bench()
    {
        auto *layout = new QHBoxLayout(this);
        for (QWidget *widget :
            { static_cast<QWidget *>(points), static_cast<QWidget *>(format), static_cast<QWidget *>(table) })
            layout->addWidget(widget);
        points->addTopLevelItem(model.manager.availablePointsRoot());
        points->expandAll();
        const OwnRealizations realizations = Controller::instance()->ownRealizations();
        shown = std::make_unique<Shown>(realizations.formats(s("bench")) + realizations.siblingFormats(s("bench")));
        format->setColumnCount(2);
        format->addTopLevelItem(shown->tree.takeTopLevelItem(0));
        format->expandAll();
        format->setTabName(s("bench"));
        format->setMergedSources(shown->merged);
        table->setColumnCount(1);
        // A record, and a reference that is no record.
        for (const char *id : { "r1", "i1" }) {
            table->insertRow(table->rowCount());
            table->setItem(table->rowCount() - 1, 0, new QTableWidgetItem(s(id)));
        }
        resize(1100, 420);
        show();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("no window");
    }
    ~Bench() override
    {
        points->takeTopLevelItem(0);
        shown->tree.addTopLevelItem(format->takeTopLevelItem(0));
    }

    /// A row of the format tree, else a point.
    [[nodiscard]] PointTreeWidgetItem *row(const QString &name) const
    {
        PointTreeWidgetItem *row = shown->row(name);
        return row ? row : model.point(name);
    }
    [[nodiscard]] QPoint place(const QString &name) const
    {
        QTreeWidgetItem *row = this->row(name);
        row->treeWidget()->scrollToItem(row);
        return row->treeWidget()->visualItemRect(row).center();
    }
    [[nodiscard]] QPoint cell(int row) const { return table->visualItemRect(table->item(row, 0)).center(); }
    [[nodiscard]] QPoint inWindow(const QAbstractScrollArea *area, const QPoint &pos) const
    {
        return area->viewport()->mapTo(const_cast<Bench *>(this), pos);
    }

    Model model {
        R"(<ExtDataSet><ExtData id="kit.menus">
  <Format target="bench"><menu id="m1"><Item id="i1"/><Item id="i2"/></menu><menu id="m2"/></Format>
  <Item id="r1" text="Record"/>
</ExtData></ExtDataSet>)",
        R"(<ExtDataSet><ExtData id="kit.menus"><Format target="bench"><menu id="t1"/></Format></ExtData></ExtDataSet>)"
    };
    std::unique_ptr<Shown> shown;
    OpenTree *points = new OpenTree;
    OpenTree *format = new OpenTree;
    OpenTable *table = new OpenTable;
};

/// Presses, moves by @p by, and lets go, without a pointer.
void pressAndMove(const QPointer<QWidget> &viewport, const QPoint &from, const QPoint &by, Qt::MouseButton button)
{
    const auto send = [&](QEvent::Type type, const QPoint &pos, Qt::MouseButton which, Qt::MouseButtons held) {
        if (!viewport)
            return;
        QMouseEvent event(type, pos, viewport->mapToGlobal(pos), which, held, Qt::NoModifier);
        QApplication::sendEvent(viewport, &event);
    };
    send(QEvent::MouseButtonPress, from, button, button);
    send(QEvent::MouseMove, from + by, Qt::NoButton, button);
    send(QEvent::MouseButtonRelease, from + by, button, Qt::NoButton);
}

/// Runs @p meanwhile while @p area drags what stands at @p from; false when no drag began.
bool whileDragging(QAbstractScrollArea *area, const QPoint &from, const std::function<void()> &meanwhile)
{
    bool ran = false;
    QTimer::singleShot(0, qApp, [&] {
        ran = true;
        meanwhile();
        QDrag::cancel();
    });
    pressAndMove(area->viewport(), from, QPoint(0, QApplication::startDragDistance() + 1), Qt::LeftButton);
    const bool began = ran;
    // Where there was no drag the timer is still to come.
    QCoreApplication::processEvents();
    return began;
}

/// Drives a real drag with the pointer, from a place of a window to another.
void drag(QWidget *window, const QPoint &from, const QPoint &to)
{
    QWindow *handle = window->windowHandle();
    bool over = false;
    // One timer for each step: the drag runs inside the first, and a timer does not fire within itself.
    const auto at = [window](int msec, const std::function<void()> &step) { QTimer::singleShot(msec, window, step); };
    for (int step = 1; step <= 4; ++step)
        at(30 * step, [=] { QTest::mouseMove(handle, from + (to - from) * step / 4); });
    at(150, [=] { QTest::mouseMove(handle, to + QPoint(1, 1)); });
    at(180, [=] { QTest::mouseRelease(handle, Qt::LeftButton, {}, to); });
    at(210, [&over] {
        QDrag::cancel();
        over = true;
    });
    QTest::mousePress(handle, Qt::LeftButton, {}, from);
    QTRY_VERIFY(over);
}

/// What a handler makes of an event: "yes" or "no" however it came in, or "left" as it was; "+copy" where the action is
/// made one.
template <typename Event, typename Widget, typename Base>
QString answer(Widget *widget, void (Base::*handle)(Event *), const QPoint &pos, const QMimeData *data)
{
    bool accepted[] = { false, true };
    Qt::DropAction action = Qt::IgnoreAction;
    for (bool &state : accepted) {
        Event event(pos, Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, {});
        event.setDropAction(Qt::MoveAction);
        event.setAccepted(state);
        (widget->*handle)(&event);
        state = event.isAccepted();
        action = event.dropAction();
    }
    return s(accepted[0] != accepted[1] ? "left"
                   : accepted[0]        ? "yes"
                                        : "no")
        + s(action == Qt::CopyAction ? "+copy " : " ");
}

} // namespace

/// Drags between the widgets of the page, on a real X server: what they take, change, say and paint.
class TestDragging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void payload();
    void payloadOfATable();
    void acceptance_data();
    void acceptance();
    void byPointer_data();
    void byPointer();
    void marks_data();
    void marks();
    void scrollingAtTheEdge();
    void sourceDiesInMidDrag();
    void toolTips_data();
    void toolTips();
};

void TestDragging::init()
{
    Controller::instance()->setSourceDataManager(nullptr);
    QCursor::setPos(2, 2);
}

void TestDragging::payload()
{
    OpenPayload data;
    const auto holds = [&data](const QTreeWidgetItem *row, const PointTreeWidgetItem *node) {
        return data.item() == row && TreeItemMimeData::nodeOf(&data) == node
            && data.retrieveData(s("ItemMimeData"), QVariant::ByteArray) == QVariant(row != nullptr);
    };
    QVERIFY(holds(nullptr, nullptr) && data.formats().isEmpty());
    QTreeWidgetItem row;
    data.setItem(s("ItemMimeData"), &row);
    QVERIFY(holds(&row, nullptr));
    auto *node = new PointTreeWidgetItem(s("node"));
    data.setItem(s("other"), node);
    QVERIFY(holds(node, node));
    QCOMPARE(data.formats(), (QStringList { s("ItemMimeData"), s("other") }));
    delete node;
    QVERIFY(holds(nullptr, nullptr));
    QCOMPARE(TreeItemMimeData::nodeOf(nullptr), nullptr);
}

void TestDragging::payloadOfATable()
{
    Bench bench;
    for (int row = 0; row < 2; ++row) {
        QVERIFY(whileDragging(bench.table, bench.cell(row), [&] {
            const auto drags = bench.table->findChildren<QDrag *>();
            QCOMPARE(drags.size(), 1);
            const auto *data = qobject_cast<TreeItemMimeData *>(drags.first()->mimeData());
            QVERIFY(data);
            QCOMPARE(data->node(), row == 0 ? bench.model.record(s("r1")) : nullptr);
            QCOMPARE(data->formats(), row == 0 ? QStringList { s("ItemMimeData") } : QStringList());
        }));
    }
}

void TestDragging::acceptance_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QString>("table");
    // Enter, move, drop; of the tree also a move over the dragged row.
    QTest::newRow("from a tree") << s("tree") << s("yes+copy yes+copy yes+copy no ") << s("yes+copy left yes+copy ");
    QTest::newRow("from a table") << s("table") << s("yes yes yes+copy yes ") << s("yes+copy yes+copy left ");
    QTest::newRow("from elsewhere") << s("bench") << s("yes left yes+copy left ") << s("yes+copy left left ");
    QTest::newRow("from nowhere") << QString() << s("yes left yes+copy left ") << s("yes+copy left left ");
}

void TestDragging::acceptance()
{
    QFETCH(QString, source);
    Bench bench;
    TreeItemMimeData data;
    data.setItem(s("ItemMimeData"), bench.row(s("i1")));
    QString tree;
    QString table;
    const auto look = [&] {
        const QPoint self = bench.place(s("i1"));
        const QPoint corner(5, 5);
        tree = answer(bench.format, &OpenTree::dragEnterEvent, corner, &data)
            + answer(bench.format, &OpenTree::dragMoveEvent, bench.place(s("m2")), &data)
            + answer(bench.format, &OpenTree::dropEvent, self, &data)
            + answer(bench.format, &OpenTree::dragMoveEvent, self, &data);
        table = answer(bench.table, &OpenTable::dragEnterEvent, corner, &data)
            + answer(bench.table, &OpenTable::dragMoveEvent, corner, &data)
            + answer(bench.table, &OpenTable::dropEvent, corner, &data);
    };
    if (source == s("tree")) {
        QVERIFY(whileDragging(bench.format, bench.place(s("i1")), look));
    } else if (source == s("table")) {
        QVERIFY(whileDragging(bench.table, bench.cell(0), look));
    } else if (source == s("bench")) {
        QTimer::singleShot(0, &bench, [&] {
            look();
            QDrag::cancel();
        });
        auto *drag = new QDrag(&bench);
        drag->setMimeData(new QMimeData);
        drag->exec(Qt::CopyAction);
    } else {
        look();
    }
    QTEST(tree, "tree");
    QTEST(table, "table");
}

void TestDragging::byPointer_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onto");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("data");
    const auto row = [](const char *name, const char *dragged, const char *onto, const char *heard, const char *data) {
        QTest::newRow(name) << s(dragged) << s(onto) << s(heard) << s(data);
    };
    const char *untouched = "Format target=bench(menu:m1(Item:i1, Item:i2), menu:m2), Item:r1 text=Record";
    row("an entry", "i2", "m2", "modified ",
        "Format target=bench(menu:m1(Item:i1), menu:m2(Item:i2)), Item:r1 text=Record");
    row("an entry with others", "m1", "m2", "modified ",
        "Format target=bench(menu:m2(menu:m1(Item:i1, Item:i2))), Item:r1 text=Record");
    row("an entry, before", "i2", "i1", "modified ",
        "Format target=bench(menu:m1(Item:i2, Item:i1), menu:m2), Item:r1 text=Record");
    row("an entry onto itself", "i2", "i2", "", untouched);
    row("a sub point", "Item", "m2", "drop own.Item# ",
        "Format target=bench(menu:m1(Item:i1, Item:i2), menu:m2(Item:own.Item#)), Item:r1 text=Record");
    row("a sub point onto a sibling's row", "Item", "t1", "target Format drop own.Item# modified ",
        "Format target=bench(menu:m1(Item:i1, Item:i2), menu:m2, Item:own.Item# parent=t1), Item:r1 text=Record, "
        "Item:own.Item#");
    row("a record", "r1", "m2", "drop r1 modified ",
        "Format target=bench(menu:m1(Item:i1, Item:i2), menu:m2(Item:r1)), Item:r1 text=Record");
    row("a record that is not taken", "r1", "root", "", untouched);
    row("a sub point onto the table", "Item", "table", "add own.Item# true modified ",
        "Format target=bench(menu:m1(Item:i1, Item:i2), menu:m2), Item:r1 text=Record, "
        "Item:own.Item# text=New item title=no");
    row("a point onto the table", "kit.menus", "table", "add own.menus# false modified ",
        "Format target=bench(menu:m1(Item:i1, Item:i2), menu:m2), Item:r1 text=Record, "
        "menus:own.menus# icon=menus.svg");
    row("an entry onto the table", "i1", "table", "modified ", untouched);
    row("a record onto the table", "r1", "table", "", untouched);
}

void TestDragging::byPointer()
{
    QFETCH(QString, dragged);
    QFETCH(QString, onto);
    Bench bench;
    QString heard;
    const auto id = [](const PointTreeWidgetItem *node) { return node->properties().value(s("id")).toString(); };
    const auto changed = [&heard](bool flag) { heard += s(flag ? "modified " : "unmodified "); };
    connect(bench.format, &RealizationTreeWidget::modified, &bench, changed);
    connect(bench.points, &RealizationTreeWidget::modified, &bench, changed);
    connect(bench.table, &RealizationTableWidget::modified, &bench, changed);
    connect(bench.format, &RealizationTreeWidget::setTarget, &bench,
        [&](const PointTreeWidgetItem *format) { heard += s("target %1 ").arg(format->kind()); });
    connect(bench.format, &RealizationTreeWidget::dropPoint, &bench,
        [&](const PointTreeWidgetItem *row) { heard += s("drop %1 ").arg(id(row)); });
    connect(bench.table, &RealizationTableWidget::addTableRealization, &bench,
        [&](const PointTreeWidgetItem *, const PointTreeWidgetItem *child, bool flag) {
            heard += s("add %1 %2 ").arg(id(child), s(flag ? "true" : "false"));
        });

    const bool isEntry = bench.shown->row(dragged);
    QTreeWidgetItem *current = isEntry ? bench.row(dragged) : bench.row(s("m1"));
    bench.format->setCurrentItem(current);
    const QPoint from = dragged == s("r1")
        ? bench.inWindow(bench.table, bench.cell(0))
        : bench.inWindow(isEntry ? bench.format : bench.points, bench.place(dragged));
    const QPoint to = onto == s("table") ? bench.inWindow(bench.table, bench.table->viewport()->rect().center())
                                         : bench.inWindow(bench.format, bench.place(onto));
    drag(&bench, from, to);
    QTRY_VERIFY(!bench.format->isDragging() && !bench.points->isDragging() && !bench.table->isDragging());
    QTEST(masked(heard), "heard");
    QTEST(picture(Controller::instance()->ownRealizations().holders(s("kit.menus")).first()), "data");
    QCOMPARE(bench.model.complaints(), QStringList());
    // Neither what was hovered over nor what was moved is lost sight of.
    QCOMPARE(bench.format->currentItem(), current);
    for (QTreeWidgetItemIterator it(bench.format, QTreeWidgetItemIterator::HasChildren); *it; ++it)
        QVERIFY((*it)->isExpanded());
}

void TestDragging::marks_data()
{
    QTest::addColumn<QString>("onto");
    QTest::addColumn<bool>("highlighted");
    QTest::newRow("into") << s("m2") << true;
    QTest::newRow("before") << s("i1") << true;
    QTest::newRow("nothing") << s("root") << false;
}

void TestDragging::marks()
{
    QFETCH(QString, onto);
    Bench bench;
    // A colour that nothing else has.
    const QColor colour(250, 0, 250);
    QPalette palette = bench.palette();
    for (const auto group : { QPalette::Active, QPalette::Inactive })
        palette.setColor(group, QPalette::Highlight, colour);
    QImage marked, left, tableMarked, tableLeft;
    TreeItemMimeData entry;
    entry.setItem(s("ItemMimeData"), bench.row(s("i2")));
    TreeItemMimeData point;
    point.setItem(s("ItemMimeData"), bench.row(s("kit.tools")));
    const auto picture = [](QWidget *view) { return view->grab().toImage(); };
    QVERIFY(whileDragging(bench.format, bench.place(s("i2")), [&] {
        QDragMoveEvent move(bench.place(onto), Qt::CopyAction, &entry, Qt::LeftButton, {});
        bench.format->dragMoveEvent(&move);
        bench.format->setCurrentItem(nullptr);
        bench.format->setPalette(palette);
        marked = picture(bench.format->viewport());
        QDragLeaveEvent leave;
        bench.format->dragLeaveEvent(&leave);
        left = picture(bench.format->viewport());

        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &point, Qt::LeftButton, {});
        bench.table->dragEnterEvent(&enter);
        tableMarked = picture(bench.table->viewport());
        bench.table->dragLeaveEvent(&leave);
        tableLeft = picture(bench.table->viewport());
    }));
    const auto isHighlighted = [colour](const QImage &image) {
        const QImage pixels = image.convertToFormat(QImage::Format_RGB32);
        const auto *first = reinterpret_cast<const QRgb *>(pixels.constBits());
        return std::count(first, first + pixels.width() * pixels.height(), colour.rgb()) > 0;
    };
    QVERIFY(marked != left);
    QVERIFY(!isHighlighted(left));
    QTEST(isHighlighted(marked), "highlighted");
    QVERIFY(tableMarked != tableLeft);
}

void TestDragging::scrollingAtTheEdge()
{
    Bench bench;
    bench.resize(1100, 160);
    TreeItemMimeData data;
    const QScrollBar *bar = bench.points->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 3);
    const int height = bench.points->viewport()->height();
    QVERIFY(whileDragging(bench.format, bench.place(s("i2")), [&] {
        const auto hold = [&](int y) {
            QDragMoveEvent move(QPoint(50, y), Qt::CopyAction, &data, Qt::LeftButton, {});
            bench.points->dragMoveEvent(&move);
        };
        hold(height - 2);
        QTRY_COMPARE(bar->value(), bar->maximum());
        hold(2);
        QTRY_VERIFY(bar->value() < bar->maximum() - 1);
        hold(height / 2);
        const int rest = bar->value();
        QTest::qWait(150);
        QCOMPARE(bar->value(), rest);
    }));
}

void TestDragging::sourceDiesInMidDrag()
{
    Bench bench;
    auto *tree = new OpenTree;
    tree->addTopLevelItem(new PointTreeWidgetItem(s("row")));
    tree->show();
    QVERIFY(QTest::qWaitForWindowExposed(tree));
    bool died = false;
    QVERIFY(whileDragging(tree, tree->visualItemRect(tree->topLevelItem(0)).center(), [&] {
        died = tree->isDragging();
        delete tree;
    }));
    QVERIFY(died);
}

void TestDragging::toolTips_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("text");
    QTest::newRow("point") << s("kit.tools") << s("Name: Tools / Id: kit.tools / Plug-in: kit");
    QTest::newRow("point without a name") << s("kit.plain") << s("Id: kit.plain / Plug-in: kit");
    QTest::newRow("sub point") << s("menu") << s("Name: A &lt;menu&gt; / Key: menu / Point: kit.menus / Plug-in: kit");
    QTest::newRow("own entry") << s("i1") << s("Id: i1 / Plug-in: own");
    QTest::newRow("a sibling's entry") << s("t1") << s("Id: t1 / Plug-in: kit");
    QTest::newRow("without an id") << s("root") << s("Plug-in: own");
}

void TestDragging::toolTips()
{
    QFETCH(QString, node);
    Bench bench;
    QWidget *viewport = bench.row(node)->treeWidget()->viewport();
    const QPoint place = bench.place(node);
    QHelpEvent help(QEvent::ToolTip, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &help);
    QTEST(QToolTip::text().replace(s("<br/>"), s(" / ")).remove(QRegularExpression(s("<[^>]*>"))), "text");
    QToolTip::hideText();
}

QTEST_MAIN(TestDragging)
#include "tst_dragging.moc"

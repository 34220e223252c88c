#include "droptesting.h"
#include "form/draglabel.h"
#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "form/rowfilter.h"
#include "form/treeitemmimedata.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QStatusTipEvent>
#include <QStyle>
#include <QTimer>
#include <QToolTip>
#include <QWindow>

#include <functional>
#include <memory>
#include <utility>

using namespace DropTesting;

Q_DECLARE_METATYPE(DragLabel)

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

/// Collects what the widgets of a window want to have in its status line.
class Told final : public QObject
{
public:
    explicit Told(QWidget *window) { window->installEventFilter(this); }

    QStringList texts;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::StatusTip)
            texts.append(static_cast<QStatusTipEvent *>(event)->tip());
        return QObject::eventFilter(watched, event);
    }
};

/// Runs @p meanwhile while @p area drags what stands at @p from; false when no drag began.
bool whileDragging(QAbstractScrollArea *area, const QPoint &from, const std::function<void()> &meanwhile)
{
    bool ran = false;
    QTimer::singleShot(0, qApp, [&] {
        ran = true;
        meanwhile();
        QDrag::cancel();
    });
    const QPointer<QWidget> viewport(area->viewport());
    const auto send = [&](QEvent::Type type, int down, Qt::MouseButton which, Qt::MouseButtons held) {
        QMouseEvent event(type, from + QPoint(0, down), which, held, Qt::NoModifier);
        // The area may die while it drags.
        if (viewport)
            QApplication::sendEvent(viewport, &event);
    };
    const int way = QApplication::startDragDistance() + 1;
    send(QEvent::MouseButtonPress, 0, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, way, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, way, Qt::LeftButton, Qt::NoButton);
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
    const char *state = accepted[0] ? "yes" : accepted[1] ? "left" : "no";
    return s(state) + s(action == Qt::CopyAction ? "+copy " : " ");
}

} // namespace

/// Drags between the widgets of the page, on a real X server: what they take, change, say and paint.
class TestDragging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void payload();
    void acceptance_data();
    void acceptance();
    void byPointer_data();
    void byPointer();
    void marks_data();
    void marks();
    void scrollingAtTheEdge();
    void labels_data();
    void labels();
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

void TestDragging::acceptance_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QString>("table");
    // Enter, move, drop; of the tree also a move over the dragged row.
    QTest::newRow("from a tree") << s("tree") << s("yes+copy yes+copy yes+copy no ") << s("yes+copy left yes+copy ");
    QTest::newRow("from a table") << s("table") << s("yes yes yes+copy yes ") << s("yes+copy yes+copy left ");
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
    QTest::addColumn<QString>("filter"); // of the format tree
    const auto row = [](const char *name, const char *dragged, const char *onto, const char *heard, const char *data,
                         const char *filter = "") {
        QTest::newRow(name) << s(dragged) << s(onto) << s(heard) << s(data) << s(filter);
    };
    const char *untouched = "Format(m1(i1, i2), m2), r1";
    row("an entry", "i2", "m2", "modified ", "Format(m1(i1), m2(i2)), r1");
    row("an entry with others", "m1", "m2", "modified ", "Format(m2(m1(i1, i2))), r1");
    row("an entry, before", "i2", "i1", "modified ", "Format(m1(i2, i1), m2), r1");
    row("an entry, filtered", "i2", "m2", "modified ", "Format(m1(i1), m2(i2)), r1", "2");
    row("a record, filtered", "r1", "m2", "drop r1 modified ", "Format(m1(i1, i2), m2(r1)), r1", "m2");
    row("an entry onto itself", "i2", "i2", "", untouched);
    row("a sub point", "Item", "m2", "drop own.Item# ", "Format(m1(i1, i2), m2(own.Item#)), r1");
    row("a sub point onto a sibling's row", "Item", "t1", "target Format drop own.Item# modified ",
        "Format(m1(i1, i2), m2, own.Item# parent=t1), r1, own.Item#");
    row("a record", "r1", "m2", "drop r1 modified ", "Format(m1(i1, i2), m2(r1)), r1");
    row("a record that is not taken", "r1", "root", "", untouched);
    row("what is no record", "reference", "m2", "", untouched);
    row("a sub point onto the table", "Item", "table", "add own.Item# true modified ",
        "Format(m1(i1, i2), m2), r1, own.Item# text=New item title=no");
    row("a point onto the table", "kit.menus", "table", "add own.menus# false modified ",
        "Format(m1(i1, i2), m2), r1, menus:own.menus# icon=menus.svg");
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
    QFETCH(QString, filter);
    auto *rows = new TreeRowFilter(bench.format);
    rows->setNeedle(filter);
    const bool isRecord = dragged == s("r1");
    const QPoint from = isRecord || dragged == s("reference")
        ? bench.inWindow(bench.table, bench.cell(isRecord ? 0 : 1))
        : bench.inWindow(isEntry ? bench.format : bench.points, bench.place(dragged));
    const QPoint to = onto == s("table") ? bench.inWindow(bench.table, bench.table->viewport()->rect().center())
                                         : bench.inWindow(bench.format, bench.place(onto));
    drag(&bench, from, to);
    QTRY_VERIFY(!bench.format->isDragging() && !bench.points->isDragging() && !bench.table->isDragging());
    QTEST(masked(heard), "heard");
    const PointTreeWidgetItem *holder = Controller::instance()->ownRealizations().holders(s("kit.menus")).first();
    QTEST(picture(holder).remove(QRegularExpression(s("(menu|Item):| target=bench| text=Record"))), "data");
    QCOMPARE(bench.model.complaints(), QStringList());
    // Neither what was hovered over nor what was moved is lost sight of.
    QCOMPARE(bench.format->currentItem(), current);
    for (QTreeWidgetItemIterator it(bench.format, QTreeWidgetItemIterator::HasChildren); *it; ++it)
        QVERIFY((*it)->isExpanded());
}

void TestDragging::marks_data()
{
    QTest::addColumn<bool>("highlighted");
    QTest::addColumn<QString>("said");
    QTest::newRow("m2") << true << s("Into 'm2'");
    QTest::newRow("i1") << true << s("Before 'i1'");
    QTest::newRow("t1") << true << s("Into 't1', recorded in this plug-in's file");
    QTest::newRow("root") << false << s("'Format' takes no 'Item'");
}

void TestDragging::marks()
{
    const QString onto = s(QTest::currentDataTag());
    QFETCH(QString, said);
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
    const Told told(&bench);
    QVERIFY(whileDragging(bench.format, bench.place(s("i2")), [&] {
        QDragMoveEvent move(bench.place(onto), Qt::CopyAction, &entry, Qt::LeftButton, {});
        bench.format->dragMoveEvent(&move);
        bench.format->setCurrentItem(nullptr);
        bench.format->setPalette(palette);
        marked = picture(bench.format->viewport());
        QDragLeaveEvent leave;
        bench.format->dragLeaveEvent(&leave);
        QCOMPARE(told.texts, (QStringList { said, QString() }));
        left = picture(bench.format->viewport());

        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &point, Qt::LeftButton, {});
        bench.table->dragEnterEvent(&enter);
        tableMarked = picture(bench.table->viewport());
        bench.table->dragLeaveEvent(&leave);
        QCOMPARE(told.texts.mid(2), (QStringList { s("A new record of 'Tools'"), QString() }));
        const auto *drag = bench.format->findChild<QDrag *>();
        QVERIFY(drag && !drag->pixmap().isNull());
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
    bench.points->header()->setStretchLastSection(false);
    bench.points->header()->resizeSection(0, 3000);
    TreeItemMimeData data;
    const QSize size = bench.points->viewport()->size();
    const QPoint middle(size.width() / 2, size.height() / 2);
    const std::pair<QScrollBar *, QPoint> ways[] = { { bench.points->verticalScrollBar(), { 0, middle.y() - 2 } },
        { bench.points->horizontalScrollBar(), { middle.x() - 2, 0 } } };
    for (const auto &[bar, toEdge] : ways) {
        QTRY_VERIFY(bar->maximum() > 3);
        QVERIFY(whileDragging(bench.format, bench.place(s("i2")), [&, bar = bar, toEdge = toEdge] {
            const auto hold = [&](const QPoint &place) {
                QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, {});
                bench.points->dragMoveEvent(&move);
            };
            bar->setValue(bar->maximum() - 2);
            hold(middle + toEdge);
            QTest::qWait(EdgeScroll::delay / 2);
            QCOMPARE(bar->value(), bar->maximum() - 2);
            QTRY_COMPARE(bar->value(), bar->maximum());
            hold(middle - toEdge);
            QTRY_VERIFY(bar->value() < bar->maximum() - 1);
            hold(middle);
            const int rest = bar->value();
            QTest::qWait(150);
            QCOMPARE(bar->value(), rest);
        }));
    }
}

void TestDragging::labels_data()
{
    QTest::addColumn<DragLabel>("label");
    QTest::addColumn<bool>("hasPicture");
    const QIcon icon = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
    QTest::newRow("icon and text") << DragLabel { icon, s("Print") } << true;
    QTest::newRow("text alone") << DragLabel { QIcon(), s("Print") } << true;
    QTest::newRow("a text of several lines as long as a file")
        << DragLabel { icon, s("W\n").repeated(1'000'000) } << true;
    QTest::newRow("nothing") << DragLabel() << false;
}

/// As large as its text and no larger than a label, on any screen; with the colour of the text in it.
void TestDragging::labels()
{
    QFETCH(DragLabel, label);
    QFETCH(bool, hasPicture);
    QWidget widget;
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Text, Qt::magenta);
    widget.setPalette(palette);
    QElapsedTimer clock;
    clock.start();
    const QPixmap pixmap = label.pixmap(&widget);
    QVERIFY(clock.elapsed() < 500);
    QCOMPARE(!pixmap.isNull(), hasPicture);
    if (!hasPicture)
        return;
    QCOMPARE(pixmap.devicePixelRatio(), widget.devicePixelRatioF());
    const QSize size = pixmap.size() / pixmap.devicePixelRatio();
    QVERIFY(
        size.height() < 60 && size.width() < 450 && size.width() > widget.fontMetrics().horizontalAdvance(s("Print")));
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_RGB32);
    const auto *first = reinterpret_cast<const QRgb *>(image.constBits());
    const auto isText
        = [](QRgb pixel) { return qRed(pixel) > qGreen(pixel) + 100 && qBlue(pixel) > qGreen(pixel) + 100; };
    QVERIFY(std::any_of(first, first + image.width() * image.height(), isText));
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
    QTest::addColumn<QString>("text");
    // Points, one without a name, and a sub point; entries, and what has no id.
    QTest::newRow("kit.tools") << s("Name: Tools / Id: kit.tools / Plug-in: kit");
    QTest::newRow("kit.plain") << s("Id: kit.plain / Plug-in: kit");
    QTest::newRow("menu") << s("Name: A &lt;menu&gt; / Key: menu / Point: kit.menus / Plug-in: kit");
    QTest::newRow("i1") << s("Id: i1 / Plug-in: own / id: No plug-in has a record i1");
    QTest::newRow("t1") << s("Id: t1 / Plug-in: kit");
    QTest::newRow("root") << s("Plug-in: own");
}

void TestDragging::toolTips()
{
    const QString node = s(QTest::currentDataTag());
    Bench bench;
    QTRY_VERIFY(!bench.model.manager.problems().all().isEmpty());
    QWidget *viewport = bench.row(node)->treeWidget()->viewport();
    const QPoint place = bench.place(node);
    QHelpEvent help(QEvent::ToolTip, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &help);
    QTEST(QToolTip::text().replace(s("<br/>"), s(" / ")).remove(QRegularExpression(s("<[^>]*>"))), "text");
    QToolTip::hideText();
}

QTEST_MAIN(TestDragging)
#include "tst_dragging.moc"

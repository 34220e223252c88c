#include "dragbench.h"
#include "form/rowtooltip.h"

#include <QHelpEvent>
#include <QSignalSpy>
#include <QToolTip>

using namespace DropTesting;

namespace {

class OpenPayload final : public TreeItemMimeData
{
public:
    using TreeItemMimeData::retrieveData;
};

/// What a handler does to an event that comes in accepted or not.
template <typename Event>
QString answer(const std::function<void(Event *)> &handler, const std::function<Event()> &make)
{
    QStringList answers;
    for (const bool accepted : { false, true }) {
        Event event = make();
        event.setDropAction(Qt::MoveAction);
        event.setAccepted(accepted);
        handler(&event);
        QString result = event.isAccepted() ? s("accepted") : s("ignored");
        if (event.isAccepted() == accepted && event.dropAction() == Qt::MoveAction)
            result = s("as it was");
        else if (event.dropAction() == Qt::CopyAction)
            result += s(", copy");
        answers.append(result);
    }
    // What an answer is shows where the event came in otherwise.
    answers.removeDuplicates();
    if (answers.size() == 2)
        answers.removeAll(s("as it was"));
    return answers.join(s(" / "));
}

} // namespace

/// The payload, and how the two widgets start and take drags, on a real X server.
class TestDragWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void payload();
    void payloadOfATable_data();
    void payloadOfATable();
    void acceptance_data();
    void acceptance();
    void toolTips_data();
    void toolTips();
};

void TestDragWidgets::init()
{
    Controller::instance()->setSourceDataManager(nullptr);
    QCursor::setPos(2, 2);
}

void TestDragWidgets::payload()
{
    OpenPayload data;
    const auto held = [&data] { return data.retrieveData(s("ItemMimeData"), QVariant::ByteArray); };
    QCOMPARE(data.item(), nullptr);
    QCOMPARE(data.formats(), QStringList());
    QVERIFY(!data.hasFormat(s("ItemMimeData")));
    QCOMPARE(held(), QVariant(false));
    QCOMPARE(data.retrieveData(s("itemmimedata"), QVariant::Bool), QVariant());

    QTreeWidgetItem row;
    data.setItem(s("ItemMimeData"), &row);
    QCOMPARE(data.item(), &row);
    QCOMPARE(data.node(), nullptr);
    QCOMPARE(held(), QVariant(true));
    QVERIFY(data.hasFormat(s("ItemMimeData")));

    auto *node = new PointTreeWidgetItem(s("node"));
    data.setItem(s("other"), node);
    data.setItem(s("other"), node);
    QCOMPARE(data.formats(), (QStringList { s("ItemMimeData"), s("other"), s("other") }));
    QCOMPARE(data.item(), static_cast<QTreeWidgetItem *>(node));
    QCOMPARE(TreeItemMimeData::nodeOf(&data), node);
    delete node;
    QCOMPARE(data.item(), nullptr);
    QCOMPARE(held(), QVariant(false));

    data.setText(s("text"));
    QCOMPARE(data.retrieveData(s("text/plain"), QVariant::String), QVariant(s("text")));
    QCOMPARE(TreeItemMimeData::nodeOf(nullptr), nullptr);
}

void TestDragWidgets::payloadOfATable_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("record");
    QTest::newRow("a record") << 0 << s("r1");
    QTest::newRow("a reference") << 1 << QString();
}

void TestDragWidgets::payloadOfATable()
{
    QFETCH(int, row);
    QFETCH(QString, record);
    Bench bench;
    QVERIFY(whileDragging(bench.table, bench.table->visualItemRect(bench.table->item(row, 1)).center(), [&] {
        const auto drags = bench.table->findChildren<QDrag *>();
        QCOMPARE(drags.size(), 1);
        const auto *data = qobject_cast<TreeItemMimeData *>(drags.first()->mimeData());
        QVERIFY(data);
        QCOMPARE(data->node(), bench.model.record(record));
        QCOMPARE(data->formats(), record.isEmpty() ? QStringList() : QStringList { s("ItemMimeData") });
    }));
}

void TestDragWidgets::acceptance_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("tree");
    QTest::addColumn<QStringList>("table");
    // Enter, move, drop; of the tree also a move over the dragged row.
    QTest::newRow("from a tree") << s(
        "tree") << QStringList { s("accepted, copy"), s("accepted, copy"), s("accepted, copy"), s("ignored") }
                                 << QStringList { s("accepted, copy"), s("as it was"), s("accepted, copy") };
    QTest::newRow("from a table") << s("table")
                                  << QStringList { s("accepted"), s("accepted"), s("accepted, copy"), s("accepted") }
                                  << QStringList { s("accepted, copy"), s("accepted, copy"), s("as it was") };
    const QStringList outside { s("accepted"), s("as it was"), s("accepted, copy"), s("as it was") };
    QTest::newRow("from a list") << s("list") << outside
                                 << QStringList { s("accepted, copy"), s("as it was"), s("as it was") };
    QTest::newRow("from nowhere") << QString() << outside
                                  << QStringList { s("accepted, copy"), s("as it was"), s("as it was") };
}

void TestDragWidgets::acceptance()
{
    QFETCH(QString, source);
    Bench bench;
    TreeItemMimeData data;
    data.setItem(s("ItemMimeData"), bench.row("i1"));
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QStringList tree;
    QStringList table;
    const auto look = [&] {
        const auto enter = [&] { return QDragEnterEvent(QPoint(5, 5), actions, &data, Qt::LeftButton, {}); };
        const auto move = [&](const QPoint &pos) {
            return [=, &data] { return QDragMoveEvent(pos, actions, &data, Qt::LeftButton, {}); };
        };
        const auto drop = [&] { return QDropEvent(bench.place(bench.row("i1")), actions, &data, Qt::LeftButton, {}); };
        const QPoint elsewhere = bench.place(bench.row("m2"));
        tree = QStringList { answer<QDragEnterEvent>([&](auto *event) { bench.format->dragEnterEvent(event); }, enter),
            answer<QDragMoveEvent>([&](auto *event) { bench.format->dragMoveEvent(event); }, move(elsewhere)),
            answer<QDropEvent>([&](auto *event) { bench.format->dropEvent(event); }, drop),
            answer<QDragMoveEvent>(
                [&](auto *event) { bench.format->dragMoveEvent(event); }, move(bench.place(bench.row("i1")))) };
        table = QStringList { answer<QDragEnterEvent>([&](auto *event) { bench.table->dragEnterEvent(event); }, enter),
            answer<QDragMoveEvent>([&](auto *event) { bench.table->dragMoveEvent(event); }, move(QPoint(5, 5))),
            answer<QDropEvent>([&](auto *event) { bench.table->dropEvent(event); }, drop) };
    };
    if (source == s("tree"))
        QVERIFY(whileDragging(bench.format, bench.place(bench.row("i1")), look));
    else if (source == s("table"))
        QVERIFY(whileDragging(bench.table, bench.table->visualItemRect(bench.table->item(0, 0)).center(), look));
    else if (source == s("list"))
        QTimer::singleShot(0, &bench, [&] {
            look();
            QDrag::cancel();
        });
    else
        look();
    if (source == s("list")) {
        auto *drag = new QDrag(bench.other);
        drag->setMimeData(new QMimeData);
        drag->exec(Qt::CopyAction);
    }
    QTEST(tree, "tree");
    QTEST(table, "table");
}

void TestDragWidgets::toolTips_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("point") << s("kit.tools") << QStringList { s("Name: Tools"), s("Id: kit.tools"), s("Plug-in: kit") };
    QTest::newRow("point without a name") << s("kit.plain") << QStringList { s("Id: kit.plain"), s("Plug-in: kit") };
    QTest::newRow("sub point") << s(
        "menu") << QStringList { s("Name: A menu"), s("Key: menu"), s("Point: kit.menus"), s("Plug-in: kit") };
    QTest::newRow("own entry") << s("i1") << QStringList { s("Id: i1"), s("Plug-in: own") };
    QTest::newRow("a sibling's entry") << s("t1") << QStringList { s("Id: t1"), s("Plug-in: kit") };
    QTest::newRow("without an id") << s("root") << QStringList { s("Plug-in: own") };
}

void TestDragWidgets::toolTips()
{
    QFETCH(QString, node);
    QFETCH(QStringList, lines);
    Bench bench;
    PointTreeWidgetItem *row = bench.row(qPrintable(node));
    if (!row)
        row = bench.model.point(node);
    row->treeWidget()->scrollToItem(row);
    QWidget *viewport = row->treeWidget()->viewport();
    const QPoint place = bench.place(row);
    QHelpEvent help(QEvent::ToolTip, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &help);
    QString text = QToolTip::text();
    text.replace(s("<br/>"), s("\n")).remove(QRegularExpression(s("<[^>]*>")));
    QCOMPARE(text.split(QLatin1Char('\n')), lines);
    QToolTip::hideText();

    row->setProperty(s("id"), s("<b>"));
    QVERIFY(RowToolTip::text(row).contains(s("&lt;b&gt;")) || node == s("menu"));
    QVERIFY(RowToolTip::text(nullptr).isEmpty());
}

QTEST_MAIN(TestDragWidgets)
#include "tst_dragwidgets.moc"

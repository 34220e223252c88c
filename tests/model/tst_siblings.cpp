#include "modeltesting.h"

#include "model/scanbudget.h"
#include "model/taskread.h"

#include <QRegularExpression>
#include <QTest>
#include <QThread>

using ModelTesting::Product;

namespace {

/// Runs one task on this thread, takes its announcements down and destroys what it built.
class Recorder final
{
public:
    explicit Recorder(const QString &path)
    {
        TaskRead task(path, &m_points, &m_data, nullptr);
        QObject::connect(&task, &TaskRead::definData, &task, [this](const QString &key, PointTreeWidgetItem *item) {
            m_lines.append(QStringLiteral("define %1: %2").arg(key, describe(item)));
        });
        QObject::connect(
            &task, &TaskRead::addTopChild, &task, [this](PointTreeWidgetItem *parent, PointTreeWidgetItem *child) {
                m_lines.append(QStringLiteral("top %1: %2").arg(name(parent), describe(child)));
                m_nodes.append(child);
                if (!parent->children().contains(child))
                    parent->addChild(child, false);
            });
        QObject::connect(
            &task, &TaskRead::addObjChild, &task, [this](PointTreeWidgetItem *parent, PointTreeWidgetItem *child) {
                m_lines.append(QStringLiteral("obj %1: %2").arg(name(parent), describe(child)));
                m_linkedByTask |= child->parent() != nullptr;
                m_nodes.append(child);
                parent->addChild(child, false);
            });
        QObject::connect(&task, &TaskRead::layoutRelization, &task,
            [this](PointTreeWidgetItem *item) { m_lines.append(QStringLiteral("layout: ") + describe(item)); });
        QObject::connect(&task, &TaskRead::allFormatRoot, &task,
            [this](PointTreeWidgetItem *item) { m_lines.append(QStringLiteral("format: ") + describe(item)); });
        task.run();
    }
    ~Recorder()
    {
        for (PointTreeWidgetItem *root : { &m_points, &m_data }) {
            while (!root->children().isEmpty())
                PointTreeWidgetItem::destroySubtree(root->children().first()->item());
        }
    }

    QStringList m_lines;
    QVector<PointTreeWidgetItem *> m_nodes;
    bool m_linkedByTask = false;
    PointTreeWidgetItem m_points { QString() };
    PointTreeWidgetItem m_data { QString() };

private:
    QString name(PointTreeWidgetItem *item) const
    {
        return item == &m_points     ? QStringLiteral("POINTS")
            : item == &m_data        ? QStringLiteral("DATA")
            : item->kind().isEmpty() ? QStringLiteral("set")
                                     : item->kind();
    }
    QString describe(PointTreeWidgetItem *item) const
    {
        return QStringList { name(item), item->text(0), item->pointId(), item->pluginId() }.join(QLatin1Char('/'))
            + (item->hasFormat() ? QStringLiteral("/formatted") : QString());
    }
};

} // namespace

class TestSiblings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void announcements_data();
    void announcements();
    void nodeFields();
    void nothingIsAnnounced_data();
    void nothingIsAnnounced();
    void nodesGetTheThreadOfTheTaskMaker();
    void whatIsTooMuchInAllIsLeftOut();
};

void TestSiblings::announcements_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *file, const QStringList &expected) {
        QTest::newRow(name) << QByteArray(file) << expected;
    };
    const auto lines = [](std::initializer_list<const char *> texts) {
        QStringList list;
        for (const char *text : texts)
            list.append(QString::fromUtf8(text));
        return list;
    };
    row("points and sub points, before what is below them",
        "<P id=\"g\"><ExtPointSet><ExtPoint id=\"p\" name=\"N\" hasformat=\"true\"><String key=\"k\"/><SubExtPoint "
        "key=\"Open\" name=\"S\"><SubExtPoint key=\"Deep\"/></SubExtPoint></ExtPoint></ExtPointSet></P>",
        lines({ "top POINTS: set/g//g", "define p: ExtPoint/N/p/g", "top set: ExtPoint/N/p/g",
            "define open: SubExtPoint/S/p/g/formatted", "top ExtPoint: SubExtPoint/S/p/g/formatted",
            "define deep: SubExtPoint///g", "top SubExtPoint: SubExtPoint///g" }));
    row("tags are compared exactly, names stay as written",
        "<P id=\"g\"><ExtPointSet><extpoint id=\"p\"/><ExtPoint ID=\"q\" hasFormat=\"true\"><SubExtPoint "
        "Key=\"k\"/></ExtPoint></ExtPointSet></P>",
        lines({ "top POINTS: set/g//g", "define : ExtPoint///g", "top set: ExtPoint///g", "define : SubExtPoint///g",
            "top ExtPoint: SubExtPoint///g" }));
    row("records announce at once, layouts after themselves, formats at the end of their set",
        "<P id=\"g\"><ExtDataSet><ExtData id=\"p\"><Item id=\"i\"/><format "
        "target=\"t\"><Menu/></format></ExtData><LAYOUT id=\"l\"/></ExtDataSet></P>",
        lines({ "obj DATA: set/g//g", "obj set: ExtData/p//", "obj ExtData: Item/i//", "obj ExtData: format///",
            "obj format: Menu///", "obj set: LAYOUT/l//", "layout: LAYOUT/l//g", "format: format//p/g" }));
    row("a second data set announces the formats of the first again",
        "<P id=\"g\"><ExtDataSet><Format id=\"a\"/></ExtDataSet><ExtDataSet><Format id=\"b\"/></ExtDataSet></P>",
        lines({ "obj DATA: set/g//g", "obj set: Format/a//", "format: Format/a//g", "obj DATA: set/g//g",
            "obj set: Format/b//", "format: Format/a//g", "format: Format/b//g" }));
    row("unknown children of the root",
        "<P id=\"g\"><extpointset><ExtPoint id=\"p\"/></extpointset><X><ExtDataSet/></X></P>", {});
    row("a root without id", "<P><ExtPointSet/></P>", lines({ "top POINTS: set///" }));
}

void TestSiblings::announcements()
{
    QFETCH(const QByteArray, file);
    QFETCH(QStringList, expected);
    const Product product;
    const Recorder recorder(product.add(QStringLiteral("sibling"), file));
    QStringList actual = recorder.m_lines;
    // The task announces complete nodes; what the expectation leaves open there is tested in nodeFields().
    for (QString &line : actual) {
        if (line.startsWith(QLatin1String("obj ")) && !line.contains(QLatin1String("set/")))
            line = line.section(QLatin1Char('/'), 0, 1) + QStringLiteral("//");
    }
    QCOMPARE(actual, expected);
    QVERIFY2(!recorder.m_linkedByTask, "a realization node was linked by the task");
}

void TestSiblings::nodeFields()
{
    const Product product;
    const QString path = product.add(QStringLiteral("sibling"),
        " <P id=\" g \" filename=\"file\" version=\"1\"><ExtPointSet><ExtPoint id=\" p \" childType=\" a|b \"><String "
        "key=\"k\"><Data text=\"tr('x')\"/></String></ExtPoint></ExtPointSet>"
        "<ExtDataSet><ExtData id=\"p\" Text=\"tr('A')tr('B')\"><Item id=\"i\" type=\"kept\"/><ExtData "
        "id=\"q\"/></ExtData><Other id=\"o\"/></ExtDataSet></P>");
    const Recorder recorder(path);
    QCOMPARE(ModelTesting::tree(&recorder.m_points),
        (QStringList { QStringLiteral(" id=g filename=file version=1"), QStringLiteral("  ExtPoint id=p childType=a|b"),
            QStringLiteral("    String key=k"), QStringLiteral("      Data text=tr('x')") }));
    QCOMPARE(ModelTesting::tree(&recorder.m_data),
        (QStringList { QStringLiteral(" id=g filename=file version=1"), QStringLiteral("  ExtData id=p Text=AB"),
            QStringLiteral("    Item id=i type=kept"), QStringLiteral("    ExtData id=q"),
            QStringLiteral("  Other id=o") }));

    PointTreeWidgetItem *attribute
        = recorder.m_points.children().first()->children().first()->children().first()->item();
    QCOMPARE(attribute->pluginId(), QStringLiteral("g"));
    QVERIFY(attribute->pointId().isEmpty() && attribute->basePath().isEmpty());
    PointObject *set = recorder.m_data.children().first();
    PointTreeWidgetItem *record = set->children().first()->item();
    QCOMPARE(record->basePath(), product.path() + QStringLiteral("/sibling/"));
    QCOMPARE(record->text(0), QStringLiteral("p"));
    for (PointObject *child : record->children())
        QCOMPARE(child->item()->pointId() + child->item()->pluginId(), QStringLiteral("pg"));
    QVERIFY(set->children().at(1)->item()->pointId().isEmpty());

    // Without an id on the root, the plug-in id comes from the "filename" of whatever is above.
    const Recorder unnamed(
        product.add(QStringLiteral("unnamed"), "<P filename=\"file\"><ExtDataSet><X/></ExtDataSet></P>"));
    QCOMPARE(unnamed.m_data.children().first()->children().first()->item()->pluginId(), QStringLiteral("file"));
}

void TestSiblings::nothingIsAnnounced_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("malformed at the last byte")
        << QByteArray("<P id=\"g\"><ExtPointSet><ExtPoint "
                      "id=\"p\"><String/></ExtPoint></ExtPointSet><ExtDataSet><X><format/></X></ExtDataSet></P");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("bytes that are no text") << QByteArray("<P id=\"\xff\xfe\"/>");
}

void TestSiblings::nothingIsAnnounced()
{
    QFETCH(const QByteArray, file);
    const Product product;
    const Recorder recorder(product.add(QStringLiteral("sibling"), file));
    QCOMPARE(recorder.m_lines, QStringList());
    const Recorder missing(product.file(QStringLiteral("nobody")));
    QCOMPARE(missing.m_lines, QStringList());
    const Recorder nameless { QString() };
    QCOMPARE(nameless.m_lines, QStringList());
}

void TestSiblings::nodesGetTheThreadOfTheTaskMaker()
{
    const Product product;
    const QString path = product.add(QStringLiteral("sibling"),
        "<P id=\"g\"><ExtPointSet><ExtPoint "
        "id=\"p\"><String/></ExtPoint></ExtPointSet><ExtDataSet><X/></ExtDataSet></P>");
    std::unique_ptr<ScannedFile> file;
    QThread *mine = QThread::currentThread();
    const std::unique_ptr<QThread> worker(
        QThread::create([&] { file = TaskRead::read(path, nullptr, nullptr, mine).file; }));
    worker->start();
    worker->wait();
    QVERIFY(file);
    for (const Announcement &announcement : file->announcements()) {
        QCOMPARE(announcement.node->thread(), mine);
        for (PointObject *child : announcement.node->children())
            QCOMPARE(child->item()->thread(), mine);
    }
}

void TestSiblings::whatIsTooMuchInAllIsLeftOut()
{
    const Product product;
    const auto add = [&product](const char *name, int points, int text) {
        const QByteArray body = "<ExtPoint n=\"" + QByteArray(text, 'x') + "\"/>";
        return product.add(
            QString::fromLatin1(name), "<P><ExtPointSet>" + body.repeated(points) + "</ExtPointSet></P>");
    };
    const auto isRead = [](const QString &path, ScanBudget *budget) {
        return TaskRead::read(path, nullptr, nullptr, QThread::currentThread(), budget).file != nullptr;
    };
    ExtensionFile::Limits limits;
    limits.maximumScanElements = 20; // a set counts as well
    limits.maximumScanAttributeText = 200;
    ScanBudget budget(limits);
    QVERIFY(isRead(add("first", 9, 0), &budget));
    const QString large = add("large", 10, 0);
    QTest::ignoreMessage(QtWarningMsg,
        QRegularExpression(QRegularExpression::escape(large) + QStringLiteral(": Not taken in: .*too many elements")));
    QVERIFY(!isRead(large, &budget));
    const QString wordy = add("wordy", 1, 201);
    QTest::ignoreMessage(QtWarningMsg,
        QRegularExpression(QRegularExpression::escape(wordy) + QStringLiteral(": Not taken in: .*too much text")));
    QVERIFY(!isRead(wordy, &budget));
    // What still fits comes after them.
    QVERIFY(isRead(add("second", 9, 20), &budget));
}

QTEST_MAIN(TestSiblings)
#include "tst_siblings.moc"

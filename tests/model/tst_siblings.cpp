#include "modeltesting.h"

#include "model/scanbudget.h"
#include "model/taskread.h"

#include <QRegularExpression>
#include <QTest>
#include <QThread>

using ModelTesting::Product;
using ModelTesting::s;
using Node = PointTreeWidgetItem;

namespace {

/// Runs one task on this thread, takes its announcements down and destroys what it built.
class Recorder final
{
public:
    explicit Recorder(const QString &path)
    {
        TaskRead task(path, &m_points, &m_data, nullptr);
        QObject::connect(&task, &TaskRead::definData, &task,
            [this](const QString &key, Node *item) { m_lines.append(s("define %1: %2").arg(key, describe(item))); });
        QObject::connect(&task, &TaskRead::addTopChild, &task, [this](Node *parent, Node *child) {
            m_lines.append(s("top %1: %2").arg(name(parent), describe(child)));
            if (!parent->children().contains(child))
                parent->addChild(child, false);
        });
        QObject::connect(&task, &TaskRead::addObjChild, &task, [this](Node *parent, Node *child) {
            // Of a record nothing but its name: its other fields are compared in nodeFields().
            const bool isSet = name(child) == s("set");
            m_lines.append(s("obj %1: %2").arg(name(parent), isSet ? describe(child) : name(child) + child->text(0)));
            m_linkedByTask |= child->parent() != nullptr;
            parent->addChild(child, false);
        });
        QObject::connect(&task, &TaskRead::layoutRelization, &task,
            [this](Node *item) { m_lines.append(s("layout: ") + describe(item)); });
        QObject::connect(&task, &TaskRead::allFormatRoot, &task,
            [this](Node *item) { m_lines.append(s("format: ") + describe(item)); });
        task.run();
    }
    ~Recorder()
    {
        for (Node *root : { &m_points, &m_data }) {
            while (!root->children().isEmpty())
                Node::destroySubtree(root->children().first()->item());
        }
    }

    QStringList m_lines;
    bool m_linkedByTask = false;
    Node m_points { QString() };
    Node m_data { QString() };

private:
    QString name(Node *item) const
    {
        return item == &m_points     ? s("POINTS")
            : item == &m_data        ? s("DATA")
            : item->kind().isEmpty() ? s("set")
                                     : item->kind();
    }
    QString describe(Node *item) const
    {
        return QStringList { name(item), item->text(0), item->pointId(), item->pluginId() }.join(QLatin1Char('/'))
            + (item->hasFormat() ? s("/formatted") : QString());
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
    void nodesGetTheThreadOfTheTaskMaker();
    void whatIsTooMuchInAllIsLeftOut();
};

void TestSiblings::announcements_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("expected"); // "; " between the lines
    const auto row = [](const char *name, const char *file, const char *expected) {
        QTest::newRow(name) << QByteArray(file) << s(expected);
    };
    row("points and sub points, before what is below them",
        "<P id='g'><ExtPointSet><ExtPoint id='p' name='N' hasformat='true'><String key='k'/><SubExtPoint key='Open' "
        "name='S'><SubExtPoint key='Deep'/></SubExtPoint></ExtPoint></ExtPointSet></P>",
        "top POINTS: set/g//g; define p: ExtPoint/N/p/g; top set: ExtPoint/N/p/g; "
        "define open: SubExtPoint/S/p/g/formatted; top ExtPoint: SubExtPoint/S/p/g/formatted; "
        "define deep: SubExtPoint///g; top SubExtPoint: SubExtPoint///g");
    row("tags are compared exactly, names stay as written",
        "<P id='g'><ExtPointSet><extpoint id='p'/><ExtPoint ID='q' hasFormat='true'><SubExtPoint Key='k'/></ExtPoint>"
        "</ExtPointSet></P>",
        "top POINTS: set/g//g; define : ExtPoint///g; top set: ExtPoint///g; define : SubExtPoint///g; "
        "top ExtPoint: SubExtPoint///g");
    row("records announce at once, layouts after themselves, formats at the end of their set",
        "<P id='g'><ExtDataSet><ExtData id='p'><Item id='i'/><format target='t'><Menu/></format></ExtData>"
        "<LAYOUT id='l'/></ExtDataSet></P>",
        "obj DATA: set/g//g; obj set: ExtDatap; obj ExtData: Itemi; obj ExtData: format; obj format: Menu; "
        "obj set: LAYOUTl; layout: LAYOUT/l//g; format: format//p/g");
    row("a second data set announces the formats of the first again",
        "<P id='g'><ExtDataSet><Format id='a'/></ExtDataSet><ExtDataSet><Format id='b'/></ExtDataSet></P>",
        "obj DATA: set/g//g; obj set: Formata; format: Format/a//g; obj DATA: set/g//g; obj set: Formatb; "
        "format: Format/a//g; format: Format/b//g");
    row("unknown children of the root",
        "<P id='g'><extpointset><ExtPoint id='p'/></extpointset><X><ExtDataSet/></X></P>", "");
    row("a root without id", "<P><ExtPointSet/></P>", "top POINTS: set///");
    row("malformed at the last byte",
        "<P id='g'><ExtPointSet><ExtPoint id='p'/></ExtPointSet><ExtDataSet><X><format/></X></ExtDataSet></P", "");
}

void TestSiblings::announcements()
{
    QFETCH(const QByteArray, file);
    const Product product;
    const Recorder recorder(product.add(s("sibling"), file));
    QTEST(recorder.m_lines.join(s("; ")), "expected");
    QVERIFY2(!recorder.m_linkedByTask, "a realization node was linked by the task");
}

void TestSiblings::nodeFields()
{
    const Product product;
    const Recorder recorder(product.add(s("sibling"),
        " <P id=' g ' filename='file' version='1'><ExtPointSet><ExtPoint id=' p ' childType=' a|b '><String key='k'>"
        "<Data text=\"tr('x')\"/></String></ExtPoint></ExtPointSet><ExtDataSet><ExtData id='p' "
        "Text=\"tr('A')tr('B')\"><Item id='i' type='kept'/><ExtData id='q'/></ExtData><Other "
        "id='o'/></ExtDataSet></P>"));
    QCOMPARE(ModelTesting::tree(&recorder.m_points),
        (QStringList { s(" id=g filename=file version=1"), s("  ExtPoint id=p childType=a|b"), s("    String key=k"),
            s("      Data text=tr('x')") }));
    QCOMPARE(ModelTesting::tree(&recorder.m_data),
        (QStringList { s(" id=g filename=file version=1"), s("  ExtData id=p Text=AB"), s("    Item id=i type=kept"),
            s("    ExtData id=q"), s("  Other id=o") }));

    Node *attribute = recorder.m_points.children().first()->children().first()->children().first()->item();
    QCOMPARE(attribute->pluginId(), s("g"));
    QVERIFY(attribute->pointId().isEmpty() && attribute->basePath().isEmpty());
    PointObject *set = recorder.m_data.children().first();
    Node *record = set->children().first()->item();
    QCOMPARE(record->basePath(), product.path() + s("/sibling/"));
    QCOMPARE(record->text(0), s("p"));
    for (PointObject *child : record->children())
        QCOMPARE(child->item()->pointId() + child->item()->pluginId(), s("pg"));
    QVERIFY(set->children().at(1)->item()->pointId().isEmpty());

    // Without an id on the root, the plug-in id comes from the "filename" of whatever is above.
    const Recorder unnamed(product.add(s("unnamed"), "<P filename='file'><ExtDataSet><X/></ExtDataSet></P>"));
    QCOMPARE(unnamed.m_data.children().first()->children().first()->item()->pluginId(), s("file"));
}

void TestSiblings::nodesGetTheThreadOfTheTaskMaker()
{
    const Product product;
    const QString path = product.add(s("sibling"),
        "<P id='g'><ExtPointSet><ExtPoint id='p'><String/></ExtPoint></ExtPointSet><ExtDataSet><X/></ExtDataSet></P>");
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
    ExtensionFile::Limits limits;
    limits.maximumScanElements = 20; // a set counts as well
    limits.maximumScanAttributeText = 200;
    ScanBudget budget(limits);
    const auto isRead = [&](const char *name, int points, int text) {
        const QByteArray body = "<ExtPoint n='" + QByteArray(text, 'x') + "'/>";
        const QString path = product.add(s(name), "<P><ExtPointSet>" + body.repeated(points) + "</ExtPointSet></P>");
        return TaskRead::read(path, nullptr, nullptr, QThread::currentThread(), &budget).file != nullptr;
    };
    QVERIFY(isRead("first", 9, 0));
    const QString refused = s("/%1/extension.xml: Not taken in: .*too %2");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(refused.arg(s("large"), s("many elements"))));
    QVERIFY(!isRead("large", 10, 0));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(refused.arg(s("wordy"), s("much text"))));
    QVERIFY(!isRead("wordy", 1, 201));
    // What still fits comes after them.
    QVERIFY(isRead("second", 9, 20));
}

QTEST_MAIN(TestSiblings)
#include "tst_siblings.moc"

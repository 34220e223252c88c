#include "modeltesting.h"

#include "model/controller.h"
#include "model/scanbudget.h"
#include "model/scanhandover.h"
#include "model/scansequence.h"
#include "model/sourcedatamanager.h"
#include "model/taskread.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <utility>

using ModelTesting::Product;
using ModelTesting::s;
using Node = PointTreeWidgetItem;

namespace {

constexpr int siblingCount = 300;

QByteArray sibling(int number)
{
    return s(
        "<P id='plug%1'><ExtPointSet><ExtPoint id='point%1' name='N'><String key='text' trans='true'/><SubExtPoint "
        "key='Sub' name='S'/></ExtPoint></ExtPointSet><ExtDataSet><ExtData id='point0'><Item id='item%1'/></ExtData>"
        "<Format target='t%2'><Menu id='m%1'/></Format></ExtDataSet></P>")
        .arg(number)
        .arg(number % 5)
        .toUtf8();
}

QStringList pluginRows(const SourceDataManager &manager)
{
    return ModelTesting::rows(manager.availablePointsRoot()).filter(QRegularExpression(s("^[^ ]")));
}

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

/// Declarations of a few names, so that files meet in them.
QByteArray randomPoints(QRandomGenerator *random, int depth)
{
    QByteArray xml;
    for (int i = random->bounded(4); i > 0; --i) {
        const QByteArray name = QByteArray::number(random->bounded(3));
        const QByteArray inner = depth < 3 ? randomPoints(random, depth + 1) : QByteArray();
        const char *const tag = depth == 0 ? "ExtPoint" : random->bounded(2) ? "SubExtPoint" : "String";
        xml += "<" + QByteArray(tag) + (depth == 0 ? " id='p" : " key='k") + name + "' name='n"
            + QByteArray::number(random->bounded(9)) + "' hasformat='" + (random->bounded(2) ? "true" : "false") + "'>"
            + inner + "</" + tag + ">";
    }
    return xml;
}

/// All that is said about the points of the product, and in which order they are found.
QStringList offered(const SourceDataManager &manager)
{
    QStringList lines = ModelTesting::tree(manager.availablePointsRoot());
    lines += ModelTesting::rows(manager.availablePointsRoot());
    const auto describe = [](const Node *node) {
        const Node *plugin = node;
        while (plugin->parentItem() && plugin->parentItem()->parentItem())
            plugin = plugin->parentItem();
        return s("%1 %2 %3 %4 %5 in %6")
            .arg(node->kind(), node->text(0), node->pluginId(), node->pointId())
            .arg(node->hasFormat())
            .arg(plugin->text(0));
    };
    const NodeIndex &points = manager.indexes()[NodeIndexes::Points];
    for (const char *key : { "p0", "p1", "p2", "k0", "k1", "k2" }) {
        for (const Node *node : points.nodes(s(key)))
            lines.append(s(key) + s(": ") + describe(node));
        for (const char *point : { "p0", "p1", "p2", "" })
            lines.append(
                s("%1 of %2: %3").arg(s(key), s(point)).arg(manager.indexes().definitions(s(key), s(point)).size()));
    }
    return lines;
}

} // namespace

class TestScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void readsEverySiblingInTheOrderOfTheListing();
    void userMayDeleteWhileAFileIsTakenIn();
    void closingAtAnyMoment();
    void closingFromWithinADeliveryOrASave();
    void secondScanReplaces();
    void blockedPoolDoesNotBlockSaving();
    void standInsAreGivenBack();
    void announcements_data();
    void announcements();
    void nodeFields();
    void whatIsTooMuchInAllIsLeftOut();
    void changedFilesAreReadAgain();

private:
    Product m_product;
};

/// 300 good siblings, and between them what else can lie in such a directory.
void TestScan::initTestCase()
{
    const auto plug
        = [](int number, const char *what) { return s("plug%1").arg(number, 3, 10, QLatin1Char('0')) + s(what); };
    for (int i = 0; i < siblingCount; ++i)
        m_product.add(plug(i, ""), sibling(i));
    for (int i = 0; i < 200; i += 20) {
        QDir().mkpath(m_product.path() + QLatin1Char('/') + plug(i, "-empty"));
        m_product.add(plug(i, "-broken"), sibling(i).chopped(2));
    }
    QDir().mkpath(m_product.file(s("directory-as-file")));
    QDir().mkpath(m_product.path() + s("/fifo"));
    QCOMPARE(mkfifo(qPrintable(m_product.file(s("fifo"))), 0600), 0);
    QFile::setPermissions(m_product.add(s("unreadable"), sibling(9999)), {});
    QFile::link(m_product.path() + s("/plug000"), m_product.path() + s("/linked"));
    m_product.add(s("."), "<P id='here'><ExtPointSet/></P>");
    m_product.add(s(".."), "<P id='above'><ExtPointSet/></P>");
}

void TestScan::init()
{
    QThreadPool::globalInstance()->waitForDone();
}

void TestScan::readsEverySiblingInTheOrderOfTheListing()
{
    QStringList expected;
    const QStringList entries = QDir(m_product.path()).entryList(QDir::Dirs | QDir::NoSymLinks);
    for (const QString &entry : entries) {
        const QByteArray file = entry == s("fifo") ? QByteArray() : Product::read(m_product.file(entry));
        if (file.endsWith("</P>"))
            expected.append(s(file.split('\'').at(1)));
    }
    for (int round = 0; round < 3; ++round) {
        SourceDataManager manager;
        QVERIFY(manager.load(m_product.file(s("plug007"))));
        QSignalSpy finished(&manager, &SourceDataManager::scanFinished);
        manager.startScan(m_product.file(s("plug007")));
        QVERIFY(manager.siblings().isRunning());
        QVERIFY(finished.wait(30000));
        QVERIFY(!manager.siblings().isRunning());
        QCoreApplication::processEvents();
        QCOMPARE(finished.count(), 1);
        QCOMPARE(pluginRows(manager), expected);
        for (int i = 0; i < siblingCount; ++i) {
            const Node *point = manager.definitions().first(s("point%1").arg(i));
            QVERIFY(point && point->thread() == thread());
            QCOMPARE(point->children().first()->item()->thread(), thread());
        }
        QCOMPARE(manager.indexes()[NodeIndexes::Points].nodes(s("sub")).size(), expected.size() - 2);
        QCOMPARE(manager.definitionRoot()->childCount(), 1);
        QCOMPARE(manager.indexes()[NodeIndexes::FormatTargets].size(), 5);
    }
}

void TestScan::userMayDeleteWhileAFileIsTakenIn()
{
    const Product product;
    const QByteArray points = QByteArray("<ExtPoint id='p'><Int/><SubExtPoint key='s'/></ExtPoint>").repeated(20000);
    const QByteArray records = QByteArray("<ExtData id='r'><A/></ExtData>").repeated(20000);
    product.add(s("large"),
        "<P id='large'><ExtPointSet>" + points + "</ExtPointSet><ExtDataSet>" + records + "</ExtDataSet></P>");
    SourceDataManager manager;
    QSignalSpy finished(&manager, &SourceDataManager::scanFinished);
    int deletions = 0;
    connect(&manager, &SourceDataManager::scanProgressed, this, [&] {
        for (Node *root : { manager.availablePointsRoot(), manager.allDataRoot() }) {
            if (manager.siblings().isRunning() && !root->children().isEmpty()) {
                Node::destroySubtree(root->children().first()->item());
                ++deletions;
            }
        }
    });
    manager.startScan(product.file(s("large")));
    QVERIFY(finished.wait(60000));
    QVERIFY(deletions > 0);
    QCOMPARE(manager.availablePointsRoot()->childCount(), 0);
}

void TestScan::closingAtAnyMoment()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 100; ++round) {
        auto manager = std::make_unique<SourceDataManager>();
        Controller::instance()->setSourceDataManager(manager.get());
        QVERIFY(manager->load(m_product.file(s("plug001"))));
        manager->startScan(m_product.file(s("plug001")));
        QTest::qWait(random.bounded(3) == 0 ? 0 : random.bounded(8));
        manager.reset();
    }
    QThreadPool::globalInstance()->waitForDone();
}

void TestScan::closingFromWithinADeliveryOrASave()
{
    for (int round = 0; round < 12; ++round) {
        auto *manager = new SourceDataManager;
        const QPointer<SourceDataManager> guard(manager);
        QVERIFY(manager->load(m_product.file(s("plug001"))));
        connect(manager, &SourceDataManager::scanProgressed, this, [&] {
            if (manager && round % 2 == 0)
                delete std::exchange(manager, nullptr);
        });
        connect(manager, &SourceDataManager::scanFinished, this, [&] { delete std::exchange(manager, nullptr); });
        manager->startScan(m_product.file(s("plug001")));
        QVERIFY(round % 3 != 0 || !manager->save());
        QTRY_VERIFY(!guard);
    }
}

void TestScan::secondScanReplaces()
{
    SourceDataManager manager;
    const QString own = m_product.file(s("plug003"));
    for (int round = 0; round < 3; ++round) {
        QVERIFY(manager.load(own));
        manager.startScan(own);
        if (round != 1)
            manager.completeScan();
    }
    QCOMPARE(pluginRows(manager).count(s("plug3")), 1);
    QCOMPARE(manager.indexes()[NodeIndexes::Points].nodes(s("point5")).size(), 1);
    QCOMPARE(manager.indexes()[NodeIndexes::FormatTargets].size(), 5);
    QCOMPARE(manager.ownRealizations().all().size(), 4);
}

void TestScan::blockedPoolDoesNotBlockSaving()
{
    QThreadPool *pool = QThreadPool::globalInstance();
    QSemaphore release;
    QSemaphore blocked;
    const int threads = pool->maxThreadCount();
    for (int i = 0; i < threads; ++i) {
        pool->start([&] {
            blocked.release();
            release.acquire();
        });
    }
    blocked.acquire(threads);
    int rows[2] = {};
    const auto saves = [&](int *count) {
        SourceDataManager manager;
        const bool loaded = manager.load(m_product.file(s("plug000")));
        manager.startScan(m_product.file(s("plug000")));
        const bool saved = manager.save();
        *count = pluginRows(manager).size();
        return loaded && saved;
    };
    const bool saved = saves(&rows[0]);
    // And when the pool gives no thread at all, as when the system gives it none.
    for (int i = 0; i < threads; ++i)
        pool->reserveThread();
    const bool savedToo = saves(&rows[1]);
    for (int i = 0; i < threads; ++i)
        pool->releaseThread();
    release.release(threads);
    pool->waitForDone();
    QVERIFY(saved && savedToo);
    QVERIFY(rows[0] >= siblingCount && rows[0] == rows[1]);
}

/// However many files are slow in the course of a scan, the pool is afterwards what it was.
void TestScan::standInsAreGivenBack()
{
    QThreadPool *pool = QThreadPool::globalInstance();
    ScanSequence sequence({}, {}, { nullptr, nullptr, nullptr }, {});
    ScanHandover handover(200, {}, &sequence);
    int lent = 0;
    const auto lend = [&] {
        QThread::msleep(2);
        for (int i = handover.countSlow(std::chrono::milliseconds(1), 64); i > 0; --i, ++lent)
            pool->releaseThread();
    };
    for (int i = 0; i < 200; ++i) {
        QVERIFY(handover.claim(i));
        if (i % 70 == 69)
            lend();
        if (i >= 100)
            handover.put(i - 100, QString(), {});
    }
    QVERIFY(lent > 64);
    for (int i = 100; i < 200; ++i)
        handover.put(i, QString(), {});
    QCOMPARE(pool->activeThreadCount(), 0);
}

void TestScan::announcements_data()
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

void TestScan::announcements()
{
    QFETCH(const QByteArray, file);
    const Product product;
    const Recorder recorder(product.add(s("sibling"), file));
    QTEST(recorder.m_lines.join(s("; ")), "expected");
    QVERIFY2(!recorder.m_linkedByTask, "a realization node was linked by the task");
}

void TestScan::nodeFields()
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

void TestScan::whatIsTooMuchInAllIsLeftOut()
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

/// Files are written, broken, removed and made; after each look the points are those of a fresh start, which for a
/// broken or removed file has its last good content. What a file says as before stays the same node.
void TestScan::changedFilesAreReadAgain()
{
    QRandomGenerator random { 3 };
    const Product product;
    const Product good;
    const auto write = [&](const QString &plugin, const QByteArray &points) {
        const QByteArray bytes = "<P id='" + plugin.toUtf8() + "'><ExtPointSet>" + points
            + "</ExtPointSet><ExtDataSet><ExtData id='p0'><Format target='t'/></ExtData></ExtDataSet></P>";
        product.add(plugin, bytes);
        good.add(plugin, bytes);
    };
    const QStringList plugins { s("a"), s("b"), s("c"), s("d"), s("e"), s("f") };
    for (const QString &plugin : plugins)
        write(plugin, randomPoints(&random, 0));
    SourceDataManager manager;
    QVERIFY(manager.load(product.file(s("c"))));
    manager.startScan(product.file(s("c")));
    manager.completeScan();
    int changes = 0;
    connect(&manager.changes(), &ModelChanges::changed, this, [&changes] { ++changes; });
    const auto look = [&manager] {
        manager.siblings().lookAgain();
        while (manager.siblings().isLooking())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    for (int round = 0; round < 100; ++round) {
        QVector<QPointer<Node>> kept;
        const QString plugin = plugins.at(random.bounded(plugins.size()));
        for (PointObject *other : manager.availablePointsRoot()->children()) {
            if (other->item()->pluginId() != plugin)
                kept.append(other->item()->children().isEmpty() ? other->item() : other->children().last()->item());
        }
        bool isBroken = false;
        if (plugin != s("c")) {
            switch (random.bounded(6)) {
            case 0:
                QFile::remove(product.file(plugin));
                break;
            case 1:
                QDir(product.path() + QLatin1Char('/') + plugin).removeRecursively();
                break;
            case 2:
                isBroken = QFile::exists(product.file(plugin));
                if (isBroken)
                    product.add(plugin, "<P");
                break;
            default:
                write(plugin, randomPoints(&random, 0));
            }
        }
        look();
        const QVector<UnreadableFile> unreadable = manager.siblings().unreadableFiles();
        QVERIFY(!isBroken || std::any_of(unreadable.begin(), unreadable.end(), [&](const UnreadableFile &file) {
            return file.path == product.file(plugin);
        }));
        SourceDataManager fresh;
        QVERIFY(fresh.load(good.file(s("c"))));
        fresh.startScan(good.file(s("c")));
        fresh.completeScan();
        QCOMPARE(offered(manager), offered(fresh));
        for (const QPointer<Node> &node : qAsConst(kept))
            QVERIFY(node);
        // Nobody hears of a look that finds nothing new, or a file that was written as it was.
        changes = 0;
        if (QFile::exists(product.file(s("b"))))
            product.add(s("b"), Product::read(product.file(s("b"))));
        look();
        QCOMPARE(changes, 0);
    }

    // A value and one more attribute: whoever looks at these points goes on looking at them.
    write(
        s("a"), "<ExtPoint id='p0'><String key='k0' value='1'/><SubExtPoint key='k1'/></ExtPoint><ExtPoint id='p1'/>");
    look();
    QPointer<Node> point = manager.availablePointsRoot()->children().first()->children().first()->item();
    QCOMPARE(point->pointId(), s("p0"));
    const QPointer<Node> text = point->children().first()->item();
    const QPointer<Node> subPoint = point->children().last()->item();
    write(s("a"),
        "<ExtPoint id='p1'/><ExtPoint id='p0'><Int key='n'/><String key='k0' value='2'/><SubExtPoint "
        "key='k1'/></ExtPoint>");
    bool mayTakeIn = false;
    manager.siblings().setReadiness([&] { return mayTakeIn; });
    manager.siblings().lookAgain();
    QTest::qWait(400);
    QVERIFY(manager.siblings().isLooking());
    QCOMPARE(text->property(s("value")).toString(), s("1"));
    mayTakeIn = true;
    QTRY_VERIFY(!manager.siblings().isLooking());
    QVERIFY(point && text && subPoint);
    QCOMPARE(point->children().size(), 3);
    QCOMPARE(text->property(s("value")).toString(), s("2"));
    QCOMPARE(point->indexOfChild(subPoint), 0);
    QCOMPARE(manager.availablePointsRoot()->children().first()->children().last()->item(), point.data());
}

QTEST_MAIN(TestScan)
#include "tst_scan.moc"

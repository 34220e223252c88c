#include "modeltesting.h"

#include "model/controller.h"
#include "model/scanhandover.h"
#include "model/scansequence.h"
#include "model/sourcedatamanager.h"
#include "model/taskread.h"

#include <QRandomGenerator>
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
    QStringList rows;
    for (int i = 0; i < manager.availablePointsRoot()->childCount(); ++i)
        rows.append(manager.availablePointsRoot()->child(i)->text(0));
    return rows;
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
    void closingFromWithinADelivery();
    void closingFromWithinASave();
    void secondScanReplaces();
    void blockedPoolDoesNotBlockSaving();
    void standInsAreGivenBack();

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
        if (entry == s("."))
            expected.append(s("here"));
        else if (entry == s(".."))
            expected.append(s("above"));
        else if (entry.size() == 7 && entry.startsWith(s("plug")))
            expected.append(s("plug%1").arg(entry.midRef(4).toInt()));
        else if (entry == s("unreadable") && geteuid() == 0)
            expected.append(s("plug9999"));
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
        for (int i = 0; i < siblingCount; ++i)
            QVERIFY(manager.definitions().first(s("point%1").arg(i)));
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
        for (PointTreeWidgetItem *root : { manager.availablePointsRoot(), manager.allDataRoot() }) {
            if (manager.siblings().isRunning() && !root->children().isEmpty()) {
                PointTreeWidgetItem::destroySubtree(root->children().first()->item());
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

void TestScan::closingFromWithinADelivery()
{
    for (int round = 0; round < 10; ++round) {
        auto *manager = new SourceDataManager;
        QPointer<SourceDataManager> guard(manager);
        connect(manager, &SourceDataManager::scanProgressed, this, [&] {
            if (manager && round % 2 == 0)
                delete std::exchange(manager, nullptr);
        });
        connect(manager, &SourceDataManager::scanFinished, this, [&] { delete std::exchange(manager, nullptr); });
        manager->startScan(m_product.file(s("plug001")));
        QTRY_VERIFY(!guard);
    }
}

void TestScan::closingFromWithinASave()
{
    const Product product;
    const QString own = product.add(s("own"), "<P/>");
    auto *manager = new SourceDataManager;
    QVERIFY(manager->load(own));
    connect(manager, &SourceDataManager::scanFinished, this, [&] { delete std::exchange(manager, nullptr); });
    manager->startScan(own);
    QVERIFY(!manager->save());
    QVERIFY(!manager);
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

QTEST_MAIN(TestScan)
#include "tst_scan.moc"

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

namespace {

constexpr int siblingCount = 300;

QByteArray sibling(int number)
{
    const QByteArray n = QByteArray::number(number);
    return "<P id=\"plug" + n + "\"><ExtPointSet><ExtPoint id=\"point" + n + "\" name=\"Point " + n
        + "\"><String key=\"text\" trans=\"true\"/><SubExtPoint key=\"Sub\" name=\"S\"/></ExtPoint></ExtPointSet>"
          "<ExtDataSet><ExtData id=\"point0\"><Item id=\"item"
        + n + "\"/></ExtData><Format target=\"t" + QByteArray::number(number % 5) + "\"><Menu id=\"m" + n
        + "\"/></Format></ExtDataSet></P>";
}

/// 300 good siblings, and between them what else can lie in such a directory.
void fill(const Product &product)
{
    for (int i = 0; i < siblingCount; ++i)
        product.add(QStringLiteral("plug%1").arg(i, 3, 10, QLatin1Char('0')), sibling(i));
    for (int i = 0; i < 10; ++i) {
        QDir().mkpath(product.path() + QStringLiteral("/plug%1-empty").arg(i * 20, 3, 10, QLatin1Char('0')));
        product.add(QStringLiteral("plug%1-broken").arg(i * 20, 3, 10, QLatin1Char('0')), sibling(i).chopped(2));
    }
    QDir().mkpath(product.file(QStringLiteral("directory-as-file")));
    product.add(QStringLiteral("fifo"), "");
    QFile::remove(product.file(QStringLiteral("fifo")));
    mkfifo(qPrintable(product.file(QStringLiteral("fifo"))), 0600);
    product.add(QStringLiteral("unreadable"), sibling(9999));
    QFile::setPermissions(product.file(QStringLiteral("unreadable")), {});
    QFile::link(product.path() + QStringLiteral("/plug000"), product.path() + QStringLiteral("/linked"));
    QFile above(product.path() + QStringLiteral("/extension.xml"));
    above.open(QIODevice::WriteOnly);
    above.write("<P id=\"here\"><ExtPointSet/></P>");
    QFile twoAbove(product.path() + QStringLiteral("/../extension.xml"));
    twoAbove.open(QIODevice::WriteOnly);
    twoAbove.write("<P id=\"above\"><ExtPointSet/></P>");
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
    void init();
    void readsEverySibling();
    void takesResultsInTheOrderOfTheListing();
    void userMayDeleteWhileAFileIsTakenIn();
    void saveDuringTheScanKeepsTranslations();
    void closingAtAnyMoment();
    void closingFromWithinADelivery();
    void closingFromWithinASave();
    void secondScanReplaces();
    void blockedPoolDoesNotBlockSaving();
    void standInsAreGivenBack();
};

void TestScan::init()
{
    QThreadPool::globalInstance()->waitForDone();
}

void TestScan::readsEverySibling()
{
    const Product product;
    fill(product);
    const QString own = product.file(QStringLiteral("plug007"));
    SourceDataManager manager;
    QVERIFY(manager.load(own));
    QSignalSpy finished(&manager, &SourceDataManager::scanFinished);
    manager.startScan(own);
    QVERIFY(manager.siblings().isRunning());
    QVERIFY(finished.wait(30000));
    QVERIFY(!manager.siblings().isRunning());
    QCoreApplication::processEvents();
    QCOMPARE(finished.count(), 1);

    const QStringList rows = pluginRows(manager);
    QVERIFY(rows.contains(QStringLiteral("here")) && rows.contains(QStringLiteral("above")));
    for (int i = 0; i < siblingCount; ++i) {
        QCOMPARE(rows.count(QStringLiteral("plug%1").arg(i)), 1);
        QVERIFY(manager.definitions().first(QStringLiteral("point%1").arg(i)));
    }
    QCOMPARE(manager.indexes()[NodeIndexes::Points].nodes(QStringLiteral("sub")).size(),
        siblingCount + (geteuid() == 0 ? 1 : 0));
    QCOMPARE(manager.definitionRoot()->childCount(), 1);
    QCOMPARE(manager.indexes()[NodeIndexes::FormatTargets].size(), 5);
}

void TestScan::takesResultsInTheOrderOfTheListing()
{
    const Product product;
    fill(product);
    QStringList expected;
    const QStringList entries = QDir(product.path()).entryList(QDir::Dirs | QDir::NoSymLinks);
    for (const QString &entry : entries) {
        if (entry == QLatin1String("."))
            expected.append(QStringLiteral("here"));
        else if (entry == QLatin1String(".."))
            expected.append(QStringLiteral("above"));
        else if (entry.size() == 7 && entry.startsWith(QLatin1String("plug")))
            expected.append(QStringLiteral("plug%1").arg(entry.midRef(4).toInt()));
        else if (entry == QLatin1String("unreadable") && geteuid() == 0)
            expected.append(QStringLiteral("plug9999"));
    }
    for (int round = 0; round < 3; ++round) {
        SourceDataManager manager;
        QSignalSpy finished(&manager, &SourceDataManager::scanFinished);
        manager.startScan(product.file(QStringLiteral("plug000")));
        QVERIFY(finished.wait(30000));
        QCOMPARE(pluginRows(manager), expected);
    }
}

void TestScan::userMayDeleteWhileAFileIsTakenIn()
{
    const Product product;
    QByteArray items;
    for (int i = 0; i < 20000; ++i)
        items += "<ExtPoint id=\"p" + QByteArray::number(i) + "\"><Int/><SubExtPoint key=\"s\"/></ExtPoint>";
    QByteArray records;
    for (int i = 0; i < 20000; ++i)
        records += "<ExtData id=\"r" + QByteArray::number(i) + "\"><A/></ExtData>";
    product.add(QStringLiteral("large"),
        "<P id=\"large\"><ExtPointSet>" + items + "</ExtPointSet><ExtDataSet>" + records + "</ExtDataSet></P>");
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
    manager.startScan(product.file(QStringLiteral("large")));
    QVERIFY(finished.wait(60000));
    QVERIFY(deletions > 0);
    QCOMPARE(manager.availablePointsRoot()->childCount(), 0);
}

void TestScan::saveDuringTheScanKeepsTranslations()
{
    const Product product;
    fill(product);
    const QString own = product.add(QStringLiteral("own"),
        "<P id=\"own\"><ExtDataSet><ExtData id=\"point299\"><Item id=\"i\" "
        "text=\"tr('Open')\"/></ExtData></ExtDataSet></P>");
    SourceDataManager manager;
    QVERIFY(manager.load(own));
    manager.startScan(own);
    QVERIFY(manager.save());
    QVERIFY(Product::read(own).contains("text=\"tr('Open')\""));
}

void TestScan::closingAtAnyMoment()
{
    const Product product;
    fill(product);
    QRandomGenerator random(7);
    for (int round = 0; round < 100; ++round) {
        auto manager = std::make_unique<SourceDataManager>();
        Controller::instance()->setSourceDataManager(manager.get());
        QVERIFY(manager->load(product.file(QStringLiteral("plug001"))));
        manager->startScan(product.file(QStringLiteral("plug001")));
        QTest::qWait(random.bounded(3) == 0 ? 0 : random.bounded(8));
        manager.reset();
    }
    QThreadPool::globalInstance()->waitForDone();
}

void TestScan::closingFromWithinADelivery()
{
    const Product product;
    fill(product);
    for (int round = 0; round < 10; ++round) {
        auto *manager = new SourceDataManager;
        QPointer<SourceDataManager> guard(manager);
        connect(manager, &SourceDataManager::scanProgressed, this, [&] {
            if (manager && round % 2 == 0)
                delete std::exchange(manager, nullptr);
        });
        connect(manager, &SourceDataManager::scanFinished, this, [&] { delete std::exchange(manager, nullptr); });
        manager->startScan(product.file(QStringLiteral("plug001")));
        QTRY_VERIFY(!guard);
    }
}

void TestScan::closingFromWithinASave()
{
    const Product product;
    const QString own = product.add(QStringLiteral("own"), "<P id=\"own\"><ExtPointSet/></P>");
    auto *manager = new SourceDataManager;
    QVERIFY(manager->load(own));
    connect(manager, &SourceDataManager::scanFinished, this, [&] { delete std::exchange(manager, nullptr); });
    manager->startScan(own);
    QVERIFY(!manager->save());
    QVERIFY(!manager);
}

void TestScan::secondScanReplaces()
{
    const Product product;
    fill(product);
    SourceDataManager manager;
    const QString own = product.file(QStringLiteral("plug003"));
    for (int round = 0; round < 3; ++round) {
        QVERIFY(manager.load(own));
        manager.startScan(own);
        if (round != 1)
            manager.completeScan();
    }
    QCOMPARE(pluginRows(manager).count(QStringLiteral("plug3")), 1);
    QCOMPARE(manager.indexes()[NodeIndexes::Points].nodes(QStringLiteral("point5")).size(), 1);
    QCOMPARE(manager.indexes()[NodeIndexes::FormatTargets].size(), 5);
    QCOMPARE(manager.ownRealizations().all().size(), 4);
}

void TestScan::blockedPoolDoesNotBlockSaving()
{
    const Product product;
    fill(product);
    QSemaphore release;
    QSemaphore blocked;
    const int threads = QThreadPool::globalInstance()->maxThreadCount();
    for (int i = 0; i < threads; ++i) {
        QThreadPool::globalInstance()->start([&] {
            blocked.release();
            release.acquire();
        });
    }
    blocked.acquire(threads);
    SourceDataManager manager;
    QVERIFY(manager.load(product.file(QStringLiteral("plug000"))));
    manager.startScan(product.file(QStringLiteral("plug000")));
    const bool saved = manager.save();
    const int rows = pluginRows(manager).size();
    // And when the pool gives no thread at all, as when the system gives it none.
    for (int i = 0; i < threads; ++i)
        QThreadPool::globalInstance()->reserveThread();
    SourceDataManager another;
    QVERIFY(another.load(product.file(QStringLiteral("plug000"))));
    another.startScan(product.file(QStringLiteral("plug000")));
    const bool savedToo = another.save();
    for (int i = 0; i < threads; ++i)
        QThreadPool::globalInstance()->releaseThread();
    release.release(threads);
    QVERIFY(saved && savedToo);
    QVERIFY(rows >= siblingCount);
    QCOMPARE(pluginRows(another).size(), rows);
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

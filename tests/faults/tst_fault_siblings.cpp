#include "core/unprivileged.h"
#include "faulttesting.h"

#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <thread>

#include <unistd.h>

using namespace FaultTesting;

namespace {

constexpr int goodSiblings = 20;

QByteArray sibling(const QByteArray &id, int points = 3, char letter = 'x')
{
    QByteArray bytes = "<Plugin id=\"" + id + "\"><ExtPointSet>";
    for (int i = 0; i < points; ++i)
        bytes += "<ExtPoint id=\"" + id + '.' + QByteArray::number(i) + "\" name=\"" + QByteArray(100, letter) + "\"/>";
    return bytes + "</ExtPointSet></Plugin>";
}

/// Two formats of one target, each with 20,000 entries whose "id" and "parent" are made from numbers around theirs.
QByteArray mergedFormats(const std::function<QByteArray(int)> &id, const std::function<QByteArray(int)> &parent)
{
    QByteArray bytes = "<Plugin id=\"odd\"><ExtPointSet/><ExtDataSet>";
    for (int file = 0; file < 2; ++file) {
        bytes += "<Format target=\"t\"><e><e id=\"0\"/></e>";
        for (int i = 1; i <= 20'000; ++i)
            bytes += "<e id=\"" + id(i) + "\" parent=\"" + parent(i) + "\"><e id=\"" + parent(i) + "\"/></e>";
        bytes += "</Format>";
    }
    return bytes + "</ExtDataSet></Plugin>";
}

/// The names of all plug-ins but the odd one, in the order of the listing.
QStringList goodRows()
{
    QStringList names;
    for (int i = 0; i < goodSiblings; ++i)
        names.append((i < goodSiblings / 2 ? QStringLiteral("a%1") : QStringLiteral("q%1")).arg(100 + i));
    return names << QStringLiteral("zz-opened");
}

/// Twenty plug-ins and the opened one; "odd" stands in the middle of the listing.
class Product final
{
public:
    Product()
    {
        setMode(m_directory.path(), 0755);
        makeDirectory(plugins());
        for (const QString &name : goodRows())
            add(name.toLatin1());
    }

    ~Product()
    {
        // Qt can't name it, and so not remove it.
        ::rmdir((QFile::encodeName(plugins()) + unnameable).constData());
    }
    Product(const Product &) = delete;
    Product &operator=(const Product &) = delete;

    static constexpr char unnameable[] = "/odd\xff";

    [[nodiscard]] QString plugins() const { return m_directory.filePath(QStringLiteral("plugins")); }
    [[nodiscard]] QString directory(const QByteArray &name) const
    {
        return plugins() + QLatin1Char('/') + QFile::decodeName(name);
    }
    [[nodiscard]] QString odd() const { return directory("odd"); }
    [[nodiscard]] QString oddFile() const { return odd() + QLatin1String("/extension.xml"); }
    [[nodiscard]] QString opened() const { return directory("zz-opened") + QLatin1String("/extension.xml"); }

    void add(const QByteArray &name) const
    {
        makeDirectory(directory(name));
        makeFile(directory(name) + QLatin1String("/extension.xml"), sibling(name));
    }

private:
    QTemporaryDir m_directory;
};

QStringList rows(const SourceDataManager &manager)
{
    QStringList texts;
    for (int i = 0; i < manager.availablePointsRoot()->childCount(); ++i)
        texts.append(manager.availablePointsRoot()->child(i)->text(0));
    return texts;
}

/// Scans beside the file until the end. How long the event loop did not come round meanwhile at most, in ms; -1 when
/// there is no end.
qint64 longestStall(SourceDataManager *manager, const QString &path)
{
    FaultTesting::WorkClock clock;
    clock.start();
    qint64 longest = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { longest = qMax(longest, clock.restart()); });
    timer.start(5);
    manager->startScan(path);
    const bool ended = QTest::qWaitFor([&] { return !manager->siblings().isRunning(); }, 60'000);
    return ended ? qMax(longest, clock.elapsed()) : -1;
}

/// Without ending the test when it fails, since somebody else may just have taken the place away.
void tryToWrite(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

using Setup = std::function<void(const Product &)>;

struct Row
{
    Setup setup;
    /// What is logged about the odd one, in its only line; nothing when it is passed over in silence.
    QByteArray reason;
    bool taken = false;
};

using Deed = std::function<void(const Product &)>;

} // namespace

Q_DECLARE_METATYPE(Row)
Q_DECLARE_METATYPE(Deed)

class TestFaultSiblings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneOddSibling_data();
    void oneOddSibling();
    void changesWhileItIsRead_data();
    void changesWhileItIsRead();
};

void TestFaultSiblings::oneOddSibling_data()
{
    QTest::addColumn<Row>("row");
    const auto row = [](const char *name, const QByteArray &reason, const Setup &setup, bool taken = false) {
        QTest::newRow(name) << Row { setup, reason, taken };
    };
    const auto inOdd = [](const std::function<void(const QString &)> &make) {
        return [make](const Product &product) {
            makeDirectory(product.odd());
            make(product.oddFile());
        };
    };
    const auto holding
        = [&inOdd](const QByteArray &bytes) { return inOdd([bytes](const QString &path) { makeFile(path, bytes); }); };
    const QByteArray irregular = "Not a regular file";
    row("an ordinary one", "", holding(sibling("odd")), true);
    row("pipe", irregular, inOdd(makePipe));
    row("endless device", irregular, inOdd([](const QString &path) { makeLink("/dev/zero", path); }));
    row("2 GB, sparse", "more than",
        inOdd([](const QString &path) { makeSparse(path, qint64(2) * 1024 * 1024 * 1024); }));
    row("not to be read", "Permission denied", inOdd([](const QString &path) { makeFile(path, sibling("odd"), 0); }));
    row("directory not to be entered", "Permission denied", [](const Product &product) {
        product.add("odd");
        setMode(product.odd(), 0600);
    });
    row("empty", "1:1", holding(""));
    row("nested 200,000 deep", "nested", holding(QByteArray("<a>").repeated(200'000)));
    row("200,000 points", "", holding(sibling("odd", 200'000)), true);
    const auto number = [](int i) { return QByteArray::number(i); };
    const auto nought = [](int) { return QByteArray("0"); };
    row("all entries have the id that they name", "stay directly", holding(mergedFormats(nought, nought)), true);
    row("all entries name one id", "stay directly", holding(mergedFormats(number, nought)), true);
    row("directory without a file", "", [](const Product &product) { makeDirectory(product.odd()); });
    row("directory that links to itself", "", [](const Product &product) { makeLink("odd", product.odd()); });
    row("name that is no UTF-8", "", [](const Product &product) {
        const QByteArray path = QFile::encodeName(product.plugins()) + Product::unnameable;
        QVERIFY(::mkdir(path.constData(), 0755) == 0);
    });
}

void TestFaultSiblings::oneOddSibling()
{
    QFETCH(Row, row);
    const Product product;
    row.setup(product);
    // Root may read anything.
    const Unprivileged rights;
    const Log log;
    SourceDataManager manager;
    QVERIFY(manager.load(product.opened()));
    const qint64 stall = longestStall(&manager, product.opened());
    QVERIFY2(stall >= 0 && stall < patienceMs(), qPrintable(QString::number(stall)));
    QStringList expected = goodRows();
    if (row.taken)
        expected.insert(goodSiblings / 2, QStringLiteral("odd"));
    QCOMPARE(rows(manager), expected);
    const QStringList lines = log.lines();
    QCOMPARE(lines.size(), row.reason.isEmpty() ? 0 : 1);
    if (!lines.isEmpty()) {
        QVERIFY2(lines.first().startsWith(product.oddFile() + QLatin1Char(':')), qPrintable(lines.first()));
        QVERIFY2(lines.first().contains(QString::fromLatin1(row.reason)), qPrintable(lines.first()));
    }
}

void TestFaultSiblings::changesWhileItIsRead_data()
{
    QTest::addColumn<Deed>("deed");
    const auto row = [](const char *name, const Deed &deed) { QTest::newRow(name) << deed; };
    row("vanishes and comes back", [](const Product &product) {
        QFile::remove(product.oddFile());
        tryToWrite(product.oddFile(), sibling("odd", 500));
    });
    row("is replaced by rename", [](const Product &product) {
        const QString next = product.odd() + QLatin1String("/next");
        tryToWrite(next, sibling("odd", 500));
        ::rename(QFile::encodeName(next).constData(), QFile::encodeName(product.oddFile()).constData());
    });
    row("goes with its directory", [](const Product &product) {
        QDir(product.odd()).removeRecursively();
        QDir().mkpath(product.odd());
        tryToWrite(product.oddFile(), sibling("odd", 500));
    });
}

/// It may be there or not, but it is never there by half, and never at the cost of the others.
void TestFaultSiblings::changesWhileItIsRead()
{
    QFETCH(Deed, deed);
    const Product product;
    makeDirectory(product.odd());
    makeFile(product.oddFile(), sibling("odd", 500));
    const Log log;
    {
        std::atomic<bool> stop { false };
        std::thread meddler([&] {
            while (!stop)
                deed(product);
        });
        const auto end = qScopeGuard([&] {
            stop = true;
            meddler.join();
        });
        for (int round = 0; round < 20; ++round) {
            SourceDataManager manager;
            QVERIFY(manager.load(product.opened()));
            const qint64 stall = longestStall(&manager, product.opened());
            QVERIFY2(stall >= 0 && stall < patienceMs(), qPrintable(QString::number(stall)));
            QStringList found = rows(manager);
            const int odd = found.indexOf(QStringLiteral("odd"));
            if (odd >= 0) {
                QCOMPARE(manager.availablePointsRoot()->child(odd)->childCount(), 500);
                found.removeAt(odd);
            }
            QCOMPARE(found, goodRows());
        }
    }
    const QStringList lines = log.lines();
    for (const QString &line : lines)
        QVERIFY2(line.startsWith(product.oddFile() + QLatin1Char(':')), qPrintable(line));
}

QTEST_GUILESS_MAIN(TestFaultSiblings)
#include "tst_fault_siblings.moc"

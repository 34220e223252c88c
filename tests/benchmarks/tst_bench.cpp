#include "report.h"
#include "statistics.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

/// The benchmark program runs to its end and measures everything. How long anything took is not looked at.
class TestBench : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quick();
    void statistics();
};

void TestBench::quick()
{
    QTemporaryDir directory;
    const QString json = directory.filePath(s("figures.json"));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(s(EXTPOINT_BINARY_DIR "/benchmarks/extpoint-bench"),
        { s("--quick"), s("--json"), json, s("--directory"), directory.path() });
    QVERIFY(process.waitForFinished(1'500'000));
    const QByteArray output = process.readAll();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, output.constData());
    QFile file(json);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonArray rows = QJsonDocument::fromJson(file.readAll()).array();

    QStringList names;
    for (const QJsonValue &row : rows) {
        const QJsonValue value = row[QLatin1String("value")];
        const QString name = row[QLatin1String("name")].toString();
        // The one baseline that the tests do without.
        QVERIFY2(value.isDouble() || name.contains(QLatin1String("baseline_c")), qPrintable(name));
        if (!row[QLatin1String("must")].isDouble())
            continue;
        names.append(name);
        QVERIFY2(value.toDouble() > 0, qPrintable(name));
    }
    QStringList targets;
    for (const QString &name : Report::targetNames())
        targets.append(name);
    names.sort();
    targets.sort();
    QCOMPARE(names, targets);
    // Head, figures, an empty line, and the circumstances with the line below.
    QVERIFY2(output.count('\n') >= rows.size() + 4, output.constData());
    // Nothing stays behind but the figures.
    QCOMPARE(
        QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList { s("figures.json") });
}

void TestBench::statistics()
{
    std::vector<double> hundred;
    for (int i = 100; i > 0; --i)
        hundred.push_back(i);
    struct Case
    {
        std::vector<double> values;
        double median, percentile, largest;
    };
    for (const Case &each : { Case { {}, qQNaN(), qQNaN(), qQNaN() }, Case { { 3 }, 3, 3, 3 },
             Case { { 9, 1, 4 }, 4, 9, 9 }, Case { { 9, 1, 4, 5 }, 4.5, 9, 9 }, Case { hundred, 50.5, 95, 100 } }) {
        QCOMPARE(Statistics::median(each.values), each.median);
        QCOMPARE(Statistics::percentile(each.values, 95), each.percentile);
        QCOMPARE(Statistics::largest(each.values), each.largest);
    }
    // A ratio is one of pairs, and a sample that failed in between leaves none.
    QCOMPARE(Statistics::medianRatio({ 10, 20, 90 }, { 10, 5, 30 }), 3.0);
    for (const double nothing :
        { Statistics::median({ 1, qQNaN(), 2 }), Statistics::medianRatio({ 1, 2, 3 }, { 1, qQNaN(), 3 }),
            Statistics::medianRatio({}, {}), Statistics::medianRatio({ 1, 2 }, { 1 }) })
        QVERIFY(std::isnan(nothing));
}

QTEST_GUILESS_MAIN(TestBench)
#include "tst_bench.moc"

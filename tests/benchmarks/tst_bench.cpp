#include "report.h"
#include "statistics.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

/// The benchmark program runs to its end and measures everything. How long anything took is not looked at.
class TestBench : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quick();
    void refused_data();
    void refused();
    void statistics_data();
    void statistics();
    void ratiosAreOfPairs();

private:
    static int run(const QStringList &arguments, QString *output, QString *errors)
    {
        QProcess process;
        process.start(QStringLiteral(EXTPOINT_BINARY_DIR "/benchmarks/extpoint-bench"), arguments);
        if (!process.waitForFinished(1'500'000))
            return -1;
        *output = QString::fromUtf8(process.readAllStandardOutput());
        *errors = QString::fromUtf8(process.readAllStandardError());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
};

void TestBench::quick()
{
    QTemporaryDir directory;
    const QString json = directory.filePath(QStringLiteral("figures.json"));
    QString output, errors;
    const int code = run(
        { QStringLiteral("--quick"), QStringLiteral("--json"), json, QStringLiteral("--directory"), directory.path() },
        &output, &errors);
    QVERIFY2(code == 0, qPrintable(errors + output));
    QFile file(json);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonArray rows = QJsonDocument::fromJson(file.readAll()).array();

    QStringList names;
    for (const QJsonValue &row : rows) {
        const QString name = row[QLatin1String("name")].toString();
        if (!row[QLatin1String("must")].isDouble())
            continue;
        names.append(name);
        QVERIFY2(row[QLatin1String("value")].toDouble() > 0, qPrintable(name));
    }
    names.sort();
    QStringList targets;
    for (const QString &name : Report::targetNames())
        targets.append(name);
    targets.sort();
    QCOMPARE(names, targets);
    for (const QJsonValue &row : rows) {
        const QJsonValue value = row[QLatin1String("value")];
        const QString name = row[QLatin1String("name")].toString();
        // The one baseline that the tests do without.
        QVERIFY2(value.isDouble() || name.contains(QLatin1String("baseline_c")), qPrintable(name));
    }
    // Head, figures, an empty line, and the circumstances with the line below.
    QVERIFY2(output.count(QLatin1Char('\n')) >= rows.size() + 4, qPrintable(output));
    // Nothing stays behind but the figures.
    QCOMPARE(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList { QStringLiteral("figures.json") });
}

void TestBench::refused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a directory that is not there")
        << QStringList { QStringLiteral("--quick"), QStringLiteral("--directory"), QStringLiteral("/nowhere") }
        << QStringLiteral("/nowhere");
    QTest::newRow("a product in such a directory") << QStringList { QStringLiteral("--product"), QStringLiteral("1"),
        QStringLiteral("--directory"), QStringLiteral("/dev/null/below") }
                                                   << QStringLiteral("/dev/null/below");
    QTest::newRow("an unknown option") << QStringList { QStringLiteral("--fast") } << QStringLiteral("fast");
}

void TestBench::refused()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    QString output, errors;
    QCOMPARE(run(arguments, &output, &errors), 1);
    QVERIFY2(errors.contains(reason), qPrintable(errors));
}

void TestBench::statistics_data()
{
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<double>("median");
    QTest::addColumn<double>("percentile");
    QTest::addColumn<double>("largest");
    QVector<double> hundred;
    for (int i = 100; i > 0; --i)
        hundred.append(i);
    QTest::newRow("nothing") << QVector<double> {} << qQNaN() << qQNaN() << qQNaN();
    QTest::newRow("one") << QVector<double> { 3 } << 3.0 << 3.0 << 3.0;
    QTest::newRow("odd") << QVector<double> { 9, 1, 4 } << 4.0 << 9.0 << 9.0;
    QTest::newRow("even") << QVector<double> { 9, 1, 4, 5 } << 4.5 << 9.0 << 9.0;
    QTest::newRow("many") << hundred << 50.5 << 95.0 << 100.0;
}

void TestBench::statistics()
{
    QFETCH(QVector<double>, values);
    QFETCH(double, median);
    QFETCH(double, percentile);
    QFETCH(double, largest);
    const std::vector<double> list(values.cbegin(), values.cend());
    QCOMPARE(Statistics::median(list), median);
    QCOMPARE(Statistics::percentile(list, 95), percentile);
    QCOMPARE(Statistics::largest(list), largest);
}

void TestBench::ratiosAreOfPairs()
{
    QCOMPARE(Statistics::medianRatio({ 10, 20, 90 }, { 10, 5, 30 }), 3.0);
    // A sample that failed in between.
    QVERIFY(std::isnan(Statistics::median({ 1, std::nan(""), 2 })));
    QVERIFY(std::isnan(Statistics::medianRatio({ 1, 2, 3 }, { 1, std::nan(""), 3 })));
    QVERIFY(std::isnan(Statistics::medianRatio({}, {})));
    QVERIFY(std::isnan(Statistics::medianRatio({ 1, 2 }, { 1 })));
}

QTEST_GUILESS_MAIN(TestBench)
#include "tst_bench.moc"

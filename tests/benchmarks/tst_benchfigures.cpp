#include "extensionfile/reader.h"
#include "extensionfile/sink.h"
#include "product/products.h"
#include "report.h"
#include "statistics.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

/// Counts elements, by tag and in all, and where they stand.
class CountingSink final : public ExtensionFile::Sink
{
public:
    void startElement(
        const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &) override
    {
        ++all;
        ++tags[name];
        if (!path.isEmpty() && path.last().startsWith(QLatin1String("ExtData ")))
            ++children[path.last()];
        if (path.contains(QStringLiteral("format bench.views.large")))
            ++items;
        QString place = name;
        for (const auto &attribute : attributes) {
            const bool names = name == QLatin1String("format") ? attribute.name == QLatin1String("target")
                                                               : attribute.name == QLatin1String("id");
            if (names)
                place += QLatin1Char(' ') + attribute.value;
        }
        path.append(place);
    }
    void endElement() override { path.removeLast(); }

    int all = 0;
    int items = 0;
    QHash<QString, int> tags;
    QHash<QString, int> children;
    QStringList path;
};

bool read(const QByteArray &text, CountingSink *sink)
{
    ExtensionFile::ReadError error;
    const bool parsed = ExtensionFile::read(text, *sink, &error);
    if (!parsed)
        qWarning("%s", qPrintable(error.toString()));
    return parsed;
}

} // namespace

/// What the benchmarks measure with and how they put their figures together.
class TestBenchFigures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plugins();
    void seeds();
    void formats();
    void product();
    void largeFile();
    void views_data();
    void views();
    void statistics_data();
    void statistics();
    void ratiosAreOfPairs();
    void report();
};

void TestBenchFigures::plugins()
{
    int elements = 0;
    int bytes = 0;
    constexpr int count = 50;
    for (int i = 0; i < count; ++i) {
        const QByteArray text = Products::plugin(7, i);
        CountingSink sink;
        QVERIFY(read(text, &sink));
        QCOMPARE(Products::pluginElements(7, i), sink.all);
        for (const char *tag : { "ExtPoint", "SubExtPoint", "Enum", "Data", "Bool", "Int", "File", "record", "format" })
            QVERIFY2(sink.tags.value(QLatin1String(tag)) > 0, tag);
        elements += sink.all;
        bytes += text.size();
    }
    QVERIFY2(qAbs(elements / count - 100) <= 3, qPrintable(QString::number(elements / count)));
    QVERIFY2(qAbs(bytes / count - 10'000) <= 500, qPrintable(QString::number(bytes / count)));
}

void TestBenchFigures::seeds()
{
    QCOMPARE(Products::plugin(7, 3), Products::plugin(7, 3));
    QVERIFY(Products::plugin(7, 3) != Products::plugin(8, 3));
    QVERIFY(Products::plugin(7, 3) != Products::plugin(7, 4));
    QCOMPARE(Products::large(7, 500), Products::large(7, 500));
    QVERIFY(Products::large(7, 500) != Products::large(8, 500));
}

void TestBenchFigures::formats()
{
    const auto targets = [](Products::Formats formats) {
        QSet<QByteArray> found;
        for (int i = 0; i < 100; ++i) {
            const QByteArray text = Products::plugin(7, i, formats);
            const int start = text.indexOf("target=\"") + 8;
            found.insert(text.mid(start, text.indexOf('"', start) - start));
        }
        return found.size();
    };
    const int mixed = targets(Products::Formats::MostlyOwn);
    QVERIFY2(mixed > 80 && mixed < 100, qPrintable(QString::number(mixed)));
    const int merged = targets(Products::Formats::Merged);
    QVERIFY2(merged > 1 && merged < 10, qPrintable(QString::number(merged)));
}

void TestBenchFigures::product()
{
    QTemporaryDir directory;
    const QString place = directory.filePath(QStringLiteral("new/product"));
    const QString opened = Products::write(place, 7, 3);
    QCOMPARE(opened, place + QStringLiteral("/bench.p0000/extension.xml"));
    const QStringList plugins = QDir(place).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(plugins.size(), 3);
    for (int i = 0; i < 3; ++i) {
        QFile file(place + QLatin1Char('/') + plugins.at(i) + QStringLiteral("/extension.xml"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), Products::plugin(7, i));
    }
    QCOMPARE(Products::write(opened, 7, 1), QString());
}

void TestBenchFigures::largeFile()
{
    // Wherever the number falls between two points or two sets of records.
    for (int elements = 40; elements < 500; ++elements) {
        CountingSink sink;
        QVERIFY(read(Products::large(7, elements), &sink));
        QCOMPARE(sink.all, elements);
        QVERIFY(sink.tags.value(QStringLiteral("ExtPoint")) > 0);
        QVERIFY(sink.tags.value(QStringLiteral("record")) > elements / 3);
    }
}

void TestBenchFigures::views_data()
{
    QTest::addColumn<int>("records");
    QTest::addColumn<int>("items");
    QTest::newRow("menus end with an entry") << 10 << 50;
    QTest::newRow("the last menu is full") << 10 << 201;
    QTest::newRow("the last menu is empty") << 10 << 202;
    QTest::newRow("many") << 200 << 500;
}

void TestBenchFigures::views()
{
    QFETCH(int, records);
    QFETCH(int, items);
    CountingSink sink;
    QVERIFY(read(Products::views(records, items), &sink));
    QCOMPARE(sink.items, items);
    QCOMPARE(sink.tags.value(QStringLiteral("record")), records);
    // And the two formats.
    QCOMPARE(sink.children.value(QStringLiteral("ExtData bench.views.records")), records + 2);
}

void TestBenchFigures::statistics_data()
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

void TestBenchFigures::statistics()
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

void TestBenchFigures::ratiosAreOfPairs()
{
    QCOMPARE(Statistics::medianRatio({ 10, 20, 90 }, { 10, 5, 30 }), 3.0);
    // A sample that failed in between.
    QVERIFY(std::isnan(Statistics::median({ 1, std::nan(""), 2 })));
    QVERIFY(std::isnan(Statistics::medianRatio({ 1, 2, 3 }, { 1, std::nan(""), 3 })));
    QVERIFY(std::isnan(Statistics::medianRatio({}, {})));
    QVERIFY(std::isnan(Statistics::medianRatio({ 1, 2 }, { 1 })));
}

void TestBenchFigures::report()
{
    Report report;
    report.add(QStringLiteral("save_that_file"), 0.6);
    report.add(QStringLiteral("scan_wall_baseline_a"), 2.01);
    QVERIFY(!report.hasFailures());
    report.add(QStringLiteral("gui_during_the_scan"), qQNaN());
    QVERIFY(report.hasFailures());
    report.addInformation(QStringLiteral("scan_wall"), QStringLiteral("scan"), QStringLiteral("ms"), 812.5);
    report.addFailure(QStringLiteral("memory_per_node_after_the_scan"), QStringLiteral("it crashed"));

    QStringList rows;
    const QJsonArray list = QJsonDocument::fromJson(report.json()).array();
    for (const QJsonValue &row : list) {
        QStringList cells;
        for (const char *key : { "name", "value", "unit", "must", "aim", "met" })
            cells.append(QString::fromUtf8(
                QJsonDocument(QJsonArray { row[QLatin1String(key)] }).toJson(QJsonDocument::Compact)));
        rows.append(cells.join(QLatin1Char(' ')).remove(QLatin1Char('[')).remove(QLatin1Char(']')));
    }
    QCOMPARE(rows,
        (QStringList { QStringLiteral("\"save_that_file\" 0.6 \"ratio\" 0.6 0.3 true"),
            QStringLiteral("\"scan_wall_baseline_a\" 2.01 \"ratio\" 2 1 false"),
            QStringLiteral("\"gui_during_the_scan\" null \"ms\" 50 16 false"),
            QStringLiteral("\"scan_wall\" 812.5 \"ms\" null null null"),
            QStringLiteral("\"memory_per_node_after_the_scan\" null \"bytes\" 900 650 false") }));
    QVERIFY(report.table().contains(QStringLiteral("it crashed")));
}

QTEST_GUILESS_MAIN(TestBenchFigures)
#include "tst_benchfigures.moc"

#include "modeltesting.h"

#include "extensionfile/limits.h"
#include "model/attributefields.h"
#include "model/patterns.h"

#include <QRegularExpression>
#include <QTest>

using ModelTesting::Product;
using ModelTesting::s;

namespace {

QString page()
{
    return QString::fromUtf8(Product::read(s(EXTPOINT_SOURCE_DIR "/docs/file-format.md")));
}

QString table(const QStringList &head, const QVector<QStringList> &rows)
{
    const auto line = [](const QStringList &cells) { return s("| ") + cells.join(s(" | ")) + s(" |\n"); };
    QString text = line(head) + s("|") + s("---|").repeated(head.size()) + s("\n");
    for (const QStringList &row : rows)
        text += line(row);
    return text;
}

QString quoted(const QString &text)
{
    return s("`") + text + s("`");
}

} // namespace

/// The page for authors of files says what the program does.
class TestFileFormat : public QObject
{
    Q_OBJECT

private slots:
    void examples();
    void tables_data();
    void tables();
};

void TestFileFormat::examples()
{
    const QRegularExpression example(
        s("<!-- example -->\n```xml\n(.*?)```"), QRegularExpression::DotMatchesEverythingOption);
    int count = 0;
    for (auto found = example.globalMatch(page()); found.hasNext(); ++count) {
        const QByteArray bytes = found.next().captured(1).toUtf8();
        const Product product;
        const QString path = product.add(s("own"), bytes);
        SourceDataManager manager;
        QVERIFY(manager.load(path));
        manager.startScan(path);
        QVERIFY(manager.save());
        QCOMPARE(Product::read(path), bytes);
        QVERIFY(manager.problems().all().isEmpty());
    }
    QCOMPARE(count, 2);
}

void TestFileFormat::tables_data()
{
    QTest::addColumn<QString>("made");
    const QMap<QString, QStringList> fields = AttributeFields::table();
    QVector<QStringList> types;
    for (const QString &type : AttributeFields::typeNames())
        types.append({ type, fields.value(fields.contains(type) ? type : type.toLower()).join(s(", ")) });
    QTest::newRow("attribute types") << table({ s("Type"), s("Attributes") }, types);

    QVector<QStringList> patterns { { s("\"id\" of a point"), quoted(Pattern::pointId()) },
        { s("\"key\" of a sub point or an attribute"), quoted(Pattern::key()) },
        { s("\"name\""), quoted(Pattern::name()) }, { s("\"description\""), quoted(Pattern::description()) },
        { s("\"id\" of a record"), quoted(Pattern::realized(s("id"), Pattern::recordIdLength)) },
        { s("\"id\" of an entry"), quoted(Pattern::realized(s("id"), Pattern::entryIdLength)) } };
    for (const char *key : { "text", "toolTip", "statusTip", "parent", "sceneName" })
        patterns.append({ s("\"%1\" of a record or an entry").arg(s(key)), quoted(Pattern::realized(s(key), 0)) });
    QTest::newRow("patterns") << table({ s("Text"), s("Pattern") }, patterns);

    const ExtensionFile::Limits limits;
    const QLocale locale(QLocale::English);
    const auto row = [&locale](const char *what, qint64 most) {
        return QStringList { s(what), locale.toString(most) };
    };
    QTest::newRow("limits") << table({ s("What"), s("At most") },
        { row("Bytes of the file", limits.maximumFileSize), row("Levels of elements", limits.maximumDepth),
            row("Elements", limits.maximumElements),
            row("Attributes of an element", limits.maximumAttributesPerElement),
            row("Attributes", limits.maximumAttributes),
            row("Characters of all attributes", limits.maximumAttributeText),
            row("Bytes of a document type's declarations", limits.maximumDeclarationSize),
            row("Elements of all neighbours together", limits.maximumScanElements) });
}

void TestFileFormat::tables()
{
    QFETCH(const QString, made);
    const QString marker = s("<!-- %1 -->\n\n").arg(s(QTest::currentDataTag()));
    QVERIFY2(page().contains(marker + made), qPrintable(made));
}

QTEST_MAIN(TestFileFormat)
#include "tst_fileformat.moc"

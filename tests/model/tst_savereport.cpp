#include "modeltesting.h"

#include "extensionfile/attributes.h"
#include "model/sourcedatamanager.h"

#include <QDomDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using ModelTesting::Product;

Q_DECLARE_METATYPE(SaveReport::Reason)

namespace {

using Kind = SaveReport::Kind;
using Reason = SaveReport::Reason;

/// What a value of the realization side is once it has been read.
QString asRead(QString value)
{
    value = value.trimmed();
    if (!value.contains(QLatin1String("tr('")) || !value.contains(QLatin1String("')")))
        return value;
    while (value.contains(QLatin1String("tr('")) || value.contains(QLatin1String("')")))
        value.remove(QLatin1String("tr('")).remove(QLatin1String("')"));
    return value;
}

/// The values of all records, by "id" and key, as they stand in the file.
QMap<QString, QString> valuesOf(const QByteArray &bytes)
{
    QDomDocument document;
    if (!document.setContent(bytes))
        qFatal("not well-formed: %s", bytes.constData());
    QMap<QString, QString> values;
    const QDomNodeList records = document.elementsByTagName(QStringLiteral("rec"));
    for (int i = 0; i < records.size(); ++i) {
        const QDomNamedNodeMap attributes = records.at(i).attributes();
        for (int j = 0; j < attributes.size(); ++j) {
            const QDomAttr attribute = attributes.item(j).toAttr();
            values.insert(
                records.at(i).toElement().attribute(QStringLiteral("id")) + QLatin1Char('/') + attribute.name(),
                attribute.value());
        }
    }
    return values;
}

QStringList remarksOf(const SaveReport &report, Kind kind)
{
    QStringList found;
    for (const SaveReport::Remark &remark : report.remarks()) {
        if (remark.kind == kind)
            found.append(remark.element.section(QLatin1Char('"'), 1, 1) + QLatin1Char('/') + remark.key);
    }
    found.sort();
    return found;
}

QByteArray randomData(QRandomGenerator &random)
{
    static const QByteArrayList values { "Open", "tr('Open')", "tr('Open ('all')')", "Open ('all')", "tr('", "')", "",
        "tr('')", " tr(' x ') ", "tr('a') b tr('c')", "  plain " };
    static const QByteArrayList points { "own.p", "sib.p", "sib.plain", "nobody.p" };
    QByteArray body;
    int number = 0;
    for (int i = 0; i < 4; ++i) {
        body += "<ExtData id=\"" + points.at(random.bounded(points.size())) + "\">";
        for (int j = random.bounded(4); j > 0; --j) {
            body += "<rec id=\"r" + QByteArray::number(++number) + '"';
            for (const char *key : { "text", "title", "tip" })
                if (random.bounded(2))
                    body += QByteArray(" ") + key + "=\"" + values.at(random.bounded(values.size())) + '"';
            body += "/>";
        }
        body += "</ExtData>";
    }
    return "<Plugin id=\"own\"><ExtPointSet><ExtPoint id=\"own.p\"><String key=\"title\" trans=\"true\"/></ExtPoint>"
           "</ExtPointSet><ExtDataSet>"
        + body + "</ExtDataSet></Plugin>";
}

} // namespace

/// What a save does beside writing what is shown, told before it does it.
class TestSaveReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksAreToldAsTheFilesDiffer();
    void marksInAValueAreDoubtful();
    void partsThatGo_data();
    void partsThatGo();
    void unreadSiblings_data();
    void unreadSiblings();
};

/// The report before a save says exactly how the file afterwards differs from the one before, and another one has
/// nothing to say; a recovery copy depends on no sibling.
void TestSaveReport::marksAreToldAsTheFilesDiffer()
{
    QRandomGenerator random(1);
    int remarks = 0;
    for (int round = 0; round < 150; ++round) {
        const Product product;
        const QByteArray before = randomData(random);
        const QString path = product.add(QStringLiteral("own"), before);
        product.add(QStringLiteral("sib"),
            "<Plugin id=\"sib\"><ExtPointSet><ExtPoint id=\"sib.p\"><String key=\"text\" trans=\"true\"/></ExtPoint>"
            "<ExtPoint id=\"sib.plain\"><String key=\"tip\"/></ExtPoint></ExtPointSet></Plugin>");
        SourceDataManager manager;
        QVERIFY(manager.load(path));
        const QByteArray early = manager.recoverable();
        manager.startScan(path);
        manager.completeScan();
        QStringList lostFirst;
        QStringList changed; // by the first save, so that the file does not say what is shown
        // What one node teaches after another was written changes the second save.
        for (const bool isFirst : { true, false }) {
            const SaveReport report = manager.saveReport();
            const QMap<QString, QString> old = valuesOf(Product::read(path));
            QVERIFY(manager.save());

            QStringList lost;
            QStringList gained;
            QStringList otherwise;
            const QMap<QString, QString> now = valuesOf(Product::read(path));
            for (auto it = old.cbegin(); it != old.cend(); ++it) {
                const QString value = asRead(it.value());
                const bool wasMarked = value != it.value().trimmed();
                const QString written = now.value(it.key());
                const bool isMarked = written == QLatin1String("tr('") + value + QLatin1String("')");
                if (value.isEmpty() || changed.contains(it.key()))
                    continue;
                if (wasMarked && !isMarked)
                    lost.append(it.key());
                if (!wasMarked && isMarked)
                    gained.append(it.key());
                if (asRead(written) != value)
                    otherwise.append(it.key());
            }
            const auto told = [&](Kind kind) {
                QStringList keys = remarksOf(report, kind);
                for (const QString &key : qAsConst(changed))
                    keys.removeAll(key);
                return keys;
            };
            for (QStringList *keys : { &lost, &gained, &otherwise })
                keys->sort();
            QCOMPARE(told(Kind::MarksLost), lost);
            QCOMPARE(told(Kind::MarksGained), gained);
            QCOMPARE(told(Kind::ReadOtherwise), otherwise);
            QCOMPARE(report.count(Kind::MarksLost, Reason::Unread), 0);
            remarks += lost.size() + gained.size() + otherwise.size();
            changed = otherwise;
            if (isFirst)
                lostFirst = lost;
        }

        SourceDataManager recovered;
        QVERIFY(recovered.load(path, early));
        recovered.startScan(path);
        recovered.completeScan();
        QCOMPARE(remarksOf(recovered.saveReport(), Kind::MarksLost), lostFirst);
    }
    QVERIFY(remarks > 250);
}

/// The expression by which a sheet marks what is being typed says no, exactly where the file would give back another
/// text: tried with every short text of the letters that matter.
void TestSaveReport::marksInAValueAreDoubtful()
{
    const QString letters = QStringLiteral("tr(')x");
    for (const bool isMarked : { false, true }) {
        const QRegularExpression expression(
            ExtensionFile::brokenByTranslationMarks(isMarked), QRegularExpression::DotMatchesEverythingOption);
        QStringList texts { QString() };
        for (int i = 0; i < texts.size() && texts.at(i).size() < 7; ++i)
            for (const QChar letter : letters)
                texts.append(texts.at(i) + letter);
        for (const QString &text : qAsConst(texts)) {
            if (text.isEmpty())
                continue;
            const QString written = isMarked ? ExtensionFile::withTranslationMarks(text) : text;
            const bool comesBack = ExtensionFile::withoutTranslationMarks(written) == text;
            QVERIFY2(expression.match(text).hasMatch() == !comesBack, qPrintable(text));
        }
    }
}

void TestSaveReport::partsThatGo_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("gone");
    QTest::addColumn<int>("sets");
    QTest::addColumn<bool>("everything");
    const auto row = [](const char *name, const char *file, const QStringList &gone, int sets, bool everything) {
        QTest::newRow(name) << QByteArray(file) << gone << sets << everything;
    };
    const auto s = [](const char *text) { return QString::fromUtf8(text); };
    row("nothing", "<Plugin id=\"a\"><ExtPointSet/></Plugin>", {}, 0, false);
    row("comments, text, instructions",
        "<!--one--><Plugin id=\"a\"><?two x?><ExtPointSet>three<!--four--></ExtPointSet></Plugin>",
        { s("<!-- one -->"), s("<?two?>"), s("\"three\""), s("<!-- four -->") }, 0, false);
    row("a document type", "<!DOCTYPE Plugin><Plugin id=\"a\"><!--b--><ExtPointSet/></Plugin>",
        { s("<!DOCTYPE>"), s("<!-- b -->") }, 0, false);
    row("other elements, with what is in them", "<Plugin id=\"a\"><ExtPointSet/><Other><!--x-->y<z/></Other></Plugin>",
        { s("<Other>") }, 0, false);
    row("a set in another letter case", "<Plugin id=\"a\"><extpointset/><ExtDataSet/></Plugin>", { s("<extpointset>") },
        1, false);
    row("a set with a prefix, and nothing else", "<Plugin id=\"a\" xmlns:p=\"u\"><p:ExtDataSet/></Plugin>",
        { s("<p:ExtDataSet>") }, 1, true);
    row("a set too deep", "<Plugin id=\"a\"><ExtDataSet/><in><ExtPointSet/></in></Plugin>",
        { s("<in>"), s("<ExtPointSet>") }, 1, false);
    row("a root alone", "<Plugin id=\"a\"/>", {}, 0, true);
    row("UTF-8 that is called something else",
        "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><Plugin id=\"\xc3\xa9\"><ExtPointSet/></Plugin>",
        { s("utf-8") }, 0, false);
    row("Latin-1 that is", "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><Plugin id=\"\xe9\"><ExtPointSet/></Plugin>",
        {}, 0, false);
    row("attributes that the format has no place for",
        "<Plugin id=\"a\"><ExtDataSet><ExtData id=\"p\"><Meta key=\"k\" type=\"\"/></ExtData></ExtDataSet></Plugin>",
        { s("key") }, 0, false);
}

void TestSaveReport::partsThatGo()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, gone);
    QFETCH(int, sets);
    QFETCH(bool, everything);
    const Product product;
    const QString path = product.add(QStringLiteral("own"), file);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    const SaveReport report = manager.saveReport();
    QStringList told;
    for (const SaveReport::Remark &remark : report.remarks()) {
        if (remark.kind == Kind::Dropped || remark.kind == Kind::SetDropped)
            told.append(remark.detail);
        if (remark.kind == Kind::AttributeDropped && !remark.value.isEmpty())
            told.append(remark.key);
        if (remark.kind == Kind::LooksLikeUtf8)
            told.append(QStringLiteral("utf-8"));
    }
    QCOMPARE(told, gone);
    QCOMPARE(report.count(Kind::SetDropped), sets);
    QCOMPARE(report.count(Kind::NothingLeft) > 0, everything);
    QVERIFY(manager.save());
    QCOMPARE(manager.saveReport().count(Kind::Dropped) + manager.saveReport().count(Kind::SetDropped), 0);
}

void TestSaveReport::unreadSiblings_data()
{
    QTest::addColumn<QByteArray>("sibling");
    QTest::addColumn<QByteArray>("point");
    QTest::addColumn<Reason>("reason");
    QTest::newRow("read, not translatable")
        << QByteArray("<Plugin id=\"s\"><ExtPointSet><ExtPoint id=\"p\"/></ExtPointSet></Plugin>") << QByteArray("p")
        << Reason::NotDeclared;
    QTest::newRow("read, without the point") << QByteArray("<Plugin id=\"s\"/>") << QByteArray("p") << Reason::Unknown;
    QTest::newRow("broken") << QByteArray("<Plugin id=\"s\"><ExtPoin") << QByteArray("p") << Reason::Unread;
    QTest::newRow("broken, though the point is known")
        << QByteArray("<Plugin id=\"s\"><ExtPoin") << QByteArray("own.p") << Reason::Unread;
}

void TestSaveReport::unreadSiblings()
{
    QFETCH(QByteArray, sibling);
    QFETCH(QByteArray, point);
    QFETCH(Reason, reason);
    const Product product;
    const QString path = product.add(QStringLiteral("own"),
        "<Plugin id=\"own\"><ExtPointSet><ExtPoint id=\"own.p\"/></ExtPointSet><ExtDataSet><ExtData id=\"" + point
            + "\"><rec id=\"r\" text=\"tr('Open')\"/></ExtData></ExtDataSet></Plugin>");
    const QString other = product.add(QStringLiteral("sib"), sibling);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    manager.startScan(path);
    manager.completeScan();
    const SaveReport report = manager.saveReport();
    QCOMPARE(report.count(Kind::MarksLost), 1);
    QCOMPARE(report.count(Kind::MarksLost, reason), 1);
    QCOMPARE(report.unread(), reason == Reason::Unread ? QStringList { other } : QStringList());
}

QTEST_GUILESS_MAIN(TestSaveReport)
#include "tst_savereport.moc"

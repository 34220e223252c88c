#include "modeltesting.h"

#include "extensionfile/attributes.h"
#include "model/sourcedatamanager.h"

#include <QDomDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using ModelTesting::Product;
using ModelTesting::s;

namespace {

using Kind = SaveReport::Kind;
using Reason = SaveReport::Reason;

/// What a value of the realization side is once it has been read.
QString asRead(QString value)
{
    value = value.trimmed();
    static const QRegularExpression whole(s("^tr\\('([^']*)'\\)\\z"));
    if (const auto marked = whole.match(value); marked.hasMatch())
        return marked.captured(1);
    if (!value.contains(s("tr('")) || !value.contains(s("')")))
        return value;
    while (value.contains(s("tr('")) || value.contains(s("')")))
        value.remove(s("tr('")).remove(s("')"));
    return value;
}

/// The values of all records, by "id" and key, as they stand in the file.
QMap<QString, QString> valuesOf(const QByteArray &bytes)
{
    QDomDocument document;
    if (!document.setContent(bytes))
        qFatal("not well-formed: %s", bytes.constData());
    QMap<QString, QString> values;
    const QDomNodeList records = document.elementsByTagName(s("rec"));
    for (int i = 0; i < records.size(); ++i) {
        const QDomElement record = records.at(i).toElement();
        for (const char *key : { "text", "title", "tip" })
            if (record.hasAttribute(s(key)))
                values.insert(record.attribute(s("id")) + QLatin1Char('/') + s(key), record.attribute(s(key)));
    }
    return values;
}

/// What a report says of the marks, but not of these values.
QStringList told(const SaveReport &report, const QStringList &except)
{
    const QMap<Kind, QString> names { { Kind::MarksLost, s("lost ") }, { Kind::MarksGained, s("gained ") },
        { Kind::ReadOtherwise, s("otherwise ") } };
    QStringList found;
    for (const SaveReport::Remark &remark : report.remarks()) {
        const QString value = remark.element.section(QLatin1Char('"'), 1, 1) + QLatin1Char('/') + remark.key;
        if (names.contains(remark.kind) && !except.contains(value))
            found.append(names.value(remark.kind) + value);
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
    void marksOfEveryShortText();
    void partsThatGo_data();
    void partsThatGo();
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
        const QString path = product.add(s("own"), randomData(random));
        product.add(s("sib"),
            "<Plugin><ExtPointSet><ExtPoint id='sib.p'><String key='text' trans='true'/></ExtPoint>"
            "<ExtPoint id='sib.plain'><String key='tip'/></ExtPoint></ExtPointSet></Plugin>");
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
            const QMap<QString, QString> now = valuesOf(Product::read(path));
            QStringList expected;
            QStringList otherwise;
            for (auto it = old.cbegin(); it != old.cend(); ++it) {
                const QString value = asRead(it.value());
                const bool wasMarked = value != it.value().trimmed();
                const bool isMarked = now.value(it.key()) == s("tr('%1')").arg(value);
                if (value.isEmpty() || changed.contains(it.key()))
                    continue;
                if (wasMarked != isMarked)
                    expected.append((wasMarked ? s("lost ") : s("gained ")) + it.key());
                if (asRead(now.value(it.key())) != value)
                    otherwise.append(it.key());
            }
            if (isFirst)
                lostFirst = expected.filter(s("lost "));
            for (const QString &key : qAsConst(otherwise))
                expected.append(s("otherwise ") + key);
            expected.sort();
            QCOMPARE(told(report, changed), expected);
            QCOMPARE(report.count(Kind::MarksLost, Reason::Unread), 0);
            remarks += expected.size();
            changed = otherwise;
        }

        SourceDataManager recovered;
        QVERIFY(recovered.load(path, early));
        recovered.startScan(path);
        recovered.completeScan();
        QCOMPARE(told(recovered.saveReport(), {}).filter(s("lost ")), lostFirst);
    }
    QVERIFY(remarks > 250);
}

/// For every short text of the letters that matter: what a reading makes of it; and the expression by which a sheet
/// marks what is being typed says no, exactly where the file would give back another text.
void TestSaveReport::marksOfEveryShortText()
{
    const QString letters = s("tr(')x");
    QStringList texts { QString() };
    for (int i = 0; i < texts.size() && texts.at(i).size() < 7; ++i)
        for (const QChar letter : letters)
            texts.append(texts.at(i) + letter);
    for (const bool isMarked : { false, true }) {
        const QRegularExpression expression(
            ExtensionFile::brokenByTranslationMarks(isMarked), QRegularExpression::DotMatchesEverythingOption);
        for (const QString &text : qAsConst(texts)) {
            const QString written = isMarked ? ExtensionFile::withTranslationMarks(text) : text;
            const QString read = ExtensionFile::withoutTranslationMarks(written);
            if (read != asRead(written) || (!text.isEmpty() && expression.match(text).hasMatch() != (read != text)))
                QFAIL(qPrintable(text));
        }
    }
}

void TestSaveReport::partsThatGo_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("gone");
    const auto row = [](const char *name, const char *file, const char *gone) {
        QTest::newRow(name) << QByteArray(file) << s(gone);
    };
    row("nothing", "<Plugin><ExtPointSet/></Plugin>", "");
    row("comments, text, instructions",
        "<!--one--><Plugin><?two x?><ExtPointSet>three<!--four--></ExtPointSet></Plugin>",
        "<!-- one -->, <?two?>, \"three\", <!-- four -->");
    row("a document type", "<!DOCTYPE Plugin><Plugin><!--b--><ExtPointSet/></Plugin>", "<!DOCTYPE>, <!-- b -->");
    row("other elements, with what is in them", "<Plugin><ExtPointSet/><Other><!--x-->y<z/></Other></Plugin>",
        "<Other>");
    row("a set in another letter case", "<Plugin><extpointset/><ExtDataSet/></Plugin>", "set <extpointset>");
    row("a set with a prefix, and nothing else", "<Plugin xmlns:p='u'><p:ExtDataSet/></Plugin>",
        "set <p:ExtDataSet>, all");
    row("a set too deep", "<Plugin><ExtDataSet/><in><ExtPointSet/></in></Plugin>", "<in>, set <ExtPointSet>");
    row("a root alone", "<Plugin/>", "all");
    row("UTF-8 that is called something else",
        "<?xml version='1.0' encoding='iso-8859-1'?><Plugin id='\xc3\xa9'><ExtPointSet/></Plugin>", "utf-8");
    row("Latin-1 that is", "<?xml version='1.0' encoding='iso-8859-1'?><Plugin id='\xe9'><ExtPointSet/></Plugin>", "");
    row("attributes that the format has no place for",
        "<Plugin><ExtDataSet><ExtData id='p'><Meta key='k' type=''/></ExtData></ExtDataSet></Plugin>", "key");
}

void TestSaveReport::partsThatGo()
{
    QFETCH(QByteArray, file);
    const Product product;
    SourceDataManager manager;
    QVERIFY(manager.load(product.add(s("own"), file)));
    const SaveReport report = manager.saveReport();
    QStringList told;
    for (const SaveReport::Remark &remark : report.remarks()) {
        if (remark.kind == Kind::Dropped || remark.kind == Kind::SetDropped)
            told.append((remark.kind == Kind::Dropped ? QString() : s("set ")) + remark.detail);
        if (remark.kind == Kind::AttributeDropped && !remark.value.isEmpty())
            told.append(remark.key);
        if (remark.kind == Kind::LooksLikeUtf8)
            told.append(s("utf-8"));
    }
    if (report.count(Kind::NothingLeft) > 0)
        told.append(s("all"));
    QTEST(told.join(s(", ")), "gone");
    QVERIFY(manager.save());
    QCOMPARE(manager.saveReport().count(Kind::Dropped) + manager.saveReport().count(Kind::SetDropped), 0);
}

/// Why a mark goes: the point is not translatable, or not known, or a sibling could not be read, which may declare it.
void TestSaveReport::unreadSiblings()
{
    const auto check = [](const QByteArray &sibling, const QByteArray &point, Reason reason) {
        const Product product;
        const QString path = product.add(s("own"),
            "<Plugin><ExtPointSet><ExtPoint id='own.p'/></ExtPointSet><ExtDataSet><ExtData id='" + point
                + "'><rec id='r' text=\"tr('Open')\"/></ExtData></ExtDataSet></Plugin>");
        const QString other = product.add(s("sib"), sibling);
        SourceDataManager manager;
        QVERIFY(manager.load(path));
        manager.startScan(path);
        manager.completeScan();
        const SaveReport report = manager.saveReport();
        QCOMPARE(report.count(Kind::MarksLost), 1);
        QCOMPARE(report.count(Kind::MarksLost, reason), 1);
        QCOMPARE(report.unread(), reason == Reason::Unread ? QStringList { other } : QStringList());
    };
    check("<Plugin><ExtPointSet><ExtPoint id='p'/></ExtPointSet></Plugin>", "p", Reason::NotDeclared);
    check("<Plugin/>", "p", Reason::Unknown);
    check("<Plugin><ExtPoin", "p", Reason::Unread);
    check("<Plugin><ExtPoin", "own.p", Reason::Unread);
}

QTEST_GUILESS_MAIN(TestSaveReport)
#include "tst_savereport.moc"

#include "utils/filename.h"
#include "utils/mimedatabase.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using Utils::FileName;
using Utils::MimeDatabase;
using Utils::MimeType;

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QString declare(const QByteArray &types)
{
    QByteArray document = "<?xml version='1.0'?>"
                          "<mime-info xmlns='http://www.freedesktop.org/standards/shared-mime-info'>"
        + types + "</mime-info>";
    QBuffer buffer(&document);
    return buffer.open(QIODevice::ReadOnly) ? MimeDatabase::addMimeTypes(&buffer) : buffer.errorString();
}

} // namespace

/// The register of types is process-wide and only grows.
class TestUtils final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void fileName_data();
    void fileName();
    void inherits_data();
    void inherits();
    void typeOfFile_data();
    void typeOfFile();
    void refused_data();
    void refused();
    void declaredAgain();
};

void TestUtils::initTestCase()
{
    QCOMPARE(declare(R"(
        <mime-type type="application/x-ext">
            <sub-class-of type="text/xml"/>
            <comment xml:lang="de">Qt-Ressource</comment>
            <comment>Qt Resource file</comment>
            <comment xml:lang="fr">Ressource Qt</comment>
            <icon name="passed over"><glob pattern="*.no"/></icon>
            <glob pattern="extension.xml"/>
        </mime-type>
        <mime-type type="x-t/child"><sub-class-of type="application/x-ext"/></mime-type>
        <mime-type type="x-t/round-1"><sub-class-of type="x-t/round-2"/></mime-type>
        <mime-type type="x-t/round-2"><sub-class-of type="x-t/round-1"/><sub-class-of type="image/png"/></mime-type>
        <mime-type type="x-t/a-longer"><glob pattern="*.old.pic"/></mime-type>
        <mime-type type="x-t/b-whole"><glob pattern="a.old.pic"/></mime-type>
        <mime-type type="x-t/c-short"><glob pattern="*.pic"/></mime-type>
        <mime-type type="x-t/set"><glob pattern="page[0-9].?"/></mime-type>)"),
        QString());
    const MimeType type = MimeDatabase().mimeTypeForName(s("application/x-ext"));
    QCOMPARE(type.comment(), s("Qt Resource file"));
    QCOMPARE(type.globPatterns(), QStringList { s("extension.xml") });
}

void TestUtils::fileName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("cleaned");
    const auto row = [](const char *path, const char *cleaned) { QTest::newRow(path) << s(path) << s(cleaned); };
    row("/a//b/./c/../d/", "/a/b/d");
    row("/..", "/");
    row("/../../a", "/a");
    row("a/..", ".");
    row("../a", "../a");
    row("/größe/ä\\ö", "/größe/ä\\ö");
}

void TestUtils::fileName()
{
    QFETCH(QString, path);
    QTEST(FileName::fromString(path).toString(), "cleaned");
}

void TestUtils::inherits_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ancestor");
    QTest::addColumn<bool>("inherits");
    const auto row = [](const char *name, const char *ancestor, bool inherits) {
        QTest::addRow("%s <- %s", ancestor, name) << s(name) << s(ancestor) << inherits;
    };
    row("application/x-ext", "application/x-ext", true);
    row("application/x-ext", "text/xml", true);
    row("application/x-ext", "application/xml", true);
    row("application/x-ext", "text/plain", true);
    row("application/x-ext", "image/png", false);
    row("x-t/child", "application/xml", true);
    row("x-t/round-1", "image/png", true);
    row("x-t/round-1", "text/xml", false);
    row("image/svg+xml", "application/xml", true);
    row("x-t/nothing", "", false);
}

void TestUtils::inherits()
{
    QFETCH(QString, name);
    QFETCH(QString, ancestor);
    QTEST(MimeDatabase().mimeTypeForName(name).inherits(ancestor), "inherits");
}

void TestUtils::typeOfFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("type");
    const auto row = [](const char *file, const char *type) { QTest::newRow(file) << s(file) << s(type); };
    row("/some/where/extension.xml", "application/x-ext");
    row("Extension.XML", "application/x-ext");
    row("my-extension.xml", "application/xml");
    row("x.pic", "x-t/c-short");
    row("x.old.pic", "x-t/a-longer");
    row("a.old.pic", "x-t/b-whole");
    row("page7.x", "x-t/set");
    row("pagex.x", "application/octet-stream");
    row("/", "inode/directory");
}

void TestUtils::typeOfFile()
{
    QFETCH(QString, file);
    QTEST(MimeDatabase().mimeTypeForFile(file).name(), "type");
}

void TestUtils::refused_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char *name, const char *document, const char *warning) {
        QTest::newRow(name) << QByteArray(document) << s(warning);
    };
    row("empty", "", ":1:1: .+");
    row("another root", "<types/>", ":1:8: the root element is not \"mime-info\"");
    row("another namespace", "<mime-info xmlns='urn:x'/>", ":1:26: the root element is not .+");
    row("no name", "<mime-info>\n<mime-type/></mime-info>", ":2:12: \"mime-type\" has no \"type\"");
    row("no pattern", "<mime-info><mime-type type='x-t/no'><glob/></mime-type></mime-info>", ":1:43: \"glob\" has .+");
    row("a second root", "<mime-info><mime-type type='x-t/no'/></mime-info><more/>", ":1:[0-9]+: .+");
    row("a line break in the reason", "<?xml version='1.0' encoding='a\nb'?><mime-info/>", ":[0-9]+:[0-9]+: [^\n]+");
    row("no such file", nullptr, ":1:1: .+");
}

void TestUtils::refused()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, warning);
    QTemporaryDir directory;
    const QString path = directory.filePath(s("types.xml"));
    QFile file(path);
    if (!document.isNull())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(document) == document.size());
    file.close();
    QTest::ignoreMessage(QtWarningMsg,
        QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(path) + warning + QLatin1Char('$')));
    MimeDatabase::addMimeTypes(path);
    QVERIFY(!MimeDatabase().mimeTypeForName(s("x-t/no")).isValid());
}

void TestUtils::declaredAgain()
{
    QCOMPARE(declare("<mime-type type='x-t/twice'><glob pattern='*.tw1'/></mime-type>"), QString());
    QCOMPARE(declare("<mime-type type='x-t/twice'><glob pattern='*.tw2'/></mime-type>"), QString());
    QCOMPARE(MimeDatabase().mimeTypeForFile(s("a.tw2")).name(), s("x-t/twice"));
    QVERIFY(MimeDatabase().mimeTypeForFile(s("a.tw1")).name() != s("x-t/twice"));
}

QTEST_GUILESS_MAIN(TestUtils)
#include "tst_utils.moc"

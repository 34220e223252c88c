#include "utils/filename.h"
#include "utils/mimedatabase.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <utility>

using Utils::FileName;
using Utils::MimeDatabase;
using Utils::MimeType;

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

using Pair = std::pair<const char *, const char *>;

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
    void fileName();
    void inherits();
    void typeOfFile();
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

void TestUtils::fileName()
{
    const QVector<Pair> cases { { "/a//b/./c/../d/", "/a/b/d" }, { "/..", "/" }, { "/../../a", "/a" }, { "a/..", "." },
        { "../a", "../a" }, { "/größe/ä\\ö", "/größe/ä\\ö" } };
    for (const auto &[path, cleaned] : cases)
        QCOMPARE(FileName::fromString(s(path)).toString(), s(cleaned));
}

void TestUtils::inherits()
{
    const auto does = [](const char *name, const char *ancestor) {
        return MimeDatabase().mimeTypeForName(s(name)).inherits(s(ancestor));
    };
    for (const char *ancestor : { "application/x-ext", "text/xml", "application/xml", "text/plain" })
        QVERIFY2(does("application/x-ext", ancestor), ancestor);
    QVERIFY(!does("application/x-ext", "image/png"));
    QVERIFY(does("x-t/child", "application/xml"));
    QVERIFY(does("x-t/round-1", "image/png"));
    QVERIFY(!does("x-t/round-1", "text/xml"));
    QVERIFY(does("image/svg+xml", "application/xml"));
    QVERIFY(!does("x-t/nothing", ""));
}

void TestUtils::typeOfFile()
{
    const QVector<Pair> cases { { "/some/where/extension.xml", "application/x-ext" },
        { "Extension.XML", "application/x-ext" }, { "my-extension.xml", "application/xml" }, { "x.pic", "x-t/c-short" },
        { "x.old.pic", "x-t/a-longer" }, { "a.old.pic", "x-t/b-whole" }, { "page7.x", "x-t/set" },
        { "pagex.x", "application/octet-stream" }, { "/", "inode/directory" } };
    for (const auto &[file, type] : cases)
        QCOMPARE(MimeDatabase().mimeTypeForFile(s(file)).name(), s(type));
}

void TestUtils::refused()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(s("types.xml"));
    // The last is a line break in the parser's own reason.
    for (const auto &[document, warning] : QVector<Pair> { { nullptr, ":1:1: .+" }, { "", ":1:1: .+" },
             { "<types/>", ":1:8: the root element is not \"mime-info\"" },
             { "<mime-info xmlns='urn:x'/>", ":1:26: the root element is not .+" },
             { "<mime-info>\n<mime-type/></mime-info>", ":2:12: \"mime-type\" has no \"type\"" },
             { "<mime-info><mime-type type='x-t/no'><glob/></mime-type></mime-info>", ":1:43: \"glob\" has .+" },
             { "<mime-info><mime-type type='x-t/no'/></mime-info><more/>", ":1:[0-9]+: .+" },
             { "<?xml version='1.0' encoding='a\nb'?><mime-info/>", ":[0-9]+:[0-9]+: [^\n]+" } }) {
        QFile file(path);
        QVERIFY(!document || (file.open(QIODevice::WriteOnly) && file.write(document) == qint64(qstrlen(document))));
        file.close();
        QTest::ignoreMessage(QtWarningMsg,
            QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(path) + s(warning) + QLatin1Char('$')));
        MimeDatabase::addMimeTypes(path);
        QVERIFY2(!MimeDatabase().mimeTypeForName(s("x-t/no")).isValid(), document);
    }
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

#include "utils/mimedatabase.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

#include <sys/stat.h>

using Utils::MimeDatabase;
using Utils::MimeType;

/// The register is process-wide and only grows, so every case declares types of its own names.
class TestMimeDatabase final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void declaredType();
    void systemTypes();
    void invalidType();
    void inherits_data();
    void inherits();
    void names_data();
    void names();
    void contents_data();
    void contents();
    void magic_data();
    void magic();
    void malformed_data();
    void malformed();
    void limits();
    void warnings();
    void filesOnDisk();
    void declaredTwice();
    void declaredByManyThreads();

private:
    MimeDatabase m_database;
};

namespace {

bool declare(const QByteArray &types, QString *error = nullptr)
{
    QByteArray document = "<?xml version='1.0'?>"
                          "<mime-info xmlns='http://www.freedesktop.org/standards/shared-mime-info'>"
        + types + "</mime-info>";
    QBuffer buffer(&document);
    return buffer.open(QIODevice::ReadOnly) && MimeDatabase::addMimeTypes(&buffer, error);
}

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

const QByteArray extensionType = R"(
    <mime-type type="application/vnd.qt.xml.extpoint">
        <sub-class-of type="text/xml"/>
        <comment xml:lang="de">Qt-Ressource</comment>
        <comment>Qt Resource file</comment>
        <comment xml:lang="fr">Ressource Qt</comment>
        <icon name="ignored"/>
        <alias type="text/x-extpoint"/>
        <glob pattern="extension.xml"/>
    </mime-type>)";

} // namespace

void TestMimeDatabase::initTestCase()
{
    QVERIFY(!m_database.mimeTypeForName(latin1("application/vnd.qt.xml.extpoint")).isValid());
    QString error;
    QVERIFY2(declare(extensionType, &error), qPrintable(error));
    QVERIFY2(declare(R"(
        <mime-type type="x-t/glob-a-low"><glob pattern="*.pic" weight="40"/></mime-type>
        <mime-type type="x-t/glob-high"><glob pattern="*.pic" weight="60"/></mime-type>
        <mime-type type="x-t/glob-longer"><glob pattern="*.old.pic" weight="60"/></mime-type>
        <mime-type type="x-t/glob-literal"><glob pattern="readme.pic" weight="10"/></mime-type>
        <mime-type type="x-t/glob-lower"><glob pattern="*.lc"/></mime-type>
        <mime-type type="x-t/glob-z-cased"><glob pattern="*.LC" case-sensitive="true"/></mime-type>
        <mime-type type="x-t/glob-set"><glob pattern="page[0-9].?"/></mime-type>
        <mime-type type="x-t/system-name"><glob pattern="*.png" case-sensitive="true"/></mime-type>)",
                 &error),
        qPrintable(error));
    QVERIFY2(declare(R"(
        <mime-type type="x-t/tie-a"><glob pattern="*.tie"/>
            <magic priority="40"><match type="string" value="AAAA" offset="0"/></magic></mime-type>
        <mime-type type="x-t/tie-b"><glob pattern="*.tie"/>
            <magic priority="60"><match type="string" value="AAAAB" offset="0"/></magic>
            <magic priority="10"><match type="string" value="AAAA" offset="0"/></magic></mime-type>
        <mime-type type="x-t/tie-c"><glob pattern="*.tie"/><root-XML namespaceURI="urn:c" localName="c"/></mime-type>
        <mime-type type="x-t/tie-sub"><sub-class-of type="x-t/tie-b"/>
            <magic><match type="string" value="SUB" offset="0"/></magic></mime-type>
        <mime-type type="x-t/bytes"><magic><match type="string" value="BYTES!" offset="0:8"/></magic></mime-type>
        <mime-type type="x-t/bytes-special"><sub-class-of type="x-t/bytes"/>
            <magic><match type="string" value="BYTES!!" offset="0"/></magic></mime-type>
        <mime-type type="x-t/far"><magic><match type="string" value="FAR" offset="65534:65600"/></magic></mime-type>
        <mime-type type="x-t/any-root"><sub-class-of type="text/xml"/>
            <root-XML namespaceURI="urn:any" localName=""/></mime-type>
        <mime-type type="x-t/no-namespace"><sub-class-of type="text/xml"/>
            <root-XML namespaceURI="" localName="plain-root"/></mime-type>
        <mime-type type="x-t/xml-magic"><magic><match type="string" value="&lt;c" offset="0"/></magic></mime-type>)",
                 &error),
        qPrintable(error));
}

void TestMimeDatabase::declaredType()
{
    const MimeType type = m_database.mimeTypeForName(latin1("application/vnd.qt.xml.extpoint"));
    QVERIFY(type.isValid());
    QCOMPARE(type.name(), latin1("application/vnd.qt.xml.extpoint"));
    QCOMPARE(type.comment(), latin1("Qt Resource file"));
    QCOMPARE(type.parentMimeTypes(), QStringList { latin1("text/xml") });
    QCOMPARE(type.globPatterns(), QStringList { latin1("extension.xml") });
    QCOMPARE(type.aliases(), QStringList { latin1("text/x-extpoint") });
    QVERIFY(type.matchesName(latin1("Application/vnd.Qt.xml.extpoint")));
    QVERIFY(type.matchesName(latin1("text/x-extpoint")));
    QVERIFY(!type.matchesName(latin1("text/xml")));
    QCOMPARE(m_database.mimeTypeForName(latin1("text/x-extpoint")), type);

    QVERIFY(declare("<mime-type type='x-t/translated'><comment xml:lang='de'>Nur so</comment></mime-type>"));
    QCOMPARE(m_database.mimeTypeForName(latin1("x-t/translated")).comment(), latin1("Nur so"));
}

void TestMimeDatabase::systemTypes()
{
    const MimeType png = m_database.mimeTypeForName(latin1("image/png"));
    QVERIFY(png.isValid());
    QVERIFY(png.globPatterns().contains(latin1("*.png")));
    QVERIFY(!m_database.mimeTypeForName(latin1("x-t/nothing")).isValid());
}

void TestMimeDatabase::invalidType()
{
    const MimeType none;
    QVERIFY(!none.isValid());
    QVERIFY(!none.inherits(QString()));
    QVERIFY(!none.matchesName(QString()));
    QCOMPARE(none.globPatterns(), QStringList());
}

void TestMimeDatabase::inherits_data()
{
    QVERIFY(declare(R"(
        <mime-type type="x-t/round-1"><sub-class-of type="x-t/round-2"/></mime-type>
        <mime-type type="x-t/round-2"><sub-class-of type="x-t/round-1"/><sub-class-of type="x-t/beside"/></mime-type>
        <mime-type type="x-t/beside"/>
        <mime-type type="text/x-t-orphan"/>
        <mime-type type="x-t/grandchild"><sub-class-of type="text/x-extpoint"/></mime-type>)"));
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ancestor");
    QTest::addColumn<bool>("inherits");
    const auto row = [](const char *name, const char *ancestor, bool inherits) {
        QTest::addRow("%s <- %s", ancestor, name) << latin1(name) << latin1(ancestor) << inherits;
    };
    row("application/vnd.qt.xml.extpoint", "application/vnd.qt.xml.extpoint", true);
    row("application/vnd.qt.xml.extpoint", "text/x-extpoint", true);
    row("application/vnd.qt.xml.extpoint", "text/xml", true);
    row("application/vnd.qt.xml.extpoint", "application/xml", true);
    row("application/vnd.qt.xml.extpoint", "text/plain", true);
    row("application/vnd.qt.xml.extpoint", "application/octet-stream", true);
    row("application/vnd.qt.xml.extpoint", "image/png", false);
    row("application/xml", "application/vnd.qt.xml.extpoint", false);
    row("x-t/grandchild", "application/vnd.qt.xml.extpoint", true);
    row("x-t/grandchild", "text/plain", true);
    row("x-t/round-1", "x-t/beside", true);
    row("x-t/round-1", "x-t/grandchild", false);
    row("text/x-t-orphan", "text/plain", true);
    row("x-t/beside", "text/plain", false);
    row("x-t/beside", "application/octet-stream", true);
    row("image/svg+xml", "application/xml", true);
}

void TestMimeDatabase::inherits()
{
    QFETCH(QString, name);
    QFETCH(QString, ancestor);
    QTEST(m_database.mimeTypeForName(name).inherits(ancestor), "inherits");
}

void TestMimeDatabase::names_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("type");
    const auto row = [](const char *file, const char *type) { QTest::newRow(file) << latin1(file) << latin1(type); };
    row("extension.xml", "application/vnd.qt.xml.extpoint");
    row("/some/where/extension.xml", "application/vnd.qt.xml.extpoint");
    row("Extension.XML", "application/vnd.qt.xml.extpoint");
    row("my-extension.xml", "application/xml");
    row("extension.xml.bak", "application/x-trash");
    row("x.pic", "x-t/glob-high");
    row("x.old.pic", "x-t/glob-longer");
    row("readme.pic", "x-t/glob-literal");
    row("a.lc", "x-t/glob-lower");
    row("a.LC", "x-t/glob-z-cased");
    row("a.Lc", "x-t/glob-lower");
    row("page7.x", "x-t/glob-set");
    row("page7.xy", "application/octet-stream");
    row("pagex.x", "application/octet-stream");
    row("p.png", "x-t/system-name");
    row("p.PNG", "image/png");
    row("a.tie", "x-t/tie-a");
    row("nothing-known", "application/octet-stream");
    row("", "application/octet-stream");
}

void TestMimeDatabase::names()
{
    QFETCH(QString, file);
    // None of these files exists, so only the name counts.
    QTEST(m_database.mimeTypeForFile(file).name(), "type");
}

void TestMimeDatabase::contents_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("type");
    const auto row = [](const char *tag, const char *file, const QByteArray &data, const char *type) {
        QTest::newRow(tag) << latin1(file) << data << latin1(type);
    };
    row("a literal name needs no content", "extension.xml", "BYTES!", "application/vnd.qt.xml.extpoint");
    row("tie: first by magic", "x.tie", "AAAA", "x-t/tie-a");
    row("tie: higher priority", "x.tie", "AAAAB", "x-t/tie-b");
    row("tie: root element", "x.tie", "<c xmlns='urn:c'/>", "x-t/tie-c");
    row("tie: wrong namespace", "x.tie", "<c xmlns='urn:d'/>", "x-t/tie-a");
    row("tie: sub-class of a candidate", "x.tie", "SUB", "x-t/tie-sub");
    row("tie: content of something else", "x.tie", "BYTES!", "x-t/tie-a");
    row("no name: magic", "unnamed", "BYTES!", "x-t/bytes");
    row("no name: at the end of the range", "unnamed", "12345678BYTES!", "x-t/bytes");
    row("no name: beyond the range", "unnamed", "123456789BYTES!", "text/plain");
    row("no name: the more specific of equal ones", "unnamed", "BYTES!!", "x-t/bytes-special");
    row("no name: beyond the sample", "unnamed", QByteArray(65534, '.') + "FAR", "text/plain");
    row("no name: root before magic", "unnamed", "<c xmlns='urn:c'/>", "x-t/tie-c");
    row("no name: cut off in the root element", "unnamed", "<?xml version='1.0'?><c xmlns='urn:c'", "application/xml");
    row("no name: cut off behind it", "unnamed", "<?xml version='1.0'?><c xmlns='urn:c'><d>", "x-t/tie-c");
    row("no name: system's magic", "unnamed", "\x89PNG\r\n\x1a\n", "image/png");
    row("system's name before declared magic", "x.txt", "BYTES!", "text/plain");
    row("special case of the system's name", "x.xml", "<r xmlns='urn:any'/>", "x-t/any-root");
    row("any local name, other namespace", "x.xml", "<r xmlns='urn:other'/>", "application/xml");
    row("no namespace", "x.xml", "<plain-root/>", "x-t/no-namespace");
    row("no namespace wanted", "x.xml", "<plain-root xmlns='urn:z'/>", "application/xml");
    row("a path", "/no/dir.tie/unnamed", "BYTES!", "x-t/bytes");
}

void TestMimeDatabase::contents()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, data);
    QTEST(m_database.mimeTypeForFileNameAndData(file, data).name(), "type");
}

void TestMimeDatabase::magic_data()
{
    QTest::addColumn<QByteArray>("match");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("matches");
    const auto row = [](const char *tag, const char *match, const QByteArray &data, bool matches) {
        QTest::newRow(tag) << QByteArray(match) << data << matches;
    };
    const QByteArray zeroOne("\0\1", 2);
    const QByteArray oneZero("\1\0", 2);
    const QByteArray host16 = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? oneZero : zeroOne;
    const char *simple = R"(<match type="string" value="%abc" offset="2"/>)";
    row("string", simple, "..%abc", true);
    row("string cut off", simple, "..%ab", false);
    row("string elsewhere", simple, ".%abc.", false);
    row("empty data", simple, "", false);
    const char *escapes = R"(<match type="string" value="\x25\r\n\t\\\101\0\q" offset="0"/>)";
    row("escapes", escapes, QByteArray("\x25\r\n\t\\A\0q", 8), true);
    row("not ASCII", "<match type='string' value='\xc3\xa4' offset='0'/>", "\xc3\xa4", true);
    row("byte", R"(<match type="byte" value="0xfe" offset="1"/>)", ".\xfe", true);
    row("byte, decimal", R"(<match type="byte" value="65" offset="0"/>)", "A", true);
    row("byte, octal", R"(<match type="byte" value="0101" offset="0"/>)", "A", true);
    row("big16", R"(<match type="big16" value="1" offset="0"/>)", zeroOne, true);
    row("big16 turned", R"(<match type="big16" value="1" offset="0"/>)", oneZero, false);
    row("little16", R"(<match type="little16" value="1" offset="0"/>)", oneZero, true);
    row("host16", R"(<match type="host16" value="1" offset="0"/>)", host16, true);
    row("big32", R"(<match type="big32" value="0xcafebabe" offset="0"/>)", "\xca\xfe\xba\xbe", true);
    row("little32", R"(<match type="little32" value="0xcafebabe" offset="0"/>)", "\xbe\xba\xfe\xca", true);
    row("host32", R"(<match type="host32" value="0x01010101" offset="0"/>)", "\1\1\1\1", true);
    const char *masked = R"(<match type="string" value="abc" mask="0xff00df" offset="0"/>)";
    row("string mask", masked, "a?C", true);
    row("string mask, difference", masked, "a?d", false);
    const char *highBit = R"(<match type="byte" value="0x80" mask="0x80" offset="0"/>)";
    row("mask of the highest bit", highBit, "\xff", true);
    row("mask of the highest bit, difference", highBit, "\x7f", false);
    row("number mask", R"(<match type="big16" value="0x1200" mask="0xff00" offset="0"/>)", "\x12\x34", true);
    row("number mask, difference", R"(<match type="big16" value="0x1200" mask="0xff00" offset="0"/>)", "\x13\x34",
        false);
    row("range, first", R"(<match type="string" value="x" offset="1:3"/>)", ".x..", true);
    row("range, last", R"(<match type="string" value="x" offset="1:3"/>)", "...x", true);
    row("range, before", R"(<match type="string" value="x" offset="1:3"/>)", "x...", false);
    row("range, after", R"(<match type="string" value="x" offset="1:3"/>)", "....x", false);
    row("range, second beginning", R"(<match type="string" value="aab" offset="0:4"/>)", "aaab", true);
    const char *nested = R"(<match type="string" value="A" offset="0">
        <match type="string" value="B" offset="1"><match type="string" value="C" offset="2"/></match>
        <match type="string" value="D" offset="1"/></match>)";
    row("nested, all of one branch", nested, "ABC", true);
    row("nested, the other branch", nested, "AD.", true);
    row("nested, half a branch", nested, "AB.", false);
    row("nested, outer alone", nested, "A..", false);
    row("nested, inner alone", nested, ".BC", false);
    const char *two = R"(<match type="string" value="one" offset="0"/><match type="string" value="two" offset="0"/>)";
    row("second of two", two, "two", true);
    row("none of two", two, "three", false);
}

void TestMimeDatabase::magic()
{
    QFETCH(QByteArray, match);
    QFETCH(QByteArray, data);
    QFETCH(bool, matches);
    // Two types that share a pattern: the one without magic comes first by name, so only the content can choose other.
    static int count = 0;
    const QByteArray suffix = QByteArray("magic") + QByteArray::number(++count);
    const QByteArray glob = "<glob pattern='*." + suffix + "'/>";
    QString error;
    QVERIFY2(declare("<mime-type type='x-m/a-" + suffix + "'>" + glob + "</mime-type><mime-type type='x-m/b-" + suffix
                     + "'>" + glob + "<magic priority='100'>" + match + "</magic></mime-type>",
                 &error),
        qPrintable(error));
    const QString file = QStringLiteral("file.") + QString::fromLatin1(suffix);
    const QString expected = latin1(matches ? "x-m/b-" : "x-m/a-") + QString::fromLatin1(suffix);
    QCOMPARE(m_database.mimeTypeForFileNameAndData(file, data).name(), expected);
}

void TestMimeDatabase::malformed_data()
{
    QTest::addColumn<QByteArray>("inner");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *tag, const char *inner, const char *error) {
        QTest::newRow(tag) << QByteArray(inner) << latin1(error);
    };
    row("not well-formed", "<glob pattern='a'>", "Opening and ending tag mismatch.");
    row("pattern missing", "<glob/>", "\"glob\" has no \"pattern\"");
    row("pattern", "<glob pattern='[b-a]'/>", "\"[b-a]\" is not a pattern");
    row("weight", "<glob pattern='a' weight='101'/>", "the \"weight\" \"101\" is not a number from 0 to 100");
    row("weight in words", "<glob pattern='a' weight='high'/>",
        "the \"weight\" \"high\" is not a number from 0 to 100");
    row("letter case", "<glob pattern='a' case-sensitive='1'/>",
        "\"case-sensitive\" is neither \"true\" nor \"false\"");
    row("parent missing", "<sub-class-of/>", "\"sub-class-of\" has no \"type\"");
    row("parent", "<sub-class-of type='xml'/>", "\"xml\" is not the name of a MIME type");
    row("alias", "<alias type='a/b/c'/>", "\"a/b/c\" is not the name of a MIME type");
    row("root element", "<root-XML/>", "\"root-XML\" has neither \"namespaceURI\" nor \"localName\"");
    row("empty magic", "<magic/>", "\"magic\" has no \"match\"");
    row("priority", "<magic priority='-1'/>", "the \"priority\" \"-1\" is not a number from 0 to 100");
    const auto match = [&row](const char *tag, const char *attributes, const char *error) {
        row(tag, QByteArray(QByteArray("<magic><match ") + attributes + "/></magic>").constData(), error);
    };
    match("match type", "type='float' value='1' offset='0'", "the match type \"float\" is unknown");
    match("match type missing", "value='1' offset='0'", "the match type \"\" is unknown");
    match("value missing", "type='string' offset='0'", "\"\" is not a value of the type \"string\"");
    match("value no number", "type='byte' value='A' offset='0'", "\"A\" is not a value of the type \"byte\"");
    match("value too big", "type='big16' value='65536' offset='0'", "\"65536\" is not a value of the type \"big16\"");
    match("value negative", "type='byte' value='-1' offset='0'", "\"-1\" is not a value of the type \"byte\"");
    match("value ends in a backslash", "type='string' value='a\\' offset='0'",
        "\"a\\\" is not a value of the type \"string\"");
    match("octal value too big", "type='string' value='\\777' offset='0'",
        "\"\\777\" is not a value of the type \"string\"");
    match("offset missing", "type='string' value='a'", "\"\" is not an offset");
    match("offset negative", "type='string' value='a' offset='-1'", "\"-1\" is not an offset");
    match("offset backwards", "type='string' value='a' offset='3:2'", "\"3:2\" is not an offset");
    match("offset half", "type='string' value='a' offset='3:'", "\"3:\" is not an offset");
    match("offset too big", "type='string' value='a' offset='99999999999'", "\"99999999999\" is not an offset");
    match("mask empty", "type='string' value='a' offset='0' mask=''", "\"\" is not a mask for \"a\"");
    match("mask not hexadecimal", "type='string' value='a' offset='0' mask='ff'", "\"ff\" is not a mask for \"a\"");
    match("mask too short", "type='string' value='ab' offset='0' mask='0xff'", "\"0xff\" is not a mask for \"ab\"");
    match("mask too big", "type='byte' value='1' offset='0' mask='0x100'", "\"0x100\" is not a mask for \"1\"");
}

void TestMimeDatabase::malformed()
{
    QFETCH(QByteArray, inner);
    QFETCH(QString, error);
    QByteArray document = "<mime-info>\n<mime-type type='x-t/refused'><glob pattern='refused'/></mime-type>\n"
                          "<mime-type type='x-t/refused-too'>\n "
        + inner + "</mime-type>\n</mime-info>";
    QBuffer buffer(&document);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QString actual;
    QVERIFY(!MimeDatabase::addMimeTypes(&buffer, &actual));
    static const QRegularExpression place(QStringLiteral("^4:[1-9][0-9]*: "));
    QVERIFY2(actual.contains(place), qPrintable(actual));
    QCOMPARE(actual.remove(place), error);
    QVERIFY(!m_database.mimeTypeForName(latin1("x-t/refused")).isValid());
    QVERIFY(!m_database.mimeTypeForName(latin1("x-t/refused-too")).isValid());
    QCOMPARE(m_database.mimeTypeForFile(latin1("refused")).name(), latin1("application/octet-stream"));
}

void TestMimeDatabase::limits()
{
    const auto nestedMatches = [](const QByteArray &type, int depth) {
        return "<mime-type type='" + type + "'><magic>"
            + QByteArray("<match type='string' value='a' offset='0'>").repeated(depth)
            + QByteArray("</match>").repeated(depth) + "</magic></mime-type>";
    };
    QString error;
    QVERIFY(declare(nestedMatches("x-t/deep", 32)));
    QVERIFY(!declare(nestedMatches("x-t/too-deep", 33), &error));
    QVERIFY2(error.contains(QLatin1String("nested matches")), qPrintable(error));
    // Far beyond any stack, were it read by recursion.
    QVERIFY(declare(QByteArray("<x>").repeated(100000) + QByteArray("</x>").repeated(100000)));
    QVERIFY(!declare(QByteArray(5 * 1024 * 1024, ' '), &error));
    QCOMPARE(error, latin1("1:1: the document is larger than 4194304 bytes"));
}

void TestMimeDatabase::warnings()
{
    QTemporaryDir directory;
    const auto expect = [&](const char *name, const QByteArray &bytes, const QString &warning) {
        const QString path = directory.filePath(latin1(name));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        QTest::ignoreMessage(QtWarningMsg,
            QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(path) + warning + QLatin1Char('$')));
        MimeDatabase::addMimeTypes(path);
    };
    expect("empty.xml", "", QStringLiteral(":1:1: .+"));
    expect("root.xml", "<types/>", QStringLiteral(":1:8: the root element is not \"mime-info\""));
    expect("namespace.xml", "<mime-info xmlns='urn:x'/>", QStringLiteral(":1:26: the root element is not .+"));
    expect("type.xml", "<mime-info>\n<mime-type/></mime-info>", QStringLiteral(":2:12: \"mime-type\" has no \"type\""));
    expect("name.xml", "<mime-info><mime-type type='a'/></mime-info>",
        QStringLiteral(":1:32: \"a\" is not the name of a MIME type"));
    expect("tail.xml", "<mime-info><mime-type type='x-t/tail'/></mime-info><more/>", QStringLiteral(":1:[0-9]+: .+"));
    QVERIFY(!m_database.mimeTypeForName(latin1("x-t/tail")).isValid());

    const QString fifo = directory.filePath(latin1("fifo"));
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    for (const QString &path : { fifo, directory.path(), directory.filePath(latin1("absent")) }) {
        QTest::ignoreMessage(QtWarningMsg, qPrintable(path + QStringLiteral(":1:1: there is no such file")));
        MimeDatabase::addMimeTypes(path);
    }
}

void TestMimeDatabase::filesOnDisk()
{
    QTemporaryDir directory;
    const auto write = [&](const char *name, const QByteArray &bytes) {
        QFile file(directory.filePath(latin1(name)));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(
        write("types.xml", "<mime-info><mime-type type='x-t/disk'><glob pattern='*.disk'/></mime-type></mime-info>"));
    MimeDatabase::addMimeTypes(directory.filePath(latin1("types.xml")));
    QCOMPARE(m_database.mimeTypeForFile(latin1("x.disk")).name(), latin1("x-t/disk"));

    QVERIFY(write("x.tie", "AAAAB"));
    QCOMPARE(m_database.mimeTypeForFile(directory.filePath(latin1("x.tie"))).name(), latin1("x-t/tie-b"));
    QVERIFY(write("unnamed", "BYTES!"));
    QCOMPARE(m_database.mimeTypeForFile(directory.filePath(latin1("unnamed"))).name(), latin1("x-t/bytes"));
    QCOMPARE(m_database.mimeTypeForFile(directory.path()).name(), latin1("inode/directory"));
    // Must not wait for a writer.
    const QString fifo = directory.filePath(latin1("fifo.tie"));
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QCOMPARE(m_database.mimeTypeForFile(fifo).name(), latin1("inode/fifo"));
}

void TestMimeDatabase::declaredTwice()
{
    const QByteArray first = "<mime-type type='x-t/twice'><comment>Once</comment><glob pattern='*.tw1'/>"
                             "<magic><match type='byte' value='1' offset='0'/></magic></mime-type>";
    QVERIFY(declare(first));
    const MimeType before = m_database.mimeTypeForName(latin1("x-t/twice"));
    QVERIFY(declare(first));
    QVERIFY(declare("<mime-type type='X-T/Twice'><alias type='x-t/two'/><glob pattern='*.tw2'/>"
                    "<sub-class-of type='image/png'/></mime-type>"));
    const MimeType after = m_database.mimeTypeForName(latin1("x-t/two"));
    QCOMPARE(after.name(), latin1("x-t/twice"));
    QCOMPARE(after.comment(), latin1("Once"));
    QCOMPARE(after.globPatterns(), (QStringList { latin1("*.tw1"), latin1("*.tw2") }));
    QVERIFY(after.inherits(latin1("image/png")));
    // A type handed out earlier keeps what it said.
    QCOMPARE(before.globPatterns(), QStringList { latin1("*.tw1") });
}

void TestMimeDatabase::declaredByManyThreads()
{
    constexpr int threadCount = 4;
    constexpr int typesEach = 100;
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([t, &failures] {
            for (int i = 0; i < typesEach; ++i) {
                const QByteArray name = "thread" + QByteArray::number(t) + '-' + QByteArray::number(i);
                const bool declared
                    = declare("<mime-type type='x-p/" + name + "'><glob pattern='" + name + "'/></mime-type>");
                const QString file = QString::fromLatin1(name);
                if (!declared || MimeDatabase().mimeTypeForFile(file).name() != QStringLiteral("x-p/") + file)
                    ++failures;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
    // A lost update would have taken some of the others' types away.
    for (int t = 0; t < threadCount; ++t) {
        for (int i = 0; i < typesEach; ++i)
            QVERIFY(m_database.mimeTypeForName(QStringLiteral("x-p/thread%1-%2").arg(t).arg(i)).isValid());
    }
}

QTEST_GUILESS_MAIN(TestMimeDatabase)
#include "tst_mimedatabase.moc"

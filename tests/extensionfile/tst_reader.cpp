#include "extensionfile/reader.h"

#include "extensionfile/regularfile.h"
#include "recordingsink.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>
#include <QTextCodec>

#include <limits>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace ExtensionFile;

Q_DECLARE_METATYPE(ReadError::Kind)
Q_DECLARE_METATYPE(Limits)

namespace {

bool readBytes(const QByteArray &bytes, Sink &sink, ReadError *error, const Limits &limits = Limits())
{
    QBuffer buffer;
    buffer.setData(bytes);
    return buffer.open(QIODevice::ReadOnly) && read(buffer, sink, error, limits);
}

QByteArray encoded(const char *codec, const QString &text, const QByteArray &mark = QByteArray())
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return mark + QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

QByteArray withAttributes(int count)
{
    QByteArray tag = "<a";
    for (int i = 0; i < count; ++i)
        tag += " n" + QByteArray::number(i) + "='='";
    return tag + "/>";
}

QByteArray withEntity(int length, int uses)
{
    return "<!DOCTYPE a [<!ENTITY e '" + QByteArray(length, 'x') + "'>]><a b='" + QByteArray("&e;").repeated(uses)
        + "'/>";
}

} // namespace

class TestReader : public QObject
{
    Q_OBJECT

private slots:
    void accepted_data();
    void accepted();
    void locations_data();
    void locations();
    void encodings_data();
    void encodings();
    void malformed_data();
    void malformed();
    void limits_data();
    void limits();
    void hostile_data();
    void hostile();
    void specialFiles_data();
    void specialFiles();
    void filesAreLoggedOnce();
    void readableFile();
    void descriptorIsReadWhole_data();
    void descriptorIsReadWhole();
    void unopenedDevice();
    void translationMarks_data();
    void translationMarks();
};

void TestReader::accepted_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<bool>("ordinary"); // the quick reader takes it

    const auto row = [](const char *name, const char *bytes, const char *tree, bool ordinary = true) {
        QTest::newRow(name) << QByteArray(bytes) << QString::fromUtf8(tree) << ordinary;
    };
    row("order kept", "<p z='1' a='2' m='3'><q/></p>", "p z=[1] a=[2] m=[3]\n  q");
    row("white space not trimmed", "<a b='  x  '/>", "a b=[  x  ]");
    row("raw white space is blanks", "<a b='1\t2\n3\r\n4'/>", "a b=[1 2 3 4]");
    row("referenced white space stays", "<a b='1&#9;2&#xa;3&#13;4'/>", "a b=[1\t2\n3\r4]");
    row("references", "<a b='&lt;&gt;&amp;&quot;&apos;&#x1F600;'/>", "a b=[<>&\"'\xf0\x9f\x98\x80]");
    row("prefixes are parts of names", "<x:a x:b='1' y:b='2' xmlns='u' xmlns:x='v'/>",
        "x:a x:b=[1] y:b=[2] xmlns=[u] xmlns:x=[v]");
    row("text, comments and instructions pass",
        "<!--c--><?i j?><a>t<!--<b/>--><![CDATA[<c/>]]><?k <d/>?><e/></a>\n<!-- -->", "a\n  e");
    row("newer minor version", "<?xml version='1.1' encoding='utf-8'?><a/>", "a");
    row("translation marks stay", "<a b=\"tr('Open')\"/>", "a b=[tr('Open')]");
    row("equal texts, and such that look alike", "<a b='true' c='tue' d='true' e='toue' f=''><b a='' b='tree'/></a>",
        "a b=[true] c=[tue] d=[true] e=[toue] f=[]\n  b a=[] b=[tree]");
    row("letters of the fourth edition", "<\xc3\xa4 \xd0\xb6='\xe4\xb8\xad'/>", "\xc3\xa4 \xd0\xb6=[\xe4\xb8\xad]");
    row("letters of the fifth edition", "<a \xc4\xb2='1' \xe3\xbc\xbc='2'/>", "a \xc4\xb2=[1] \xe3\xbc\xbc=[2]", false);
    row("after a part of it was taken", "<a><b/><c d='1'/><e \xc4\xb2='1'/></a>", "a\n  b\n  c d=[1]\n  e \xc4\xb2=[1]",
        false);
    row("entity with elements", "<!DOCTYPE a [<!ENTITY e '<b c=\"1\"/>'>]><a>&e;&e;</a>", "a\n  b c=[1]\n  b c=[1]",
        false);
    row("entity in value", "<!DOCTYPE a [<!-- ' ]> --><!ENTITY e ']>'>]><a b='&e;'/>", "a b=[]>]", false);
    row("default attribute", "<!DOCTYPE a [<!ATTLIST a b CDATA '1'>]><a/>", "a b=[1]", false);
    row("percent in a literal", "<!DOCTYPE a SYSTEM 'a%20b.dtd'><a b='5%c;'/>", "a b=[5%c;]", false);
    row("external entity is not fetched", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><a>&e;<b/></a>",
        "a\n  b", false);
}

void TestReader::accepted()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, tree);
    QFETCH(bool, ordinary);
    for (const bool withLocations : { true, false }) {
        RecordingSink sink(withLocations);
        sink.printsLocations = false;
        ReadError error;
        QVERIFY2(readBytes(bytes, sink, &error), qPrintable(error.toString()));
        QCOMPARE(sink.lines.join(QLatin1Char('\n')), tree);
        QVERIFY(sink.isBalanced());
        QCOMPARE(int(error.kind), int(ReadError::Kind::None));
        QCOMPARE(sink.restarts, withLocations || ordinary ? 0 : 1);
    }
}

void TestReader::locations_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("tree");

    const auto row = [](const char *name, const char *bytes, const char *tree) {
        QTest::newRow(name) << QByteArray(bytes) << QString::fromUtf8(tree);
    };
    row("lines and columns", "<?xml version='1.0'?>\n<a>\n  <b/><c\nd='1'/>\n\t<e/></a>",
        "a @2:1\n  b @3:3\n  c d=[1] @3:7\n  e @5:2");
    row("carriage returns", "<a>\r\n<b/>\r<c/></a>", "a @1:1\n  b @2:1\n  c @3:1");
    row("characters, not bytes", "<a b='\xc3\xa4\xf0\x9f\x98\x80'><c/></a>",
        "a b=[\xc3\xa4\xf0\x9f\x98\x80] @1:1\n  c @1:11");
    row("byte order mark has no column", "\xef\xbb\xbf<a><b/></a>", "a @1:1\n  b @1:4");
    row("tags elsewhere do not count", "<!DOCTYPE a [<!ELEMENT a (b)>]><!--<x>--><a c='<' />", "");
    row("after comment, section and instruction", "<!-- > <x>--><?i > <x>?><a><![CDATA[> <x>]]><b c='>'/><d/></a>",
        "a @1:25\n  b c=[>] @1:45\n  d @1:55");
    row("with entities: end of tag", "<!DOCTYPE a [<!ENTITY e '<b/>'>]>\n<a>&e;<c/>\n</a>",
        "a @2:3\n  b @2:6\n  c @2:10");
    QTest::newRow("transcoded") << encoded("UTF-16LE", QStringLiteral("<a>\n <b/></a>"), "\xff\xfe")
                                << QStringLiteral("a @1:1\n  b @2:2");
}

void TestReader::locations()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, tree);
    RecordingSink sink(true);
    const bool wellFormed = readBytes(bytes, sink, nullptr);
    QCOMPARE(sink.lines.join(QLatin1Char('\n')), tree);
    QCOMPARE(wellFormed, !tree.isEmpty());
}

void TestReader::encodings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("value"); // null: refused

    const QString value = QStringLiteral("\u00e4\u20ac");
    const auto document = [&](const char *encoding) {
        return QStringLiteral("<?xml version='1.0' encoding='%1'?><a b='%2'/>").arg(QLatin1String(encoding), value);
    };
    const QString bare = QStringLiteral("<a b='%1'/>").arg(value);
    QTest::newRow("utf-8 undeclared") << bare.toUtf8() << value;
    QTest::newRow("utf-8 declared, small letters") << document("utf-8").toUtf8() << value;
    QTest::newRow("utf-8 with mark") << "\xef\xbb\xbf" + document("UTF-8").toUtf8() << value;
    QTest::newRow("utf-16 little with mark") << encoded("UTF-16LE", document("UTF-16"), "\xff\xfe") << value;
    QTest::newRow("utf-16 big with mark") << encoded("UTF-16BE", document("UTF-16"), "\xfe\xff") << value;
    QTest::newRow("utf-16 without mark") << encoded("UTF-16BE", document("UTF-16BE")) << value;
    QTest::newRow("utf-16 undeclared") << encoded("UTF-16LE", bare, "\xff\xfe") << value;
    QTest::newRow("utf-32 with mark") << encoded("UTF-32LE", document("UTF-32"), QByteArray("\xff\xfe\0\0", 4))
                                      << value;
    QTest::newRow("windows-1252") << encoded("windows-1252", document("windows-1252")) << value;
    QTest::newRow("latin 9") << encoded("ISO-8859-15", document("ISO-8859-15")) << value;
    QTest::newRow("latin 1") << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xe4'/>")
                             << QStringLiteral("\u00e4");
    const auto refused = [](const char *name, const QByteArray &bytes) { QTest::newRow(name) << bytes << QString(); };
    refused("unknown", "<?xml version='1.0' encoding='klingon'?><a b='1'/>");
    refused("declares utf-16, is not", "<?xml version='1.0' encoding='UTF-16'?><a b='1'/>");
    refused("mark against declaration", "\xef\xbb\xbf<?xml version='1.0' encoding='ISO-8859-1'?><a b='1'/>");
    refused("utf-16 against declaration", encoded("UTF-16LE", document("UTF-8"), "\xff\xfe"));
    refused("bad utf-8", "<a b='\xff'/>");
    refused("overlong", "<a b='\xc0\xaf'/>");
    refused("surrogate in utf-8", "<a b='\xed\xa0\x80'/>");
    refused("beyond unicode", "<a b='\xf4\x90\x80\x80'/>");
    refused("cut sequence", "<a/><!--\xe2\x82");
    refused("lone surrogate in utf-16",
        encoded("UTF-16LE", QStringLiteral("<a b='"), "\xff\xfe") + QByteArray("\x00\xd8", 2)
            + encoded("UTF-16LE", QStringLiteral("'/>")));
    refused("half a character in utf-16", encoded("UTF-16LE", QStringLiteral("<a b='1'/>"), "\xff\xfe") + ' ');
    refused("bad in us-ascii", "<?xml version='1.0' encoding='US-ASCII'?><a b='\xe4'/>");
    refused("bad in shift-jis", "<?xml version='1.0' encoding='Shift_JIS'?><a b='\xff'/>");
}

void TestReader::encodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, value);
    RecordingSink sink;
    ReadError error;
    QCOMPARE(readBytes(bytes, sink, &error), !value.isNull());
    if (value.isNull()) {
        QCOMPARE(int(error.kind), int(ReadError::Kind::Malformed));
        QVERIFY(!error.reason.isEmpty() && error.line > 0 && error.column > 0);
    } else {
        QCOMPARE(sink.lines, QStringList(QStringLiteral("a b=[%1]").arg(value)));
    }
}

void TestReader::malformed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("line"); // 0: any
    QTest::addColumn<qint64>("column");

    const auto row = [](const char *name, const QByteArray &bytes, qint64 line = 0, qint64 column = 0) {
        QTest::newRow(name) << bytes << line << column;
    };
    row("empty", "", 1, 1);
    row("blank", " \n ");
    row("byte order mark alone", "\xef\xbb\xbf");
    row("instruction alone", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n");
    row("cut in a tag", "<a>\n<b c='", 2, 7);
    row("cut after the first tag", "<a>", 1, 4);
    row("cut before the end tag", "<a>\n<b/>");
    row("tags crossed", "<a>\n <b></a>", 2, 8);
    row("letter case of tags", "<a></A>");
    row("attribute twice", "<a b='1' b='1'/>", 1, 16);
    row("attribute without value", "<a b/>");
    row("attribute without quotes", "<a b=1/>", 1, 6);
    row("attributes without blank", "<a b='1'c='2'/>");
    row("bracket in value", "<a b='<'/>", 1, 7);
    row("ampersand alone", "<a b='R&D'/>");
    row("entity not declared", "<a b='&nbsp;'/>");
    row("entity in itself", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>");
    row("entity opens a tag", "<!DOCTYPE a [<!ENTITY e '<b>'>]><a>&e;</b></a>");
    row("entity opens a comment", "<!DOCTYPE a [<!ENTITY e '<!--'>]><a>&e; <![CDATA[ --><b/>]]></a>");
    row("external entity in value", "<!DOCTYPE a [<!ENTITY e SYSTEM 'x'>]><a b='&e;'/>");
    row("parameter entity ends the declaration", "<!DOCTYPE a [<!ENTITY % p ']><a>'> %p; <b/></a>", 1, 36);
    row("text after the root", "<a/>x");
    row("second root", "<a/><b/>");
    row("text before the root", "x<a/>");
    row("blank before the declaration", " <?xml version='1.0'?><a/>");
    row("declaration damaged", "<?xml version='1.0' encoding=utf-8?><a/>");
    row("declaration of a later version", "<?xml version='2.0'?><a/>");
    row("standalone neither yes nor no", "<?xml version='1.0' standalone='maybe'?><a/>");
    row("declaration type twice", "<!DOCTYPE a><!DOCTYPE a><a/>");
    row("dashes in comment", "<a><!-- b -- c --></a>");
    row("end of section in text", "<a>]]></a>");
    row("nul", QByteArray("<a b='\0'/>", 10), 1, 7);
    row("control character", "<a b='\x01'/>");
    row("reference to a control character", "<a b='&#1;'/>");
    row("reference to a surrogate", "<a b='&#xD800;'/>");
    row("reference beyond unicode", "<a b='&#x110000;'/>");
    row("no character", "<a b='\xef\xbf\xbe'/>");
    row("no character in a name", "<a b\xef\xbf\xbf='1'/>", 1, 5);
    row("no character in a name, utf-16",
        encoded("UTF-16LE", QStringLiteral("<a b"), "\xff\xfe") + "\xff\xff"
            + encoded("UTF-16LE", QStringLiteral("='1'/>")),
        1, 5);
    row("name starts with a digit", "<1a/>");
    row("attribute name is a sign", "<a>\n <b $='1'/></a>", 2, 2);
    row("control character in attribute name", "<a b\x01='1'/>");
    row("accent starts an attribute name", "<a \xcc\x81='1'/>");
    row("overlong, three bytes", "<a b='\xe0\x80\xaf'/>", 1, 7);
    row("surrogate in utf-8", "<a b='\xed\xa0\x80'/>", 1, 7);
    row("beyond unicode", "<a b='\xf4\x90\x80\x80'/>", 1, 7);
    row("bad byte in the third line", "<a>\n<b/>\n \xc3\xa4 \xff</a>", 3, 4);
}

void TestReader::malformed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, line);
    QFETCH(qint64, column);
    // The place is known whether or not the sink asks for the places of elements, or for their attributes.
    for (const auto &asked : { qMakePair(true, true), qMakePair(false, true), qMakePair(false, false) }) {
        RecordingSink sink(asked.first);
        sink.withAttributes = asked.second;
        ReadError error;
        QVERIFY2(!readBytes(bytes, sink, &error), qPrintable(sink.lines.join(QLatin1Char('\n'))));
        QCOMPARE(int(error.kind), int(ReadError::Kind::Malformed));
        QVERIFY(!error.reason.isEmpty());
        QVERIFY(error.line > 0 && error.column > 0);
        if (line > 0) {
            QCOMPARE(error.line, line);
            QCOMPARE(error.column, column);
        }
    }
}

void TestReader::limits_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<bool>("accepted");

    const auto rows = [](const char *name, const Limits &limits, const QByteArray &most, const QByteArray &over) {
        QTest::addRow("%s, at the limit", name) << most << limits << true;
        QTest::addRow("%s, one over", name) << over << limits << false;
    };
    const Limits standard;
    QTest::newRow("1,000 deep") << nested(1'000) << standard << true;
    rows("depth", standard, nested(standard.maximumDepth), nested(standard.maximumDepth + 1));
    rows("attributes of an element", standard, withAttributes(standard.maximumAttributesPerElement),
        withAttributes(standard.maximumAttributesPerElement + 1));
    const int most = standard.maximumEntityReferences;
    rows("references to entities", standard, withEntity(10, most), withEntity(10, most + 1));
    QTest::newRow("predefined references do not count")
        << "<!DOCTYPE a [<!ENTITY e 'x'>]><a b='" + QByteArray("&amp;&#65;").repeated(most + 1) + "'/>" << standard
        << true;
    Limits few;
    few.maximumFileSize = 50;
    rows("file size", few, "<a>" + QByteArray(43, ' ') + "</a>", "<a>" + QByteArray(44, ' ') + "</a>");
    few = Limits();
    few.maximumElements = 3;
    rows("elements", few, "<a><b/><b/></a>", "<a><b/><b/><b/></a>");
    few = Limits();
    few.maximumAttributes = 3;
    rows("all attributes", few, "<a b='1'><c d='' e=''/></a>", "<a b='1'><c d='' e=''/><f g=''/></a>");
    few = Limits();
    few.maximumAttributeText = 8;
    rows("attribute text", few, "<a b='123'><c d='123'/></a>", "<a b='123'><c d='1234'/></a>");
    few = Limits();
    few.maximumDoctypeSize = 31;
    rows("declaration", few, "<!DOCTYPE a [<!ELEMENT a ANY>]><a/>", "<!DOCTYPE a [<!ELEMENT a ANY> ]><a/>");
    few = Limits();
    few.maximumEntityLength = 20;
    // What counts is what the text grows by: the reference itself, three characters, is replaced.
    rows("length of an entity", few, withEntity(23, 1), withEntity(24, 1));
}

void TestReader::limits()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Limits, limits);
    QFETCH(bool, accepted);
    RecordingSink sink(true);
    ReadError error;
    QVERIFY2(readBytes(bytes, sink, &error, limits) == accepted, qPrintable(error.toString()));
    QCOMPARE(sink.isBalanced() && !sink.lines.isEmpty(), accepted);
    QCOMPARE(error.reason.isEmpty(), accepted);
    // Just the same where the places of elements are not looked for, and where the attributes aren't either.
    for (const bool withAttributes : { true, false }) {
        RecordingSink plain;
        plain.withAttributes = withAttributes;
        ReadError plainError;
        QCOMPARE(readBytes(bytes, plain, &plainError, limits), accepted);
        QCOMPARE(plainError.toString(), error.toString());
    }
}

void TestReader::hostile_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QByteArray laughs = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 10; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ';';
        laughs += "<!ENTITY e" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>";
    }
    QTest::newRow("a billion laughs") << laughs + "]><a b='&e9;'/>";
    QTest::newRow("40 KB used 40,000 times") << withEntity(40'000, 40'000);
    QTest::newRow("4 KB used 1,000,000 times") << withEntity(4'000, 1'000'000);
    QTest::newRow("200,000 attributes") << withAttributes(200'000);
    QTest::newRow("hidden after a section") << "<a><![CDATA[-->]]>" + withAttributes(200'000) + "</a>";
    QByteArray declared = "<!DOCTYPE a [<!ATTLIST a";
    for (int i = 0; i < 200'000; ++i)
        declared += " n" + QByteArray::number(i) + " CDATA ''";
    QTest::newRow("200,000 declared attributes") << declared + ">]><a/>";
    QTest::newRow("a long default for every element") << "<!DOCTYPE a [<!ATTLIST b c CDATA '" + QByteArray(15'000, 'x')
            + "'>]><a>" + QByteArray("<b/>").repeated(500'000) + "</a>";
    QTest::newRow("a million levels") << nested(1'000'000);
    QTest::newRow("a name of a megabyte") << '<' + QByteArray(1'000'000, 'n') + "/>";
}

/// Each of these costs the bare parser seconds to hours, or gigabytes.
void TestReader::hostile()
{
    QFETCH(QByteArray, bytes);
    RecordingSink sink;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!readBytes(bytes, sink, nullptr));
    QVERIFY2(timer.elapsed() < 2'000, qPrintable(QString::number(timer.elapsed())));
}

void TestReader::specialFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<ReadError::Kind>("kind");

    QTest::newRow("missing") << QStringLiteral("nothing") << ReadError::Kind::Missing;
    QTest::newRow("under a file") << QStringLiteral("file/extension.xml") << ReadError::Kind::Missing;
    QTest::newRow("no path") << QString() << ReadError::Kind::Missing;
    QTest::newRow("directory") << QStringLiteral("directory") << ReadError::Kind::NotRegular;
    QTest::newRow("pipe") << QStringLiteral("pipe") << ReadError::Kind::NotRegular;
    QTest::newRow("link to a pipe") << QStringLiteral("pipelink") << ReadError::Kind::NotRegular;
    QTest::newRow("socket") << QStringLiteral("socket") << ReadError::Kind::NotRegular;
    QTest::newRow("link to an endless device") << QStringLiteral("zero") << ReadError::Kind::NotRegular;
    QTest::newRow("link in a circle") << QStringLiteral("circle") << ReadError::Kind::Unreadable;
    QTest::newRow("dangling link") << QStringLiteral("dangling") << ReadError::Kind::Missing;
    QTest::newRow("too large") << QStringLiteral("large") << ReadError::Kind::TooLarge;
    QTest::newRow("malformed") << QStringLiteral("file") << ReadError::Kind::Malformed;
}

void TestReader::specialFiles()
{
    QFETCH(QString, name);
    QFETCH(ReadError::Kind, kind);
    QTemporaryDir directory;
    const auto inside = [&](const char *entry) { return QFile::encodeName(directory.filePath(QLatin1String(entry))); };
    QVERIFY(QDir(directory.path()).mkdir(QStringLiteral("directory")));
    QCOMPARE(::mkfifo(inside("pipe").constData(), 0600), 0);
    QCOMPARE(::symlink("pipe", inside("pipelink").constData()), 0);
    QCOMPARE(::symlink("/dev/zero", inside("zero").constData()), 0);
    QCOMPARE(::symlink("circle", inside("circle").constData()), 0);
    QCOMPARE(::symlink("nothing", inside("dangling").constData()), 0);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, inside("socket").constData(), sizeof(address.sun_path));
    QCOMPARE(::bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
    ::close(descriptor);
    QFile file(directory.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("<a>") == 3);
    QFile large(directory.filePath(QStringLiteral("large")));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(Limits().maximumFileSize + 1));

    const QString path = name.isEmpty() ? QString() : directory.filePath(name);
    RecordingSink sink;
    ReadError error;
    file.close();
    QVERIFY(!readFile(path, sink, &error));
    QCOMPARE(int(error.kind), int(kind));
    QCOMPARE(error.path, path);
    QVERIFY(!error.reason.isEmpty());
}

void TestReader::filesAreLoggedOnce()
{
    static QStringList messages;
    messages.clear();
    const QtMessageHandler before
        = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
              messages += QStringLiteral("%1 %2 %3").arg(int(type)).arg(QLatin1String(context.category), text);
          });
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("bad\nname.xml"));
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write("<a>\n<b></a>") > 0;
    file.close();
    RecordingSink sink;
    const bool readBad = readFile(path, sink, nullptr);
    const bool readMissing = readFile(directory.filePath(QStringLiteral("missing")), sink, nullptr);
    qInstallMessageHandler(before);
    QVERIFY(written && !readBad && !readMissing);
    QCOMPARE(messages.size(), 1);
    const QString expected = directory.filePath(QStringLiteral("bad?name.xml"));
    QCOMPARE(messages.first(),
        QStringLiteral("%1 extpoint.file %2:2:7: Opening and ending tag mismatch.")
            .arg(int(QtWarningMsg))
            .arg(expected));
}

void TestReader::readableFile()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    QFile file(path);
    // Several blocks of the device, so that the pieces have to fit together.
    const QByteArray bytes = "<a b='" + QByteArray(300'000, 'x') + "'/>";
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    const QString link = directory.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(path, link));
    RecordingSink sink;
    ReadError error;
    QVERIFY2(readFile(link, sink, &error), qPrintable(error.toString()));
    QCOMPARE(sink.lines, QStringList(QStringLiteral("a b=[%1]").arg(QString(300'000, QLatin1Char('x')))));
}

void TestReader::descriptorIsReadWhole_data()
{
    QTest::addColumn<qint64>("expected");
    QTest::addColumn<qint64>("maximum");
    QTest::addColumn<int>("read");

    QTest::newRow("size known") << qint64(200'000) << qint64(1'000'000) << 200'000;
    QTest::newRow("size not known") << qint64(0) << qint64(1'000'000) << 200'000;
    QTest::newRow("has grown") << qint64(100'000) << qint64(1'000'000) << 200'000;
    QTest::newRow("has shrunk") << qint64(300'000) << qint64(1'000'000) << 200'000;
    const qint64 most = std::numeric_limits<qint64>::max();
    QTest::newRow("2^63 - 1 bytes expected") << most << qint64(1'000'000) << 200'000;
    QTest::newRow("fewer than no bytes expected") << -most << qint64(1'000'000) << 200'000;
    QTest::newRow("has grown beyond the limit") << qint64(1'000) << qint64(150'000) << 150'001;
}

void TestReader::descriptorIsReadWhole()
{
    QFETCH(qint64, expected);
    QFETCH(qint64, maximum);
    QFETCH(int, read);
    QTemporaryFile file;
    QByteArray content;
    for (int i = 0; i < 200'000; ++i)
        content += char('a' + i % 23);
    QVERIFY(file.open() && file.write(content) == content.size() && file.flush() && file.seek(0));
    QByteArray bytes;
    QVERIFY(readDescriptor(file.handle(), expected, maximum, &bytes));
    QCOMPARE(bytes, content.left(read));
}

void TestReader::unopenedDevice()
{
    QBuffer buffer;
    RecordingSink sink;
    ReadError error;
    QVERIFY(!read(buffer, sink, &error));
    QCOMPARE(int(error.kind), int(ReadError::Kind::Unreadable));
}

void TestReader::translationMarks_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("bare");

    const auto row = [](const char *name, const char *marked, const char *bare) {
        QTest::newRow(name) << QString::fromLatin1(marked) << QString::fromLatin1(bare);
    };
    row("one", "tr('Open file')", "Open file");
    row("two", "tr('Open')tr(' file')", "Open file");
    row("among others", "a tr('b') c", "a b c");
    row("opened only", "tr('Open", "tr('Open");
    row("closed only", "Open')", "Open')");
    row("other letter case", "TR('Open')", "TR('Open')");
    row("in the wrong order", "')tr('", "");
    row("more of one than of the other", "tr('a')b')", "ab");
    row("none", "Open", "Open");
    row("empty", "", "");
}

void TestReader::translationMarks()
{
    QFETCH(QString, marked);
    QFETCH(QString, bare);
    QCOMPARE(withoutTranslationMarks(marked), bare);
    QCOMPARE(withTranslationMarks(bare), QStringLiteral("tr('%1')").arg(bare));
}

QTEST_GUILESS_MAIN(TestReader)
#include "tst_reader.moc"

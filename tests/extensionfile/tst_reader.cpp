#include "extensionfile/reader.h"

#include "recordingsink.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

using namespace ExtensionFile;

Q_DECLARE_METATYPE(ReadError::Kind)
Q_DECLARE_METATYPE(Limits)

namespace {

QByteArray encoded(const char *codec, const QString &text, const QByteArray &mark = QByteArray())
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return mark + QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
}

QString document(const char *encoding)
{
    return QStringLiteral("<?xml version='1.0' encoding='%1'?><a b='\u00e4\u20ac'/>").arg(QLatin1String(encoding));
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

/// "before0after before1after"...
QByteArray numbered(int count, const char *before, const char *after)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += before + QByteArray::number(i) + after;
    return text;
}

QByteArray withAttributes(int count)
{
    return "<a" + numbered(count, " n", "='='") + "/>";
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
    void asides();
    void malformed_data();
    void malformed();
    void limits_data();
    void limits();
    void hostile();
    void files_data();
    void files();
};

/// With places where the tree names one.
void TestReader::accepted_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("tree");

    const auto row = [](const char *name, const QByteArray &bytes, const char *tree) {
        QTest::newRow(name) << bytes << QString::fromUtf8(tree);
    };
    row("order kept, white space not trimmed", "<p z='1' a=' 2 ' m=''><q/></p>", "p z=[1] a=[ 2 ] m=[]\n  q");
    row("white space, raw and referenced", "<a b='1\t2\n3\r\n4&#9;5&#xa;6&#13;7'/>", "a b=[1 2 3 4\t5\n6\r7]");
    row("prefixes are parts of names", "<x:a x:b='1' y:b='2' xmlns='u' xmlns:x='v'/>",
        "x:a x:b=[1] y:b=[2] xmlns=[u] xmlns:x=[v]");
    row("newer minor version", "<?xml version='1.1' encoding='utf-8'?><a/>", "a");
    row("equal texts, and such that look alike", "<a b='true' c='tue' d='true' e='toue'><b a='' b='tree'/></a>",
        "a b=[true] c=[tue] d=[true] e=[toue]\n  b a=[] b=[tree]");
    row("byte order marks in values", "<a b='\xef\xbb\xbf\xef\xbb\xbf' c='\xef\xbb\xbf_'/>",
        "a b=[\xef\xbb\xbf\xef\xbb\xbf] c=[\xef\xbb\xbf_]");
    row("entity in value", "<!DOCTYPE a [<!-- ' ]> --><!ENTITY e ']>'>]><a b='&e;'/>", "a b=[]>]");
    row("percents", "<!DOCTYPE a SYSTEM 'a%20b' [<!ATTLIST a c CDATA '5%'><!ENTITY % p ''>]><a b='5%c;'/>",
        "a b=[5%c;] c=[5%]");
    row("type declared elsewhere",
        "<!DOCTYPE a SYSTEM 'x' [<!ENTITY e 'y'>]><!--&f;--><a b='&e;&#9;&lt;'>&e;<![CDATA[&f;]]></a>", "a b=[y\t<]");

    row("lines and columns", "<?xml version='1.0'?>\n<a>\n  <b/><c\nd='1'/>\n\t<e/></a>",
        "a@2:1/22\n  b@3:3/28\n  c@3:7/32 d=[1]@4:1/35\n  e@5:2/44");
    row("carriage returns", "<a>\r\n<b/>\r<c\rd=''\r\ne=''/></a>",
        "a@1:1/0\n  b@2:1/5\n  c@3:1/10 d=[]@4:1/13 e=[]@5:1/19");
    row("characters and bytes", "<a b='\xc3\xa4\xf0\x9f\x98\x80' c=''><d/></a>",
        "a@1:1/0 b=[\xc3\xa4\xf0\x9f\x98\x80]@1:4/3 c=[]@1:11/14\n  d@1:16/19");
    row("byte order mark is bytes, but no column", "\xef\xbb\xbf<a b=''><c/></a>", "a@1:1/3 b=[]@1:4/6\n  c@1:9/11");
    row("what looks like an attribute", "<a b = \"' x='\"\tc='\" y=\">-'><d   e=''/></a>",
        "a@1:1/0 b=[' x=']@1:4/3 c=[\" y=\">-]@1:16/15\n  d@1:28/27 e=[]@1:33/32");
    row("out of entities: the reference", "<!DOCTYPE a [<!ENTITY e '<b c=\"\"/><d/>'>]>\n<a>&e;<c/>\n</a>",
        "a@2:1/43\n  b@2:4/46 c=[]@2:4/46\n  d@2:4/46\n  c@2:7/49");
    row("declared attribute: the element", "<!DOCTYPE a [<!ATTLIST a b CDATA '1'>]>\n<a c=''/>",
        "a@2:1/40 c=[]@2:4/43 b=[1]@2:1/40");
    row("of the decoded text", encoded("UTF-16LE", QStringLiteral("<a>\n <b/></a>"), "\xff\xfe"), "a@1:1/0\n  b@2:2/5");

    const char *const same = "a b=[\u00e4\u20ac]";
    const QString bare = QStringLiteral("<a b='\u00e4\u20ac'/>");
    row("utf-8 declared, small letters", document("utf-8").toUtf8(), same);
    row("utf-8 with mark", "\xef\xbb\xbf" + document("UTF-8").toUtf8(), same);
    row("utf-16 little with mark", encoded("UTF-16LE", document("UTF-16"), "\xff\xfe"), same);
    row("utf-16 big with mark", encoded("UTF-16BE", document("UTF-16"), "\xfe\xff"), same);
    row("utf-16 without mark", encoded("UTF-16BE", document("UTF-16BE")), same);
    row("utf-16 undeclared", encoded("UTF-16LE", bare, "\xff\xfe"), same);
    row("utf-32 with mark", encoded("UTF-32LE", document("UTF-32"), QByteArray("\xff\xfe\0\0", 4)), same);
    row("windows-1252", encoded("windows-1252", document("windows-1252")), same);
    row("an instruction like a declaration", "<?xml-style encoding='UTF-16'?>" + bare.toUtf8(), same);
}

void TestReader::accepted()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, tree);
    RecordingSink sink(tree.contains(QLatin1Char('@')));
    ReadError error;
    QVERIFY2(read(bytes, sink, &error), qPrintable(error.toString()));
    QCOMPARE(sink.tree(), tree);
    QCOMPARE(sink.depth, 0);
}

/// What is not kept is told of, each piece once, and of a document type only that it is there.
void TestReader::asides()
{
    const QByteArray text = QByteArray(100, ' ') + "t\n " + QByteArray(100, 'u');
    RecordingSink sink;
    QVERIFY(read("<!--c--><!DOCTYPE a [<!--d--><?e?>]><?i j?><a> \n<b/>\n " + text
            + "<!--<b/>--><![CDATA[<c/>]]>v<d/> </a>\n<!-- -->",
        sink, nullptr));
    QCOMPARE(sink.asides.join(QLatin1Char('|')),
        QStringLiteral("c c|d a|i i|t t\n %1|c <b/>|t <c/>v|c ").arg(QString(77, QLatin1Char('u'))));
    QCOMPARE(sink.tree(), QStringLiteral("a\n  b\n  d"));
}

void TestReader::malformed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("told");

    const auto row = [](const char *name, const QByteArray &bytes, const char *place, const char *reason) {
        QTest::newRow(name) << bytes << QStringLiteral("%1: %2").arg(QLatin1String(place), QLatin1String(reason));
    };
    row("empty", "", "1:1", "No element found.");
    row("tags crossed", "<a>\n <b></a>", "2:7", "Mismatched tag.");
    row("entity not declared", "<a b='&nbsp;'/>", "1:1", "Undefined entity.");
    const char *const invalid = "Not well-formed (invalid token).";
    row("nul", QByteArray("<a b='\0'/>", 10), "1:7", invalid);
    row("attribute name is a sign", "<a>\n <b $='1'/></a>", "2:5", invalid);
    row("external entity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><a>\n&e;</a>", "2:1",
        "External entities are not read.");
    const char *const unknown = "The entity f is not declared in the file, and nothing else is read.";
    row("unknown entity in text", "<!DOCTYPE a SYSTEM 'x'>\n<a>&f;</a>", "2:4", unknown);
    row("unknown entity in value", "<!DOCTYPE a SYSTEM 'x'>\n<a><b c='&#9;&amp;&f;'/></a>", "2:4", unknown);
    row("in a default", "<!DOCTYPE a PUBLIC 'p' 'x' [<!ATTLIST a b CDATA '&f;'>]><a/>", "1:49", unknown);
    row("in an entity", "<!DOCTYPE a SYSTEM 'x' [<!ENTITY e '<b c=\"&f;\"/>'>]><a>&e;</a>", "1:36", unknown);
    for (const char *standalone : { "yes", "no" })
        row(standalone, QByteArray("<?xml version='1.0' standalone='") + standalone + "'?>\n<!DOCTYPE a [ %p;]><a/>",
            "2:15", "Parameter entities are not supported.");
    row("declaration of a later version", "<?xml version='2.0'?><a/>", "1:1", "XML 2.0 is not known.");
    const char *const damaged = "The text is not valid UTF-8.";
    row("cut sequence", "<a/><!--\xe2\x82", "1:5", "Partial character.");
    row("surrogate in utf-8", "<a b='\xed\xa0\x80'/>", "1:7", damaged);
    row("bad byte in the third line", "<a>\n<b/>\n \xc3\xa4 \xff</a>", "3:4", damaged);
    row("no character", "<a b='\xef\xbf\xbe'/>", "1:7", invalid);
    row("no character in a name, utf-16", encoded("UTF-16LE", QStringLiteral("<a b\uffff='1'/>"), "\xff\xfe"), "1:5",
        invalid);

    row("unknown encoding", document("klingon").toUtf8(), "1:1", "Encoding klingon is not known.");
    const char *const other = "The declared encoding is not the one of the file.";
    row("declares utf-16, is not", "<?xml version='1.0' encoding='UTF-16'?><a b='12'/>", "1:1", other);
    row("mark against declaration", "\xef\xbb\xbf" + document("ISO-8859-1").toUtf8(), "1:1", other);
    row("utf-16 against declaration", encoded("UTF-16LE", document("UTF-8"), "\xff\xfe"), "1:1", other);
    const char *const damaged16 = "The text is not valid UTF-16LE.";
    const QByteArray start = encoded("UTF-16LE", QStringLiteral("<a b='"), "\xff\xfe");
    row("lone surrogate in utf-16", start + QByteArray("\x00\xd8'\0/\0>", 8) + '\0', "1:1", damaged16);
    row("half a character in utf-16", encoded("UTF-16LE", QStringLiteral("<a/>")) + ' ', "1:1", damaged16);
    row("bad in us-ascii", document("US-ASCII").toUtf8(), "1:1", "The text is not valid US-ASCII.");
    row("bad in shift-jis", document("Shift_JIS").toUtf8() + "\xff", "1:1", "The text is not valid Shift_JIS.");
}

void TestReader::malformed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, told);
    RecordingSink sink;
    ReadError error;
    QVERIFY2(!read(bytes, sink, &error), qPrintable(sink.tree()));
    QCOMPARE(error.toString(), told);
    QCOMPARE(int(error.kind), int(ReadError::Kind::Malformed));
}

void TestReader::limits_data()
{
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<QByteArray>("most");
    QTest::addColumn<QByteArray>("over");
    QTest::addColumn<QString>("told");

    const auto row = [](const Limits &limits, const QByteArray &most, const QByteArray &over, const char *told) {
        QTest::newRow(told) << limits << most << over << QString::fromLatin1(told);
    };
    const auto with = [](auto Limits::*field, int value) {
        Limits limits;
        limits.*field = value;
        return limits;
    };
    row({}, nested(1'024), nested(1'025), "1:3073: Elements are nested more than 1024 deep.");
    row({}, withAttributes(500), withAttributes(501), "1:1: An element has more than 500 attributes.");
    row(with(&Limits::maximumFileSize, 50), "<a>" + QByteArray(43, ' ') + "</a>", "<a>" + QByteArray(44, ' ') + "</a>",
        "The file has more than 50 bytes.");
    row(with(&Limits::maximumElements, 3), "<a><b/><b/></a>", "<a><b/><b/><b/></a>",
        "1:12: There are more than 3 elements.");
    row(with(&Limits::maximumAttributes, 3), "<a b='1'><c d='' e=''/></a>", "<a b='1'><c d='' e=''/><f g=''/></a>",
        "1:24: There are more than 3 attributes.");
    // Characters, as the writer counts them.
    row(with(&Limits::maximumAttributeText, 8), "<a b='\xc3\xa4\xc3\xa4\xc3\xa4'><c d='123'/></a>",
        "<a b='123'><c d='1234'/></a>", "1:12: The attributes have more than 8 characters.");
    row(with(&Limits::maximumDeclarationSize, 17), "<!DOCTYPE a [<!ELEMENT a ANY> ]><a/>",
        "<!DOCTYPE a [<!ELEMENT a ANY>  ]><a/>", "1:30: The document type has more than 17 bytes of declarations.");
    row(with(&Limits::maximumExpansion, 10'000), withEntity(1'000, 8), withEntity(1'000, 10),
        "1:1030: Limit on input amplification factor (from DTD and entities) breached.");
}

void TestReader::limits()
{
    QFETCH(Limits, limits);
    QFETCH(QByteArray, most);
    QFETCH(QByteArray, over);
    RecordingSink sink;
    ReadError error;
    QVERIFY2(read(most, sink, &error, limits), qPrintable(error.toString()));
    QVERIFY(!read(over, sink, &error, limits));
    QTEST(error.toString(), "told");
    QCOMPARE(int(error.kind), int(ReadError::Kind::TooLarge));
}

/// Each of these costs the bare parser seconds to hours, gigabytes, or the stack.
void TestReader::hostile()
{
    QByteArray chain = "<!DOCTYPE a [";
    for (int i = 0; i < 200'000; ++i)
        chain += "<!ENTITY e" + QByteArray::number(i) + " '&e" + QByteArray::number(i + 1) + ";'>";
    const QByteArray defaults = "<!DOCTYPE a [<!ATTLIST b c CDATA '" + QByteArray(15'000, 'x') + "'>]>";
    for (const QByteArray &bytes : { "<!DOCTYPE a [<!ATTLIST a" + numbered(200'000, " n", " CDATA ''") + ">]><a/>",
             defaults + "<a>" + QByteArray("<b/>").repeated(500'000) + "</a>", chain + "]><a>&e0;</a>",
             withEntity(4'000, 1'000'000) }) {
        RecordingSink sink;
        // What the process has worked: a busy machine is no fault.
        const std::clock_t began = std::clock();
        QVERIFY2(!read(bytes, sink, nullptr), bytes.left(100));
        const double seconds = double(std::clock() - began) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 2, qPrintable(QString::number(seconds)));
    }
}

void TestReader::files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<ReadError::Kind>("kind");
    QTest::addColumn<QString>("told");

    const auto row = [](const char *name, ReadError::Kind kind, const char *told) {
        QTest::newRow(name) << QString::fromLatin1(name) << kind << QString::fromLatin1(told);
    };
    row("good", ReadError::Kind::None, "");
    row("nothing", ReadError::Kind::Missing, ": No such file or directory");
    row("good/extension.xml", ReadError::Kind::Missing, ": Not a directory");
    row("", ReadError::Kind::Missing, "Not a file name.");
    row("link to pipe", ReadError::Kind::NotRegular, ": Not a regular file.");
    row("circle", ReadError::Kind::Unreadable, ": Too many levels of symbolic links");
    row("large", ReadError::Kind::TooLarge, ": The file has more than 67108864 bytes.");
    row("bad\nname", ReadError::Kind::Malformed, ":2:6: Mismatched tag.");
}

/// Whatever fails is one line of the log, but that a file is missing none.
void TestReader::files()
{
    QFETCH(QString, name);
    QFETCH(ReadError::Kind, kind);
    QFETCH(QString, told);
    QTemporaryDir directory;
    const auto inside = [&](const char *entry) { return QFile::encodeName(directory.filePath(QLatin1String(entry))); };
    const auto write = [&](const char *entry, const QByteArray &bytes) {
        QFile file(directory.filePath(QLatin1String(entry)));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write("good", "<a/>") && write("bad\nname", "<a>\n<b></a>") && write("large", {}));
    QCOMPARE(::truncate(inside("large").constData(), Limits().maximumFileSize + 1), 0);
    QCOMPARE(::mkfifo(inside("pipe").constData(), 0600), 0);
    QCOMPARE(::symlink("pipe", inside("link to pipe").constData()), 0);
    QCOMPARE(::symlink("circle", inside("circle").constData()), 0);
    const QString path = name.isEmpty() ? QString() : directory.path() + QLatin1Char('/') + name;
    const FileWarnings warnings;
    RecordingSink sink;
    ReadError error;
    QCOMPARE(readFile(path, sink, &error), told.isEmpty());
    QCOMPARE(int(error.kind), int(kind));
    const QString line = QString(path).replace(QLatin1Char('\n'), QLatin1Char('?')) + told;
    if (!told.isEmpty())
        QCOMPARE(error.toString(), line);
    const bool isTold = kind != ReadError::Kind::None && kind != ReadError::Kind::Missing;
    QCOMPARE(warnings.lines(), isTold ? QStringList(line) : QStringList());
}

QTEST_GUILESS_MAIN(TestReader)
#include "tst_reader.moc"

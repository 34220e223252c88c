#include "extensionfile/reader.h"

#include "extensionfile/regularfile.h"
#include "recordingsink.h"

#include <QTemporaryDir>
#include <QTemporaryFile>
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
    void asides();
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
    void files_data();
    void files();
    void descriptorIsReadWhole();
    void translationMarks_data();
    void translationMarks();
};

void TestReader::accepted_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("tree");

    const auto row = [](const char *name, const char *bytes, const char *tree) {
        QTest::newRow(name) << QByteArray(bytes) << QString::fromUtf8(tree);
    };
    row("order kept, white space not trimmed", "<p z='1' a=' 2 ' m=''><q/></p>", "p z=[1] a=[ 2 ] m=[]\n  q");
    row("raw white space is blanks", "<a b='1\t2\n3\r\n4'/>", "a b=[1 2 3 4]");
    row("referenced white space stays", "<a b='1&#9;2&#xa;3&#13;4'/>", "a b=[1\t2\n3\r4]");
    row("references", "<a b='&lt;&gt;&amp;&quot;&apos;&#x1F600;'/>", "a b=[<>&\"'\xf0\x9f\x98\x80]");
    row("prefixes are parts of names", "<x:a x:b='1' y:b='2' xmlns='u' xmlns:x='v'/>",
        "x:a x:b=[1] y:b=[2] xmlns=[u] xmlns:x=[v]");
    row("newer minor version", "<?xml version='1.1' encoding='utf-8'?><a/>", "a");
    row("equal texts, and such that look alike", "<a b='true' c='tue' d='true' e='toue'><b a='' b='tree'/></a>",
        "a b=[true] c=[tue] d=[true] e=[toue]\n  b a=[] b=[tree]");
    row("letters", "<\xc3\xa4 \xd0\xb6='\xe4\xb8\xad'/>", "\xc3\xa4 \xd0\xb6=[\xe4\xb8\xad]");
    row("byte order marks in values", "<a b='\xef\xbb\xbf\xef\xbb\xbf' c='\xef\xbb\xbf_'/>",
        "a b=[\xef\xbb\xbf\xef\xbb\xbf] c=[\xef\xbb\xbf_]");
    row("entity in value", "<!DOCTYPE a [<!-- ' ]> --><!ENTITY e ']>'>]><a b='&e;'/>", "a b=[]>]");
    row("percents", "<!DOCTYPE a SYSTEM 'a%20b' [<!ATTLIST a c CDATA '5%'><!ENTITY % p ''>]><a b='5%c;'/>",
        "a b=[5%c;] c=[5%]");
    row("type declared elsewhere",
        "<!DOCTYPE a SYSTEM 'x' [<!ENTITY e 'y'>]><!--&f;--><a b='&e;&#9;&lt;'>&e;<![CDATA[&f;]]></a>", "a b=[y\t<]");
}

void TestReader::accepted()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, tree);
    RecordingSink sink;
    ReadError error;
    QVERIFY2(read(bytes, sink, &error), qPrintable(error.toString()));
    QCOMPARE(sink.lines.join(QLatin1Char('\n')), tree);
    QCOMPARE(sink.depth, 0);
    QCOMPARE(int(error.kind), int(ReadError::Kind::None));
}

/// What is not kept is told of, each piece once, and of a document type only that it is there.
void TestReader::asides()
{
    const QByteArray text = QByteArray(100, ' ') + "t\n " + QByteArray(100, 'u');
    RecordingSink sink;
    QVERIFY(read("<!--c--><!DOCTYPE a [<!--d--><?e?>]><?i j?><a> \n<b/>\n " + text
            + "<!--<b/>--><![CDATA[<c/>]]>v<d/> </a>\n<!-- -->",
        sink, nullptr));
    const auto named = [](Aside what, const QString &said) { return QStringLiteral("%1 %2").arg(int(what)).arg(said); };
    QCOMPARE(sink.asides,
        QStringList({ named(Aside::Comment, QStringLiteral("c")), named(Aside::DocumentType, QStringLiteral("a")),
            named(Aside::Instruction, QStringLiteral("i")),
            named(Aside::Text, QStringLiteral("t\n ") + QString(77, QLatin1Char('u'))),
            named(Aside::Comment, QStringLiteral("<b/>")), named(Aside::Text, QStringLiteral("<c/>v")),
            named(Aside::Comment, QString()) }));
    QCOMPARE(sink.lines, QStringList({ QStringLiteral("a"), QStringLiteral("  b"), QStringLiteral("  d") }));
}

void TestReader::locations_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("tree");

    const auto row = [](const char *name, const char *bytes, const char *tree) {
        QTest::newRow(name) << QByteArray(bytes) << QString::fromUtf8(tree);
    };
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
    QTest::newRow("of the decoded text") << encoded("UTF-16LE", QStringLiteral("<a>\n <b/></a>"), "\xff\xfe")
                                         << QStringLiteral("a@1:1/0\n  b@2:2/5");
}

void TestReader::locations()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, tree);
    RecordingSink sink(RecordingSink::Places::Print);
    ReadError error;
    QVERIFY2(read(bytes, sink, &error), qPrintable(error.toString()));
    QCOMPARE(sink.lines.join(QLatin1Char('\n')), tree);
}

void TestReader::encodings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("told"); // empty: accepted

    const auto document = [](const char *name) {
        return QStringLiteral("<?xml version='1.0' encoding='%1'?><a b='\u00e4\u20ac'/>").arg(QLatin1String(name));
    };
    const QString bare = QStringLiteral("<a b='\u00e4\u20ac'/>");
    const auto row = [](const char *name, const QByteArray &bytes) { QTest::newRow(name) << bytes << QString(); };
    row("utf-8 declared, small letters", document("utf-8").toUtf8());
    row("utf-8 with mark", "\xef\xbb\xbf" + document("UTF-8").toUtf8());
    row("utf-16 little with mark", encoded("UTF-16LE", document("UTF-16"), "\xff\xfe"));
    row("utf-16 big with mark", encoded("UTF-16BE", document("UTF-16"), "\xfe\xff"));
    row("utf-16 without mark", encoded("UTF-16BE", document("UTF-16BE")));
    row("utf-16 undeclared", encoded("UTF-16LE", bare, "\xff\xfe"));
    row("utf-32 with mark", encoded("UTF-32LE", document("UTF-32"), QByteArray("\xff\xfe\0\0", 4)));
    row("windows-1252", encoded("windows-1252", document("windows-1252")));
    row("an instruction like a declaration", "<?xml-style encoding='UTF-16'?>" + bare.toUtf8());
    const auto refused = [](const char *name, const QByteArray &bytes, const char *told) {
        QTest::newRow(name) << bytes << QStringLiteral("1:1: ") + QLatin1String(told);
    };
    const char *const other = "The declared encoding is not the one of the file.";
    refused("unknown", document("klingon").toUtf8(), "Encoding klingon is not known.");
    refused("declares utf-16, is not", "<?xml version='1.0' encoding='UTF-16'?><a b='12'/>", other);
    refused("mark against declaration", "\xef\xbb\xbf" + document("ISO-8859-1").toUtf8(), other);
    refused("utf-16 against declaration", encoded("UTF-16LE", document("UTF-8"), "\xff\xfe"), other);
    const QByteArray surrogate = encoded("UTF-16LE", QStringLiteral("<a b='"), "\xff\xfe") + QByteArray("\x00\xd8", 2)
        + encoded("UTF-16LE", QStringLiteral("'/>"));
    refused("lone surrogate in utf-16", surrogate, "The text is not valid UTF-16LE.");
    refused("half a character in utf-16", encoded("UTF-16LE", bare) + ' ', "The text is not valid UTF-16LE.");
    refused("bad in us-ascii", document("US-ASCII").toUtf8(), "The text is not valid US-ASCII.");
    refused("bad in shift-jis", document("Shift_JIS").toUtf8() + "\xff", "The text is not valid Shift_JIS.");
}

/// Each is about the same element.
void TestReader::encodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, told);
    RecordingSink sink;
    ReadError error;
    QCOMPARE(read(bytes, sink, &error), told.isEmpty());
    QCOMPARE(error.toString(), told);
    QCOMPARE(sink.lines, told.isEmpty() ? QStringList(QStringLiteral("a b=[\u00e4\u20ac]")) : QStringList());
}

void TestReader::malformed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("told");

    const auto row = [](const char *name, const QByteArray &bytes, const char *told) {
        QTest::newRow(name) << bytes << QString::fromUtf8(told);
    };
    const char *const none = "1:1: No element found.";
    row("empty", "", none);
    row("instruction alone", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n", "2:1: No element found.");
    row("cut in a tag", "<a>\n<b c='", "2:1: Unclosed token.");
    row("cut after the first tag", "<a>", "1:4: No element found.");
    row("tags crossed", "<a>\n <b></a>", "2:7: Mismatched tag.");
    row("attribute twice", "<a b='1' b='1'/>", "1:10: Duplicate attribute.");
    const auto invalid = [&](const char *name, const QByteArray &bytes, const char *place) {
        row(name, bytes, qPrintable(QLatin1String(place) + QLatin1String(": Not well-formed (invalid token).")));
    };
    invalid("attribute without quotes", "<a b=1/>", "1:6");
    invalid("nul", QByteArray("<a b='\0'/>", 10), "1:7");
    invalid("attribute name is a sign", "<a>\n <b $='1'/></a>", "2:5");
    row("reference to a control character", "<a b='&#1;'/>", "1:7: Reference to invalid character number.");
    row("entity not declared", "<a b='&nbsp;'/>", "1:1: Undefined entity.");
    row("entity in itself", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>", "1:36: Recursive entity reference.");
    const char *const external = "External entities are not read.";
    row("external entity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><a>\n&e;</a>",
        qPrintable(QLatin1String("2:1: ") + QLatin1String(external)));
    row("external entity in value", "<!DOCTYPE a [<!ENTITY e SYSTEM 'x'>]><a b='&e;'/>",
        "1:44: Reference to external entity in attribute.");
    const auto unknown = [&](const char *name, const QByteArray &document, const char *place) {
        row(name, document,
            qPrintable(QLatin1String(place)
                + QLatin1String(": The entity f is not declared in the file, and nothing else is read.")));
    };
    unknown("unknown entity in text", "<!DOCTYPE a SYSTEM 'x'>\n<a>&f;</a>", "2:4");
    unknown("unknown entity in value", "<!DOCTYPE a SYSTEM 'x'>\n<a><b c='&#9;&amp;&f;'/></a>", "2:4");
    unknown("unknown entity in a default", "<!DOCTYPE a PUBLIC 'p' 'x' [<!ATTLIST a b CDATA '&f;'>]><a/>", "1:49");
    unknown("unknown entity in an entity", "<!DOCTYPE a SYSTEM 'x' [<!ENTITY e '<b c=\"&f;\"/>'>]><a>&e;</a>", "1:36");
    const char *const parameter = "Parameter entities are not supported.";
    for (const char *standalone : { "yes", "no" })
        row(standalone, QByteArray("<?xml version='1.0' standalone='") + standalone + "'?>\n<!DOCTYPE a [ %p;]><a/>",
            qPrintable(QLatin1String("2:15: ") + QLatin1String(parameter)));
    row("text after the root", "<a/>x", "1:5: Junk after document element.");
    row("declaration damaged", "<?xml version='1.0' encoding=utf-8?><a/>", "1:30: XML declaration not well-formed.");
    row("declaration of a later version", "<?xml version='2.0'?><a/>", "1:1: XML 2.0 is not known.");
    const auto utf8 = [&](const char *name, const QByteArray &bytes, const char *place) {
        row(name, bytes, qPrintable(QLatin1String(place) + QLatin1String(": The text is not valid UTF-8.")));
    };
    row("cut sequence", "<a/><!--\xe2\x82", "1:5: Partial character.");
    utf8("surrogate in utf-8", "<a b='\xed\xa0\x80'/>", "1:7");
    utf8("bad byte in the third line", "<a>\n<b/>\n \xc3\xa4 \xff</a>", "3:4");
    invalid("no character", "<a b='\xef\xbf\xbe'/>", "1:7");
    invalid("no character in a name, utf-16",
        encoded("UTF-16LE", QStringLiteral("<a b"), "\xff\xfe") + "\xff\xff"
            + encoded("UTF-16LE", QStringLiteral("='1'/>")),
        "1:5");
}

void TestReader::malformed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, told);
    RecordingSink sink;
    ReadError error;
    QVERIFY2(!read(bytes, sink, &error), qPrintable(sink.lines.join(QLatin1Char('\n'))));
    QCOMPARE(error.toString(), told);
    QCOMPARE(int(error.kind), int(ReadError::Kind::Malformed));
}

void TestReader::limits_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<QString>("told"); // empty: accepted

    const auto rows = [](const char *name, const Limits &limits, const QByteArray &most, const QByteArray &over,
                          const QString &told) {
        QTest::addRow("%s, at the limit", name) << most << limits << QString();
        QTest::addRow("%s, one over", name) << over << limits << told;
    };
    const Limits standard;
    rows("depth", standard, nested(1'024), nested(1'025),
        QStringLiteral("1:3073: Elements are nested more than 1024 deep."));
    rows("attributes of an element", standard, withAttributes(500), withAttributes(501),
        QStringLiteral("1:1: An element has more than 500 attributes."));
    Limits few;
    few.maximumFileSize = 50;
    rows("file size", few, "<a>" + QByteArray(43, ' ') + "</a>", "<a>" + QByteArray(44, ' ') + "</a>",
        QStringLiteral("The file has more than 50 bytes."));
    few = Limits();
    few.maximumElements = 3;
    rows("elements", few, "<a><b/><b/></a>", "<a><b/><b/><b/></a>",
        QStringLiteral("1:12: There are more than 3 elements."));
    few = Limits();
    few.maximumAttributes = 3;
    rows("all attributes", few, "<a b='1'><c d='' e=''/></a>", "<a b='1'><c d='' e=''/><f g=''/></a>",
        QStringLiteral("1:24: There are more than 3 attributes."));
    few = Limits();
    few.maximumAttributeText = 8;
    // Characters, as the writer counts them.
    rows("attribute text", few, "<a b='\xc3\xa4\xc3\xa4\xc3\xa4'><c d='123'/></a>", "<a b='123'><c d='1234'/></a>",
        QStringLiteral("1:12: The attributes have more than 8 characters."));
    few = Limits();
    few.maximumDeclarationSize = 17;
    rows("declarations", few, "<!DOCTYPE a [<!ELEMENT a ANY> ]><a/>", "<!DOCTYPE a [<!ELEMENT a ANY>  ]><a/>",
        QStringLiteral("1:30: The document type has more than 17 bytes of declarations."));
    few = Limits();
    few.maximumExpansion = 10'000;
    rows("entities", few, withEntity(1'000, 8), withEntity(1'000, 10),
        QStringLiteral("1:1030: Limit on input amplification factor (from DTD and entities) breached."));
}

void TestReader::limits()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Limits, limits);
    QFETCH(QString, told);
    RecordingSink sink;
    ReadError error;
    QCOMPARE(read(bytes, sink, &error, limits), told.isEmpty());
    QCOMPARE(error.toString(), told);
    QCOMPARE(int(error.kind), int(told.isEmpty() ? ReadError::Kind::None : ReadError::Kind::TooLarge));
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
    QByteArray declared = "<!DOCTYPE a [<!ATTLIST a";
    for (int i = 0; i < 200'000; ++i)
        declared += " n" + QByteArray::number(i) + " CDATA ''";
    QTest::newRow("200,000 declared attributes") << declared + ">]><a/>";
    QTest::newRow("a long default for every element") << "<!DOCTYPE a [<!ATTLIST b c CDATA '" + QByteArray(15'000, 'x')
            + "'>]><a>" + QByteArray("<b/>").repeated(500'000) + "</a>";
    QTest::newRow("a million levels") << nested(1'000'000);
    QByteArray chain = "<!DOCTYPE a [";
    for (int i = 0; i < 200'000; ++i)
        chain += "<!ENTITY e" + QByteArray::number(i) + " '&e" + QByteArray::number(i + 1) + ";'>";
    QTest::newRow("a chain of 200,000 entities") << chain + "]><a>&e0;</a>";
}

/// Each of these costs the bare parser seconds to hours, gigabytes, or the stack.
void TestReader::hostile()
{
    QFETCH(QByteArray, bytes);
    RecordingSink sink;
    // What the process has worked: a busy machine is no fault.
    const std::clock_t began = std::clock();
    QVERIFY(!read(bytes, sink, nullptr));
    const double seconds = double(std::clock() - began) / CLOCKS_PER_SEC;
    QVERIFY2(seconds < 2, qPrintable(QString::number(seconds)));
}

void TestReader::files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<ReadError::Kind>("kind");
    QTest::addColumn<QString>("told");

    const auto row = [](const char *name, ReadError::Kind kind, const char *told) {
        QTest::newRow(name) << QString::fromLatin1(name) << kind << QString::fromLatin1(told);
    };
    const char *const irregular = ": Not a regular file.";
    row("good", ReadError::Kind::None, "");
    row("nothing", ReadError::Kind::Missing, ": No such file or directory");
    row("good/extension.xml", ReadError::Kind::Missing, ": Not a directory");
    row("", ReadError::Kind::Missing, "Not a file name.");
    row("dangling", ReadError::Kind::Missing, ": No such file or directory");
    row(".", ReadError::Kind::NotRegular, irregular);
    row("pipe", ReadError::Kind::NotRegular, irregular);
    row("link to pipe", ReadError::Kind::NotRegular, irregular);
    row("link to an endless device", ReadError::Kind::NotRegular, irregular);
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
    QCOMPARE(::symlink("/dev/zero", inside("link to an endless device").constData()), 0);
    QCOMPARE(::symlink("circle", inside("circle").constData()), 0);
    QCOMPARE(::symlink("nothing", inside("dangling").constData()), 0);
    static QStringList messages;
    messages.clear();
    const QtMessageHandler before
        = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
              if (type == QtWarningMsg && qstrcmp(context.category, "extpoint.file") == 0)
                  messages += text;
          });
    const QString path = name.isEmpty() ? QString() : directory.path() + QLatin1Char('/') + name;
    RecordingSink sink;
    ReadError error;
    const bool done = readFile(path, sink, &error);
    qInstallMessageHandler(before);
    QCOMPARE(done, told.isEmpty());
    QCOMPARE(int(error.kind), int(kind));
    QCOMPARE(error.path, path);
    if (done)
        return;
    const QString line = QString(path).replace(QLatin1Char('\n'), QLatin1Char('?')) + told;
    QCOMPARE(error.toString(), line);
    QCOMPARE(messages, kind == ReadError::Kind::Missing ? QStringList() : QStringList(line));
}

void TestReader::descriptorIsReadWhole()
{
    QTemporaryFile file;
    QByteArray content;
    for (int i = 0; i < 200'000; ++i)
        content += char('a' + i % 23);
    QVERIFY(file.open() && file.write(content) == content.size() && file.flush());
    for (const int maximum : { 0, 150'000, 199'999, 200'000, 1'000'000 }) {
        QByteArray bytes;
        QVERIFY(file.seek(0) && readDescriptor(file.handle(), maximum, &bytes));
        QCOMPARE(bytes, content.left(maximum + 1));
    }
}

void TestReader::translationMarks_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("bare");

    const auto row = [](const char *name, const char *marked, const char *bare) {
        QTest::newRow(name) << QString::fromLatin1(marked) << QString::fromLatin1(bare);
    };
    row("two", "tr('Open')tr(' file')", "Open file");
    row("among others", "a tr('b') c", "a b c");
    row("opened only", "tr('Open", "tr('Open");
    row("closed only", "Open')", "Open')");
    row("other letter case", "TR('Open')", "TR('Open')");
    row("in the wrong order", "')tr('", "");
    row("more of one than of the other", "tr('a')b')", "ab");
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

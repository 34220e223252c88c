#include "extensionfile/writer.h"

#include "extensionfile/names.h"
#include "extensionfile/reader.h"
#include "randomtree.h"
#include "recordingsink.h"

#include <QBuffer>
#include <QDomDocument>
#include <QTest>
#include <QTextStream>

#include <functional>

using namespace ExtensionFile;

using Steps = std::function<void(Writer &)>;
Q_DECLARE_METATYPE(Steps)
Q_DECLARE_METATYPE(Limits)

namespace {

/// The tree as RecordingSink prints it, or the reason why `bytes` can't be read.
QStringList reread(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    RecordingSink sink;
    ReadError error;
    if (!buffer.open(QIODevice::ReadOnly) || !read(buffer, sink, &error))
        return { error.toString() };
    return sink.lines;
}

void write(Writer &writer, const RandomElement &element)
{
    writer.startElement(element.name);
    for (const auto &attribute : element.attributes)
        writer.attribute(attribute.first, attribute.second);
    for (const RandomElement &child : element.children)
        write(writer, child);
    writer.endElement();
}

void print(const RandomElement &element, int depth, QStringList *lines)
{
    QString line = QString(depth * 2, QLatin1Char(' ')) + element.name;
    for (const auto &attribute : element.attributes)
        line += QStringLiteral(" %1=[%2]").arg(attribute.first, attribute.second);
    lines->append(line);
    for (const RandomElement &child : element.children)
        print(child, depth + 1, lines);
}

/// The other reader keeps no order of attributes, so it is asked for each one.
bool isSame(const RandomElement &element, const QDomElement &other)
{
    if (other.tagName() != element.name || other.attributes().size() != element.attributes.size())
        return false;
    for (const auto &attribute : element.attributes) {
        if (!other.hasAttribute(attribute.first) || other.attribute(attribute.first) != attribute.second)
            return false;
    }
    QDomElement child = other.firstChildElement();
    for (const RandomElement &expected : element.children) {
        if (!isSame(expected, child))
            return false;
        child = child.nextSiblingElement();
    }
    return child.isNull();
}

QDomElement toDom(QDomDocument &document, const RandomElement &element)
{
    QDomElement made = document.createElement(element.name);
    for (const auto &attribute : element.attributes)
        made.setAttribute(attribute.first, attribute.second);
    for (const RandomElement &child : element.children)
        made.appendChild(toDom(document, child));
    return made;
}

QByteArray savedByDom(const RandomElement *root)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\"")));
    if (root)
        document.appendChild(toDom(document, *root));
    QByteArray bytes;
    QTextStream stream(&bytes);
    stream.setCodec("UTF-8");
    document.save(stream, 4);
    stream.flush();
    return bytes;
}

const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");
const QString c = QStringLiteral("c");

} // namespace

class TestWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void randomTreesComeBack();
    void sameBytesAsDom();
    void illegalContent_data();
    void illegalContent();
    void failures_data();
    void failures();
    void neverMoreThanTheReaderTakes_data();
    void neverMoreThanTheReaderTakes();
    void logIsBounded();
    void names_data();
    void names();
    void everyCharacterComesBack();

private:
    static QStringList s_messages;
    QtMessageHandler m_before = nullptr;
};

QStringList TestWriter::s_messages;

void TestWriter::init()
{
    s_messages.clear();
    m_before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &text) {
        if (qstrcmp(context.category, "extpoint.file") == 0)
            s_messages.append(text);
    });
}

void TestWriter::cleanup()
{
    qInstallMessageHandler(m_before);
}

void TestWriter::randomTreesComeBack()
{
    for (quint32 seed = 0; seed < 300; ++seed) {
        QRandomGenerator random(seed);
        const RandomElement root = randomElement(random, 5, 6);
        Writer writer;
        write(writer, root);
        const QByteArray bytes = writer.finish();
        QStringList expected;
        print(root, 0, &expected);
        QVERIFY2(
            reread(bytes) == expected, qPrintable(QStringLiteral("seed %1:\n").arg(seed) + QString::fromUtf8(bytes)));
        QDomDocument document;
        QVERIFY(document.setContent(bytes));
        QVERIFY2(isSame(root, document.documentElement()), qPrintable(QStringLiteral("seed %1").arg(seed)));
    }
    QCOMPARE(s_messages, QStringList());
}

void TestWriter::sameBytesAsDom()
{
    QCOMPARE(Writer().finish(), savedByDom(nullptr));
    QCOMPARE(Writer::instructionAlone(), savedByDom(nullptr));
    for (quint32 seed = 0; seed < 300; ++seed) {
        QRandomGenerator random(seed);
        // One attribute each: the order of several is accidental there.
        const RandomElement root = randomElement(random, 5, 1);
        Writer writer;
        write(writer, root);
        QCOMPARE(writer.finish(), savedByDom(&root));
    }
}

void TestWriter::illegalContent_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<int>("omissions");

    const auto value = [](const char *name, const QString &given, const QString &written, int omissions) {
        QTest::newRow(name) << Steps([given](Writer &writer) {
            writer.attribute(b, given);
            writer.attribute(c, QStringLiteral("rest"));
        }) << QStringLiteral("a b=[%1] c=[rest]").arg(written)
                            << omissions;
    };
    const QChar high(0xd83d);
    const QChar low(0xde00);
    value("nul", QStringLiteral("x%1y").arg(QChar(0)), QStringLiteral("xy"), 1);
    value("several control characters", QStringLiteral("\u0001x\u001f\u000by"), QStringLiteral("xy"), 1);
    value("white space is legal", QStringLiteral("x\t\n\ry"), QStringLiteral("x\t\n\ry"), 0);
    value("high surrogate", QStringLiteral("x%1y").arg(high), QStringLiteral("xy"), 1);
    value("high surrogate at the end", QStringLiteral("x%1").arg(high), QStringLiteral("x"), 1);
    value("low surrogate", QStringLiteral("%1y").arg(low), QStringLiteral("y"), 1);
    value("low surrogates", QStringLiteral("x%1%1y").arg(low), QStringLiteral("xy"), 1);
    value("high before a pair", high + QStringLiteral("\U0001F600"), QStringLiteral("\U0001F600"), 1);
    value("no characters", QStringLiteral("x%1%2y").arg(QChar(0xfffe)).arg(QChar(0xffff)), QStringLiteral("xy"), 1);
    value("replacement character is legal", QStringLiteral("\ufffd"), QStringLiteral("\ufffd"), 0);

    for (const char *bad :
        { "", " ", "1a", "-a", "a b", "a=", "a/", "a>", ":", ":a", "a:", "x:y:z", "<", "a\n", "\u00d7" }) {
        const QString name = QString::fromUtf8(bad);
        QTest::addRow("attribute named \"%s\"", bad) << Steps([name](Writer &writer) {
            writer.attribute(name, QStringLiteral("1"));
            writer.attribute(c, QStringLiteral("2"));
        }) << QStringLiteral("a c=[2]") << 1;
        QTest::addRow("element named \"%s\"", bad) << Steps([name](Writer &writer) {
            writer.startElement(b);
            writer.endElement();
            writer.startElement(name);
            writer.attribute(b, QStringLiteral("lost"));
            writer.startElement(c);
            writer.attribute(b, QStringLiteral("1"));
            writer.startElement(b);
            writer.endElement();
            writer.endElement();
            writer.endElement();
            writer.startElement(c);
            writer.endElement();
        }) << QStringLiteral("a\n  b\n  c b=[1]\n    b\n  c")
                                                   << 1;
    }
    QTest::newRow("illegal without children") << Steps([](Writer &writer) {
        writer.startElement(QString());
        writer.endElement();
    }) << QStringLiteral("a") << 1;
    QTest::newRow("illegal in illegal") << Steps([](Writer &writer) {
        writer.startElement(QString());
        writer.startElement(QStringLiteral("1"));
        writer.startElement(b);
        writer.endElement();
        writer.endElement();
        writer.endElement();
    }) << QStringLiteral("a\n  b") << 2;
    QTest::newRow("attribute twice") << Steps([](Writer &writer) {
        writer.attribute(b, QStringLiteral("first"));
        writer.attribute(b, QStringLiteral("second"));
        writer.attribute(c, QStringLiteral("rest"));
    }) << QStringLiteral("a b=[first] c=[rest]")
                                     << 1;
    QTest::newRow("attribute names may be newer than element names") << Steps([](Writer &writer) {
        writer.attribute(QStringLiteral("\u0132"), QStringLiteral("1"));
        writer.startElement(QStringLiteral("\u0132"));
        writer.endElement();
    }) << QStringLiteral("a \u0132=[1]") << 1;
    QTest::newRow("same name in the child") << Steps([](Writer &writer) {
        writer.attribute(b, QStringLiteral("1"));
        writer.startElement(c);
        writer.attribute(b, QStringLiteral("2"));
        writer.endElement();
    }) << QStringLiteral("a b=[1]\n  c b=[2]")
                                            << 0;
}

/// Each row fills the root element "a".
void TestWriter::illegalContent()
{
    QFETCH(Steps, steps);
    QFETCH(QString, tree);
    QFETCH(int, omissions);
    Writer writer(QStringLiteral("file.xml"));
    writer.startElement(a);
    steps(writer);
    writer.endElement();
    QCOMPARE(reread(writer.finish()).join(QLatin1Char('\n')), tree);
    QCOMPARE(writer.omissions(), omissions);
    QCOMPARE(s_messages.size(), omissions);
    for (const QString &message : qAsConst(s_messages))
        QVERIFY2(message.startsWith(QLatin1String("file.xml: left out: ")) && !message.contains(QLatin1Char('\n')),
            qPrintable(message));
}

void TestWriter::failures_data()
{
    QTest::addColumn<Steps>("steps");

    QTest::newRow("root without a legal name") << Steps([](Writer &writer) {
        writer.startElement(QStringLiteral("not a name"));
        writer.startElement(a);
        writer.endElement();
        writer.endElement();
    });
    QTest::newRow("second root") << Steps([](Writer &writer) {
        writer.startElement(a);
        writer.endElement();
        writer.startElement(a);
        writer.endElement();
    });
    QTest::newRow("not ended") << Steps([](Writer &writer) { writer.startElement(a); });
    QTest::newRow("ended too often") << Steps([](Writer &writer) {
        writer.startElement(a);
        writer.endElement();
        writer.endElement();
    });
    QTest::newRow("attribute before the root") << Steps([](Writer &writer) { writer.attribute(a, b); });
    QTest::newRow("attribute after a child") << Steps([](Writer &writer) {
        writer.startElement(a);
        writer.startElement(b);
        writer.endElement();
        writer.attribute(a, b);
        writer.endElement();
    });
}

void TestWriter::failures()
{
    QFETCH(Steps, steps);
    Writer writer;
    steps(writer);
    QVERIFY(writer.finish().isNull());
    QVERIFY(writer.hasFailed() && !writer.failure().isEmpty());
    QCOMPARE(s_messages.size(), 1);
}

void TestWriter::neverMoreThanTheReaderTakes_data()
{
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<int>("most"); // elements in a column, with as many attributes on each as the row says
    QTest::addColumn<int>("attributes");

    Limits limits;
    QTest::newRow("depth") << limits << limits.maximumDepth << 0;
    limits.maximumElements = 10;
    QTest::newRow("elements") << limits << 10 << 1;
    limits = Limits();
    limits.maximumAttributes = 30;
    QTest::newRow("attributes") << limits << 10 << 3;
    limits = Limits();
    limits.maximumAttributeText = 60;
    QTest::newRow("text") << limits << 10 << 3; // "n0", "n1", "n2"
    limits = Limits();
    limits.maximumFileSize = 39 + 9 + 4 + 5 + 4; // instruction, <a>, <a/> and </a>, each with its line end and indent
    QTest::newRow("size") << limits << 2 << 0;
}

void TestWriter::neverMoreThanTheReaderTakes()
{
    QFETCH(Limits, limits);
    QFETCH(int, most);
    QFETCH(int, attributes);
    for (const int count : { most, most + 1 }) {
        Writer writer(QString(), limits);
        for (int i = 0; i < count; ++i) {
            writer.startElement(a);
            for (int n = 0; n < attributes; ++n)
                writer.attribute(QStringLiteral("n%1").arg(n), QString());
        }
        for (int i = 0; i < count; ++i)
            writer.endElement();
        const QByteArray bytes = writer.finish();
        QCOMPARE(writer.hasFailed(), count > most);
        QCOMPARE(bytes.isNull(), count > most);
        if (!bytes.isNull()) {
            QBuffer buffer;
            buffer.setData(bytes);
            RecordingSink sink;
            QVERIFY(buffer.open(QIODevice::ReadOnly) && read(buffer, sink, nullptr, limits));
            QCOMPARE(sink.deepest, count);
        }
    }
}

void TestWriter::logIsBounded()
{
    Writer writer;
    writer.startElement(a);
    for (int i = 0; i < 100'000; ++i)
        writer.attribute(QString(), QString());
    writer.endElement();
    QVERIFY(!writer.finish().isNull());
    QCOMPARE(writer.omissions(), 100'000);
    QCOMPARE(s_messages.size(), 21);
    QVERIFY2(s_messages.last().contains(QLatin1String("99980")), qPrintable(s_messages.last()));
}

void TestWriter::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("element");
    QTest::addColumn<bool>("attribute");

    for (const char *name :
        { "a", "_", "A1", "a-b.c", "x:y", "xml:lang", "xmlns", "\u00e9", "\u4e2d\u6587", "a\u00b7", "a\u0301" })
        QTest::addRow("%s", name) << QString::fromUtf8(name) << true << true;
    // What is newer than the parser's table of letters.
    for (const char *name : { "\u0132", "\u3f3c", "a\u2c00", "x:1" })
        QTest::addRow("attribute only: %s", name) << QString::fromUtf8(name) << false << true;
    for (const char *name : { "", " a", "a ", "1", "-", ".", "$", "\u00b7", "a\u00d7", "a\u037e", "\u2040",
             "a\xef\xbf\xbf", "a'", "a\"", "a&b", "a;", "a<", "a\t", "a\x01", ":", ":a", "a:", "x:y:z" })
        QTest::addRow("not \"%s\"", name) << QString::fromUtf8(name) << false << false;
    QTest::newRow("not a nul") << QStringLiteral("a%1").arg(QChar(0)) << false << false;
    QTest::newRow("not half a pair") << QStringLiteral("a%1").arg(QChar(0xd83d)) << false << false;
    QTest::newRow("4,000 characters") << QString(4'000, QLatin1Char('n')) << true << true;
    QTest::newRow("not 5,000 characters") << QString(5'000, QLatin1Char('n')) << false << false;
}

/// The reader has the last word: what is valid is read, and what is not is refused or at least read as something else.
void TestWriter::names()
{
    QFETCH(QString, name);
    QFETCH(bool, element);
    QFETCH(bool, attribute);
    QCOMPARE(isValidName(name), element);
    QCOMPARE(isValidAttributeName(name), attribute);
    QCOMPARE(reread(QStringLiteral("<%1/>").arg(name).toUtf8()) == QStringList(name), element);
    const QStringList read = reread(QStringLiteral("<a %1='1'/>").arg(name).toUtf8());
    QCOMPARE(read == QStringList(QStringLiteral("a %1=[1]").arg(name)), attribute);
}

/// The basic plane in blocks, and some characters beyond it.
void TestWriter::everyCharacterComesBack()
{
    for (uint block = 0; block < 0x20000; block += 0x100) {
        QString value;
        for (uint code = block; code < block + 0x100; ++code) {
            const bool legal = (code >= 0x20 || code == 9 || code == 10 || code == 13)
                && (code < 0xd800 || code > 0xdfff) && code != 0xfffe && code != 0xffff;
            if (legal)
                value += QString::fromUcs4(&code, 1);
        }
        Writer writer;
        writer.startElement(a);
        writer.attribute(b, value);
        writer.endElement();
        QCOMPARE(reread(writer.finish()), QStringList(QStringLiteral("a b=[%1]").arg(value)));
        QCOMPARE(writer.omissions(), 0);
    }
}

QTEST_GUILESS_MAIN(TestWriter)
#include "tst_writer.moc"

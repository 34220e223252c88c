#include "extensionfile/writer.h"

#include "extensionfile/names.h"
#include "extensionfile/reader.h"
#include "extensionfile/safesave.h"
#include "recordingsink.h"

#include <QDomDocument>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <sys/stat.h>
#include <unistd.h>

using namespace ExtensionFile;

namespace {

/// An element with what is in it.
struct Element
{
    QString name;
    QVector<QPair<QString, QString>> attributes;
    QVector<Element> children;
};

QString randomPick(QRandomGenerator &random, const QStringList &from)
{
    return from.at(random.bounded(from.size()));
}

/// Values full of what needs escaping, beside ordinary ones; everything in them is legal in XML.
QString randomValue(QRandomGenerator &random)
{
    static const QStringList pieces
        = QStringLiteral("Open file|&|<|>|]]>|\"|'|\n|\r\n|\t|  |tr('x')|\u00e4\u20ac\u4e2d|\U0001F600|"
                         "\u0085\u2028\u007f|&amp;#x1;")
              .split(QLatin1Char('|'));
    QString value;
    for (int i = random.bounded(5); i > 0; --i)
        value += randomPick(random, pieces);
    return value;
}

/// From a seed, so that a failing round can be repeated.
Element randomTree(QRandomGenerator &random, int depth, int maximumAttributes)
{
    static const QStringList names
        = QStringLiteral("ExtPoint|a|x:y|_1.-|\u00e9t\u00e9|\u4e2d\u6587").split(QLatin1Char('|'));
    Element element { randomPick(random, names), {}, {} };
    const int attributes = random.bounded(maximumAttributes + 1);
    for (int i = 0; i < attributes; ++i)
        element.attributes.append({ randomPick(random, names) + QString::number(i), randomValue(random) });
    for (int i = depth > 0 ? random.bounded(4) : 0; i > 0; --i)
        element.children.append(randomTree(random, depth - 1, maximumAttributes));
    return element;
}

/// The tree as RecordingSink prints it, or the reason why @p bytes can't be read.
QString reread(const QByteArray &bytes)
{
    RecordingSink sink;
    ReadError error;
    return read(bytes, sink, &error) ? sink.tree() : error.toString();
}

void write(Writer &writer, const Element &element)
{
    writer.startElement(element.name);
    for (const auto &attribute : element.attributes)
        writer.attribute(attribute.first, attribute.second);
    for (const Element &child : element.children)
        write(writer, child);
    writer.endElement();
}

QString print(const Element &element, int depth = 0)
{
    QString lines = QString(depth * 2, QLatin1Char(' ')) + element.name;
    for (const auto &attribute : element.attributes)
        lines += QStringLiteral(" %1=[%2]").arg(attribute.first, attribute.second);
    for (const Element &child : element.children)
        lines += QLatin1Char('\n') + print(child, depth + 1);
    return lines;
}

QDomElement toDom(QDomDocument &document, const Element &element)
{
    QDomElement made = document.createElement(element.name);
    for (const auto &attribute : element.attributes)
        made.setAttribute(attribute.first, attribute.second);
    for (const Element &child : element.children)
        made.appendChild(toDom(document, child));
    return made;
}

QByteArray savedByDom(const Element *root)
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

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status;
}

const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");
const QString c = QStringLiteral("c");

} // namespace

Q_DECLARE_METATYPE(Element)

class TestWriter : public QObject
{
    Q_OBJECT

private slots:
    void randomTrees();
    void illegalContent_data();
    void illegalContent();
    void failures();
    void neverMoreThanTheReaderTakes();
    void names();
    void everyCharacter();
    void documents_data();
    void documents();
    void paths();
};

void TestWriter::randomTrees()
{
    const FileWarnings warnings;
    QCOMPARE(Writer::instructionAlone(), savedByDom(nullptr));
    for (quint32 seed = 0; seed < 300; ++seed) {
        QRandomGenerator random(seed);
        // The order of several attributes is accidental in a DOM.
        const bool isComparable = seed % 2 == 0;
        const Element root = randomTree(random, 5, isComparable ? 1 : 6);
        Writer writer;
        write(writer, root);
        const QByteArray bytes = writer.finish();
        QVERIFY2(reread(bytes) == print(root),
            qPrintable(QStringLiteral("seed %1:\n").arg(seed) + QString::fromUtf8(bytes)));
        if (isComparable)
            QCOMPARE(bytes, savedByDom(&root));
    }
    QCOMPARE(warnings.lines(), QStringList());
}

void TestWriter::illegalContent_data()
{
    QTest::addColumn<Element>("root");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<int>("omissions");

    const QString x = QStringLiteral("x");
    const auto value = [&](const char *name, const QString &given, const QString &written) {
        QTest::newRow(name) << Element { a, { { b, given }, { c, x } }, {} }
                            << QStringLiteral("a b=[%1] c=[x]").arg(written) << 1;
    };
    const QChar high(0xd83d);
    const QChar low(0xde00);
    value("high surrogate", x + high + x, QStringLiteral("xx"));
    value("high surrogate at the end", x + high, x);
    value("low surrogates", low + x + low + low + x, QStringLiteral("xx"));
    value("high before a pair", high + QStringLiteral("\U0001F600"), QStringLiteral("\U0001F600"));

    const Element inner { c, { { b, x } }, { { b, {}, {} } } };
    for (const char *bad : { "", "1a", "a b", "\u0132" }) {
        const QString name = QString::fromUtf8(bad);
        QTest::addRow("attribute named \"%s\"", bad)
            << Element { a, { { name, x }, { c, x } }, {} } << QStringLiteral("a c=[x]") << 1;
        QTest::addRow("element named \"%s\"", bad)
            << Element { a, {}, { { b, {}, {} }, { name, { { b, x } }, { inner } }, { c, {}, {} } } }
            << QStringLiteral("a\n  b\n  c b=[x]\n    b\n  c") << 1;
    }
    QTest::newRow("without children") << Element { a, {}, { {} } } << a << 1;
    QTest::newRow("illegal in illegal") << Element { a, {}, { { {}, {}, { { {}, {}, { inner } } } } } }
                                        << QStringLiteral("a\n  c b=[x]\n    b") << 2;
    QTest::newRow("a hundred thousand") << Element { a, QVector<QPair<QString, QString>>(100'000), {} } << a << 100'000;
    QTest::newRow("attribute twice, and in the child") << Element { a, { { b, x }, { b, c }, { c, x } }, { inner } }
                                                       << QStringLiteral("a b=[x] c=[x]\n  c b=[x]\n    b") << 1;
}

/// Twenty lines of the log at most, and one for the rest.
void TestWriter::illegalContent()
{
    QFETCH(Element, root);
    QFETCH(int, omissions);
    const FileWarnings warnings;
    Writer writer(QStringLiteral("file.xml"));
    write(writer, root);
    QTEST(reread(writer.finish()), "tree");
    QCOMPARE(writer.omissions(), omissions);
    QCOMPARE(warnings.lines().size(), qMin(omissions, 21));
    for (const QString &line : warnings.lines().mid(0, 20))
        QVERIFY2(line.startsWith(QLatin1String("file.xml: left out: ")) && !line.contains(QLatin1Char('\n')),
            qPrintable(line));
    if (omissions > 20)
        QCOMPARE(warnings.lines().last(), QStringLiteral("file.xml: left out %1 more").arg(omissions - 20));
}

/// "<" starts an element, "!" one without a legal name, ">" ends it, "=" is an attribute.
void TestWriter::failures()
{
    for (const QByteArray steps : { "!<>>", "<><>", "<", "<>>", "=", "<<>=>" }) {
        const FileWarnings warnings;
        Writer writer;
        for (const char step : steps) {
            if (step == '>')
                writer.endElement();
            else if (step == '=')
                writer.attribute(a, b);
            else
                writer.startElement(step == '<' ? a : QStringLiteral("not a name"));
        }
        QVERIFY2(writer.finish().isNull() && writer.hasFailed() && !writer.failure().isEmpty(), steps);
        QCOMPARE(warnings.lines().size(), 1);
    }
}

void TestWriter::neverMoreThanTheReaderTakes()
{
    // Elements in a column, with as many attributes on each.
    const auto check = [](const Limits &limits, int most, int attributes) {
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
            RecordingSink sink;
            QVERIFY(bytes.isNull() || read(bytes, sink, nullptr, limits));
        }
    };
    const auto with = [](auto Limits::*field, int value) {
        Limits limits;
        limits.*field = value;
        return limits;
    };
    check({}, 1'024, 0); // deep
    check(with(&Limits::maximumElements, 10), 10, 1);
    check(with(&Limits::maximumAttributes, 30), 10, 3);
    check(with(&Limits::maximumAttributeText, 60), 10, 3); // "n0", "n1", "n2"
    // Instruction, <a>, <a/> and </a>, each with its line end and indent.
    check(with(&Limits::maximumFileSize, 39 + 9 + 4 + 5 + 4), 2, 0);
}

/// The reader has the last word: a name is what it reads as one. Out of anything else one can be made.
void TestWriter::names()
{
    const auto check = [](const QString &name, const QString &made) {
        const QByteArray attribute = QStringLiteral("<a %1='1'/>").arg(name).toUtf8();
        const bool isRead = reread(attribute) == QStringLiteral("a %1=[1]").arg(name);
        QVERIFY2(isName(name) == (name == made) && isRead == (name == made), attribute);
        QCOMPARE(nameFrom(name), made);
        QCOMPARE(reread(QStringLiteral("<%1/>").arg(made).toUtf8()), made);
    };
    for (const char *name : { "a", "_", "A1", "a-b.c", "xml:lang", ":a:b:", "\u00e9", "\u4e2d\u6587", "a\u00b7" })
        check(QString::fromUtf8(name), QString::fromUtf8(name));
    for (const char *sign : { " ", "&", ";", "<", ">", "/", "=", "'", "\"", "\t", "\n", "\x01", "$", "\u00d7", "\u037e",
             "\u2040", "\u0132", "\uffff" })
        check(QString::fromUtf8(sign) + a, QLatin1Char('_') + a);
    check(QString(), QStringLiteral("_"));
    check(QStringLiteral("1"), QStringLiteral("_1"));
    check(QStringLiteral("-a b"), QStringLiteral("_-a_b"));
    check(QStringLiteral("\u0301"), QStringLiteral("_\u0301"));
    check(QStringLiteral("Gr\u00f6\u00dfe 1"), QStringLiteral("Gr\u00f6\u00dfe_1"));
    check(QStringLiteral("a\U00010000"), QStringLiteral("a__"));
    check(a + QChar(0) + a, QStringLiteral("a_a"));
    check(a + QChar(0xd83d), QStringLiteral("a_"));
    check(QString(4'000, QLatin1Char('n')), QString(4'000, QLatin1Char('n')));
    check(QString(4'000, QLatin1Char('1')), QLatin1Char('_') + QString(1'000, QLatin1Char('1')));
}

/// The basic plane in blocks, and some characters beyond it; halves of pairs have rows of their own.
void TestWriter::everyCharacter()
{
    for (uint block = 0; block < 0x20000; block += 0x100) {
        if (block >= 0xd800 && block < 0xe000)
            continue;
        QString value;
        QString legal;
        for (uint code = block; code < block + 0x100; ++code) {
            value += QString::fromUcs4(&code, 1);
            if ((code >= 0x20 || code == 9 || code == 10 || code == 13) && code != 0xfffe && code != 0xffff)
                legal += QString::fromUcs4(&code, 1);
        }
        Writer writer;
        write(writer, { a, { { b, value } }, {} });
        QCOMPARE(reread(writer.finish()), QStringLiteral("a b=[%1]").arg(legal));
        QCOMPARE(writer.omissions(), legal == value ? 0 : 1);
    }
}

/// What a path and a document must be to be saved. What happens on disks and to links, rights and other processes is
/// the fault table's.
void TestWriter::documents_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<bool>("linked");

    const auto rows = [](const char *name, const QByteArray &bytes, const QString &reason) {
        QTest::addRow("%s, replaced", name) << bytes << reason << false;
        QTest::addRow("%s, in place", name) << bytes << reason << true;
    };
    rows("an ordinary one", "<new a=\"1\"/>\n", {});
    rows("the instruction alone", Writer::instructionAlone(), {});
    rows("instruction and a blank", Writer::instructionAlone() + ' ', QStringLiteral("2:2: No element found."));
    rows("cut", "<a><b/>", QStringLiteral("1:8: No element found."));
}

/// As root a file can be given back to its owner; without root the owner is the same anyway.
void TestWriter::documents()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    QFETCH(bool, linked);
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.filePath(QStringLiteral("state"))));
    const QString path = directory.filePath(QStringLiteral("file"));
    const QByteArray name = QFile::encodeName(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.write("<old/>\n") > 0 && file.flush());
    const uid_t nobody = 65534;
    QVERIFY(::geteuid() != 0 || ::chown(name.constData(), nobody, nobody) == 0);
    QVERIFY(::chmod(name.constData(), 02664) == 0);
    if (linked)
        QVERIFY(::link(name.constData(), (name + '2').constData()) == 0);
    const struct stat before = statusOf(path);
    QString error;
    QCOMPARE(saveFile(path, bytes, &error), reason.isEmpty());
    QCOMPARE(error,
        reason.isEmpty() ? QString() : path + QStringLiteral(": The new contents could not be read again: ") + reason);
    QFile saved(path);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), reason.isEmpty() ? bytes : QByteArray("<old/>\n"));
    const struct stat after = statusOf(path);
    QVERIFY(after.st_uid == before.st_uid && after.st_gid == before.st_gid && after.st_mode == before.st_mode);
    QCOMPARE(after.st_ino != before.st_ino, reason.isEmpty() && !linked);
}

void TestWriter::paths()
{
    QTemporaryDir directory;
    const QString fresh = directory.filePath(QStringLiteral("new"));
    const mode_t mask = ::umask(027);
    for (const QString &path : { fresh, QString(), directory.filePath(QStringLiteral("a") + QChar(0)),
             directory.filePath(QStringLiteral("none/file")), fresh + QStringLiteral("/file") }) {
        QString error;
        QCOMPARE(saveFile(path, "<a/>", &error), path == fresh);
        QCOMPARE(error.isEmpty(), path == fresh);
        QCOMPARE(statusOf(path).st_mode & 0777, mode_t(path == fresh ? 0640 : 0));
    }
    ::umask(mask);
    QVERIFY(!QFile::exists(directory.filePath(QStringLiteral("a"))));
}

QTEST_GUILESS_MAIN(TestWriter)
#include "tst_writer.moc"

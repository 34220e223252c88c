#include "extensionfile/decoder.h"

#include "extensionfile/textposition.h"

#include <QTextCodec>

namespace ExtensionFile {

namespace {

const int utf8Mib = 106;

/// What the XML declaration says, as positions in the text. The parser checks its syntax later; here a damaged one is
/// no declaration.
struct Declaration
{
    int versionAt = -1;
    QByteArray version;
    QByteArray encoding;
};

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

Declaration findDeclaration(const QByteArray &text)
{
    Declaration found;
    if (!text.startsWith("<?xml") || text.size() < 6 || !isBlank(text.at(5)))
        return found;
    int at = 5;
    const auto skipBlanks = [&] {
        while (at < text.size() && isBlank(text.at(at)))
            ++at;
    };
    for (;;) {
        skipBlanks();
        const int nameAt = at;
        while (at < text.size() && text.at(at) >= 'a' && text.at(at) <= 'z')
            ++at;
        const QByteArray name = text.mid(nameAt, at - nameAt);
        skipBlanks();
        if (name.isEmpty() || at >= text.size() || text.at(at) != '=')
            return found;
        ++at;
        skipBlanks();
        if (at >= text.size() || (text.at(at) != '"' && text.at(at) != '\''))
            return found;
        const int valueAt = at + 1;
        const int end = text.indexOf(text.at(at), valueAt);
        if (end < 0)
            return found;
        if (name == "version") {
            found.versionAt = valueAt;
            found.version = text.mid(valueAt, end - valueAt);
        } else if (name == "encoding") {
            found.encoding = text.mid(valueAt, end - valueAt);
        }
        at = end + 1;
    }
}

bool fail(DecodeProblem *problem, const QString &reason, const Location &where = { 1, 1 })
{
    problem->reason = reason;
    problem->where = where;
    return false;
}

/// U+FFFE and U+FFFF, which the parser lets pass in names.
bool isNoCharacter(const uchar *p, int length)
{
    return length == 3 && p[0] == 0xef && p[1] == 0xbf && p[2] >= 0xbe;
}

/// Length of the well-formed UTF-8 sequence at `p`, 0 when there is none.
int sequenceLength(const uchar *p, const uchar *end)
{
    const auto continues
        = [&](int i, uchar low = 0x80, uchar high = 0xbf) { return end - p > i && p[i] >= low && p[i] <= high; };
    if (p[0] < 0x80)
        return 1;
    if (p[0] >= 0xc2 && p[0] <= 0xdf)
        return continues(1) ? 2 : 0;
    if (p[0] >= 0xe0 && p[0] <= 0xef) {
        const uchar low = p[0] == 0xe0 ? 0xa0 : 0x80;
        const uchar high = p[0] == 0xed ? 0x9f : 0xbf;
        return continues(1, low, high) && continues(2) ? 3 : 0;
    }
    if (p[0] >= 0xf0 && p[0] <= 0xf4) {
        const uchar low = p[0] == 0xf0 ? 0x90 : 0x80;
        const uchar high = p[0] == 0xf4 ? 0x8f : 0xbf;
        return continues(1, low, high) && continues(2) && continues(3) ? 4 : 0;
    }
    return 0;
}

constexpr int plainBlock = 32;

/// Whether a whole block of ASCII begins at `p`; nearly all of every file is that.
bool isPlainBlock(const uchar *p, const uchar *end)
{
    if (end - p < plainBlock)
        return false;
    uchar bits = 0;
    for (int i = 0; i < plainBlock; ++i)
        bits |= p[i];
    return bits < 0x80;
}

bool checkUtf8(const QByteArray &text, DecodeProblem *problem)
{
    const auto *const begin = reinterpret_cast<const uchar *>(text.constData());
    const uchar *const end = begin + text.size();
    int length = 0;
    for (const uchar *p = begin; p < end; p += length) {
        if (isPlainBlock(p, end)) {
            length = plainBlock;
            continue;
        }
        length = sequenceLength(p, end);
        if (length > 0 && !isNoCharacter(p, length))
            continue;
        const QString reason = length == 0 ? QStringLiteral("The text is not valid UTF-8.")
                                           : QStringLiteral("The text has a character that XML does not allow.");
        return fail(problem, reason, TextPosition(text).at(int(p - begin)));
    }
    return true;
}

bool hasLoneSurrogate(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (!text.at(i).isHighSurrogate() || i + 1 == text.size() || !text.at(i + 1).isLowSurrogate())
            return true;
        ++i;
    }
    return false;
}

bool transcode(const QByteArray &bytes, QTextCodec *codec, DecodedDocument *document, DecodeProblem *problem)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    // The converters of most legacy encodings do not count what they replace, hence the look for U+FFFD; that a file in
    // one of them means this character is not to be expected.
    const bool valid = state.invalidChars == 0 && state.remainingChars == 0 && !hasLoneSurrogate(text)
        && !text.contains(QChar(QChar::ReplacementCharacter));
    if (!valid)
        return fail(problem, QStringLiteral("The text is not valid %1.").arg(QString::fromLatin1(codec->name())));
    document->utf8 = text.toUtf8();
    document->transcoded = true;
    return checkUtf8(document->utf8, problem);
}

struct Signature
{
    const char *bytes;
    int length;
    int skipped; ///< bytes of the byte order mark
    const char *codec;
};

/// Longer signatures first: the mark of UTF-32LE begins with that of UTF-16LE.
const Signature signatures[] = {
    { "\xff\xfe\0\0", 4, 4, "UTF-32LE" },
    { "\0\0\xfe\xff", 4, 4, "UTF-32BE" },
    { "<\0\0\0", 4, 0, "UTF-32LE" },
    { "\0\0\0<", 4, 0, "UTF-32BE" },
    { "<\0", 2, 0, "UTF-16LE" },
    { "\0<", 2, 0, "UTF-16BE" },
    { "\xff\xfe", 2, 2, "UTF-16LE" },
    { "\xfe\xff", 2, 2, "UTF-16BE" },
    { "\xef\xbb\xbf", 3, 3, "UTF-8" },
};

const Signature *findSignature(const QByteArray &bytes)
{
    for (const Signature &signature : signatures) {
        if (bytes.startsWith(QByteArray::fromRawData(signature.bytes, signature.length)))
            return &signature;
    }
    return nullptr;
}

/// A document recognised by its first bytes may name that encoding (with or without byte order) or none.
bool decodeBySignature(
    const QByteArray &bytes, const Signature &signature, DecodedDocument *document, DecodeProblem *problem)
{
    const QByteArray family = QByteArray(signature.codec).left(6); // "UTF-8", "UTF-16", "UTF-32"
    const QByteArray body = bytes.mid(signature.skipped);
    if (family == "UTF-8") {
        document->utf8 = body;
        if (!checkUtf8(document->utf8, problem))
            return false;
    } else if (!transcode(body, QTextCodec::codecForName(signature.codec), document, problem)) {
        return false;
    }
    document->declaredEncoding = findDeclaration(document->utf8).encoding;
    if (!document->declaredEncoding.isEmpty() && !document->declaredEncoding.toUpper().startsWith(family))
        return fail(problem, QStringLiteral("The declared encoding is not the one of the file."));
    return true;
}

bool decodeByDeclaration(const QByteArray &bytes, DecodedDocument *document, DecodeProblem *problem)
{
    document->declaredEncoding = findDeclaration(bytes).encoding;
    QTextCodec *const codec = document->declaredEncoding.isEmpty()
        ? QTextCodec::codecForMib(utf8Mib)
        : QTextCodec::codecForName(document->declaredEncoding);
    if (!codec)
        return fail(
            problem, QStringLiteral("Encoding %1 is not known.").arg(QString::fromLatin1(document->declaredEncoding)));
    if (codec->mibEnum() == utf8Mib) {
        document->utf8 = bytes;
        return checkUtf8(bytes, problem);
    }
    if (!transcode(bytes, codec, document, problem))
        return false;
    if (findDeclaration(document->utf8).encoding != document->declaredEncoding)
        return fail(problem, QStringLiteral("The declared encoding is not the one of the file."));
    return true;
}

} // namespace

bool decodeDocument(const QByteArray &bytes, DecodedDocument *document, DecodeProblem *problem)
{
    const Signature *const signature = findSignature(bytes);
    const bool decoded = signature ? decodeBySignature(bytes, *signature, document, problem)
                                   : decodeByDeclaration(bytes, document, problem);
    if (!decoded)
        return false;
    // The parser refuses every version but 1.0, though whoever reads 1.0 is to read 1.x by the rules of 1.0.
    const Declaration declaration = findDeclaration(document->utf8);
    if (declaration.version.size() == 3 && declaration.version.startsWith("1.") && declaration.version.at(2) >= '0'
        && declaration.version.at(2) <= '9')
        document->utf8[declaration.versionAt + 2] = '0';
    return true;
}

} // namespace ExtensionFile

#include "extensionfile/decoder.h"

#include <QRegularExpression>
#include <QTextCodec>

namespace ExtensionFile {

namespace {

const int utf8Mib = 106;

bool refuse(ReadError *error, const QString &reason)
{
    return error->fail(ReadError::Kind::Malformed, reason, { 1, 1, 0 });
}

/// As the XML declaration has it, whose syntax is checked by the parser later; empty where it names none.
QByteArray declaredEncoding(const QByteArray &text)
{
    const int end = text.indexOf("?>");
    if (end < 0 || !text.startsWith("<?xml"))
        return {};
    static const QRegularExpression encoding(
        QStringLiteral("^<\\?xml\\s(?:[^?]*\\s)?encoding\\s*=\\s*([\"'])(.*?)\\1"));
    return encoding.match(QString::fromLatin1(text.constData(), end)).captured(2).toLatin1();
}

bool transcode(const QByteArray &bytes, QTextCodec *codec, QByteArray *utf8)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    *utf8 = text.toUtf8();
    // The converters of most legacy encodings do not count what they replace, hence the look for U+FFFD; that a file in
    // one of them means this character is not to be expected. Half a surrogate pair does not come back from UTF-8.
    return state.invalidChars == 0 && state.remainingChars == 0 && !text.contains(QChar(QChar::ReplacementCharacter))
        && QString::fromUtf8(*utf8) == text;
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

} // namespace

bool decodeDocument(const QByteArray &bytes, DecodedDocument *document, ReadError *error)
{
    const Signature *const signature = findSignature(bytes);
    const QByteArray declared = declaredEncoding(bytes);
    const QByteArray name = signature ? QByteArray(signature->codec) : declared.isEmpty() ? "UTF-8" : declared;
    QTextCodec *const codec = QTextCodec::codecForName(name);
    if (!codec)
        return refuse(error, QStringLiteral("Encoding %1 is not known.").arg(QString::fromLatin1(name)));
    const QByteArray body = signature ? bytes.mid(signature->skipped) : bytes;
    document->transcoded = codec->mibEnum() != utf8Mib;
    document->markSize = document->transcoded ? 0 : bytes.size() - body.size();
    document->utf8 = body;
    if (document->transcoded && !transcode(body, codec, &document->utf8))
        return refuse(error, QStringLiteral("The text is not valid %1.").arg(QString::fromLatin1(codec->name())));
    // A document recognised by its first bytes may name that encoding (with or without byte order) or none.
    const QByteArray named = declaredEncoding(document->utf8);
    const bool agrees = signature ? named.isEmpty() || named.toUpper().startsWith(name.left(6)) : named == declared;
    return agrees || refuse(error, QStringLiteral("The declared encoding is not the one of the file."));
}

} // namespace ExtensionFile

#include "extensionfile/decoder.h"

#include "extensionfile/words.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <utility>

namespace ExtensionFile {

namespace {

const int utf8Mib = 106;

bool fail(ReadError *error, const QString &reason)
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
    QTextCodec::ConverterState state;
    const QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    *utf8 = text.toUtf8();
    // The converters of most legacy encodings do not count what they replace, hence the look for U+FFFD; that a file in
    // one of them means this character is not to be expected. Half a surrogate pair does not come back from UTF-8.
    return state.invalidChars == 0 && state.remainingChars == 0 && !text.contains(QChar(QChar::ReplacementCharacter))
        && QString::fromUtf8(*utf8) == text;
}

/// By the byte order mark, or by how the first character of a document comes out; null where neither tells.
QTextCodec *codecByFirstBytes(const QByteArray &bytes)
{
    if (QTextCodec *marked = QTextCodec::codecForUtfText(bytes, nullptr))
        return marked;
    // Longer ones first.
    const std::pair<QByteArray, const char *> starts[] = { { { "<\0\0\0", 4 }, "UTF-32LE" },
        { { "\0\0\0<", 4 }, "UTF-32BE" }, { { "<\0", 2 }, "UTF-16LE" }, { { "\0<", 2 }, "UTF-16BE" } };
    for (const auto &start : starts) {
        if (bytes.startsWith(start.first))
            return QTextCodec::codecForName(start.second);
    }
    return nullptr;
}

} // namespace

bool decodeDocument(const QByteArray &bytes, DecodedDocument *document, ReadError *error)
{
    const QByteArray declared = declaredEncoding(bytes);
    QTextCodec *const seen = codecByFirstBytes(bytes);
    QTextCodec *const codec = seen ? seen : QTextCodec::codecForName(declared.isEmpty() ? "UTF-8" : declared);
    if (!codec)
        return fail(error,
            say(QT_TRANSLATE_NOOP("ExtensionFile", "Encoding %1 is not known.")).arg(QString::fromLatin1(declared)));
    document->transcoded = codec->mibEnum() != utf8Mib;
    document->markSize = document->transcoded || !seen ? 0 : 3;
    document->utf8 = bytes.mid(document->markSize);
    if (document->transcoded && !transcode(bytes, codec, &document->utf8))
        return fail(error,
            say(QT_TRANSLATE_NOOP("ExtensionFile", "The text is not valid %1."))
                .arg(QString::fromLatin1(codec->name())));
    // A document recognised by its first bytes may name that encoding (with or without byte order) or none.
    const QByteArray named = declaredEncoding(document->utf8);
    const bool agrees = seen ? named.isEmpty() || named.toUpper().startsWith(seen->name().left(6)) : named == declared;
    return agrees
        || fail(error, say(QT_TRANSLATE_NOOP("ExtensionFile", "The declared encoding is not the one of the file.")));
}

} // namespace ExtensionFile

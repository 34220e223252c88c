#include "utils/mimemagic.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Utils {

namespace {

/// How a number of a "match" is laid out in the file.
struct NumberLayout
{
    const char *type;
    int size;
    bool bigEndian;
};

constexpr bool hostIsBigEndian = Q_BYTE_ORDER == Q_BIG_ENDIAN;

constexpr NumberLayout numberLayouts[] = {
    { "byte", 1, true },
    { "big16", 2, true },
    { "little16", 2, false },
    { "host16", 2, hostIsBigEndian },
    { "big32", 4, true },
    { "little32", 4, false },
    { "host32", 4, hostIsBigEndian },
};

std::optional<QByteArray> numberBytes(const QString &text, const NumberLayout &layout)
{
    bool ok = false;
    // Base 0 takes "0x" for hexadecimal and a leading "0" for octal, as in C.
    const qulonglong number = text.toULongLong(&ok, 0);
    if (!ok || (number >> (8 * layout.size)) != 0)
        return std::nullopt;
    QByteArray bytes(layout.size, '\0');
    for (int i = 0; i < layout.size; ++i) {
        const int shift = 8 * (layout.bigEndian ? layout.size - 1 - i : i);
        bytes[i] = static_cast<char>((number >> shift) & 0xff);
    }
    return bytes;
}

int digitsAt(const QByteArray &text, int from, int atMost, const char *digits)
{
    int count = 0;
    while (count < atMost && from + count < text.size() && std::strchr(digits, text.at(from + count))
        && text.at(from + count) != '\0')
        ++count;
    return count;
}

/// Resolves the escapes of C; a backslash before anything else stands for that character.
std::optional<QByteArray> stringBytes(const QString &text)
{
    const QByteArray written = text.toUtf8();
    QByteArray bytes;
    for (int i = 0; i < written.size(); ++i) {
        if (written.at(i) != '\\') {
            bytes.append(written.at(i));
            continue;
        }
        if (++i == written.size())
            return std::nullopt;
        const char escaped = written.at(i);
        const int octal = digitsAt(written, i, 3, "01234567");
        const int hex = escaped == 'x' ? digitsAt(written, i + 1, 2, "0123456789abcdefABCDEF") : 0;
        if (octal > 0) {
            const uint code = written.mid(i, octal).toUInt(nullptr, 8);
            if (code > 0xff)
                return std::nullopt;
            bytes.append(static_cast<char>(code));
            i += octal - 1;
        } else if (hex > 0) {
            bytes.append(static_cast<char>(written.mid(i + 1, hex).toUInt(nullptr, 16)));
            i += hex;
        } else if (escaped == 'n') {
            bytes.append('\n');
        } else if (escaped == 'r') {
            bytes.append('\r');
        } else if (escaped == 't') {
            bytes.append('\t');
        } else {
            bytes.append(escaped);
        }
    }
    return bytes;
}

std::optional<QByteArray> stringMask(const QString &text)
{
    if (!text.startsWith(QLatin1String("0x")))
        return std::nullopt;
    const QByteArray digits = text.mid(2).toLatin1();
    if (digits.size() % 2 != 0 || digitsAt(digits, 0, digits.size(), "0123456789abcdefABCDEF") != digits.size())
        return std::nullopt;
    return QByteArray::fromHex(digits);
}

bool readOffsets(const QString &text, MimeMatch &match)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    bool firstOk = false;
    bool lastOk = true;
    match.firstOffset = text.left(colon).toInt(&firstOk);
    match.lastOffset = colon < 0 ? match.firstOffset : text.mid(colon + 1).toInt(&lastOk);
    return firstOk && lastOk && match.firstOffset >= 0 && match.firstOffset <= match.lastOffset;
}

} // namespace

bool MimeMatch::matches(const QByteArray &data) const
{
    const int last = std::min(lastOffset, data.size() - value.size());
    bool found = false;
    for (int offset = firstOffset; offset <= last && !found; ++offset)
        found = matchesAt(data, offset);
    return found && (nested.isEmpty() || std::any_of(nested.cbegin(), nested.cend(), [&data](const MimeMatch &match) {
        return match.matches(data);
    }));
}

bool MimeMatch::matchesAt(const QByteArray &data, int offset) const
{
    if (mask.isEmpty())
        return std::memcmp(data.constData() + offset, value.constData(), static_cast<std::size_t>(value.size())) == 0;
    for (int i = 0; i < value.size(); ++i) {
        const auto difference = static_cast<uchar>(data.at(offset + i) ^ value.at(i));
        if ((difference & static_cast<uchar>(mask.at(i))) != 0)
            return false;
    }
    return true;
}

std::optional<MimeMatch> MimeMatch::fromAttributes(
    const QString &type, const QString &value, const QString &offset, const QString &mask, QString *reason)
{
    const NumberLayout *layout = std::find_if(std::begin(numberLayouts), std::end(numberLayouts),
        [&type](const NumberLayout &candidate) { return type == QLatin1String(candidate.type); });
    const bool isNumber = layout != std::end(numberLayouts);
    if (!isNumber && type != QLatin1String("string")) {
        *reason = QStringLiteral("the match type \"%1\" is unknown").arg(type);
        return std::nullopt;
    }
    MimeMatch result;
    const std::optional<QByteArray> bytes = isNumber ? numberBytes(value, *layout) : stringBytes(value);
    if (!bytes || bytes->isEmpty()) {
        *reason = QStringLiteral("\"%1\" is not a value of the type \"%2\"").arg(value, type);
        return std::nullopt;
    }
    result.value = *bytes;
    if (!readOffsets(offset, result)) {
        *reason = QStringLiteral("\"%1\" is not an offset").arg(offset);
        return std::nullopt;
    }
    if (!mask.isNull()) {
        const std::optional<QByteArray> maskBytes = isNumber ? numberBytes(mask, *layout) : stringMask(mask);
        if (!maskBytes || maskBytes->size() != result.value.size()) {
            *reason = QStringLiteral("\"%1\" is not a mask for \"%2\"").arg(mask, value);
            return std::nullopt;
        }
        result.mask = *maskBytes;
    }
    return result;
}

int bestPriority(const QVector<MimeMagic> &magics, const QByteArray &data)
{
    int best = -1;
    for (const MimeMagic &magic : magics) {
        if (magic.priority > best
            && std::any_of(magic.matches.cbegin(), magic.matches.cend(),
                [&data](const MimeMatch &match) { return match.matches(data); }))
            best = magic.priority;
    }
    return best;
}

} // namespace Utils

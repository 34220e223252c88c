#include "extensionfile/names.h"

#include <QVector>
#include <QXmlStreamReader>

#include <algorithm>

namespace ExtensionFile {

namespace {

struct Range
{
    uint first;
    uint last;
};

/// NameStartChar beyond ASCII.
const Range startRanges[] = { { 0xc0, 0xd6 }, { 0xd8, 0xf6 }, { 0xf8, 0x2ff }, { 0x370, 0x37d }, { 0x37f, 0x1fff },
    { 0x200c, 0x200d }, { 0x2070, 0x218f }, { 0x2c00, 0x2fef }, { 0x3001, 0xd7ff }, { 0xf900, 0xfdcf },
    { 0xfdf0, 0xfffd }, { 0x10000, 0xeffff } };

/// What NameChar adds to it.
const Range furtherRanges[] = { { 0xb7, 0xb7 }, { 0x300, 0x36f }, { 0x203f, 0x2040 } };

template <int size>
bool contains(const Range (&ranges)[size], uint character)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
        [character](const Range &range) { return character >= range.first && character <= range.last; });
}

bool isNameStart(uint c)
{
    if (c < 0x80)
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
    return contains(startRanges, c);
}

bool isNameCharacter(uint c)
{
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || contains(furtherRanges, c);
}

/// Asks the parser itself, so that the answer can't differ from what a later reading finds.
bool parserTakesElement(const QString &name)
{
    QXmlStreamReader xml(QLatin1Char('<') + name + QLatin1String("/>"));
    xml.setNamespaceProcessing(false);
    return xml.readNextStartElement() && xml.qualifiedName() == name;
}

bool parserTakesAttribute(const QString &name)
{
    QXmlStreamReader xml(QLatin1String("<a ") + name + QLatin1String("=''/>"));
    xml.setNamespaceProcessing(false);
    return xml.readNextStartElement() && xml.attributes().size() == 1 && xml.attributes().at(0).qualifiedName() == name;
}

/// Names that the parser need not be asked about, which are nearly all.
bool isPlain(const QString &name)
{
    const int certainLength = 1'000;
    return name.size() <= certainLength
        && std::all_of(name.cbegin(), name.cend(), [](QChar c) { return c.unicode() < 0x80 && c != QLatin1Char(':'); });
}

bool isLegal(QChar c)
{
    const ushort code = c.unicode();
    return code >= 0x20 ? code < 0xfffe : code == '\t' || code == '\n' || code == '\r';
}

} // namespace

bool isName(const QString &name)
{
    const auto isAscii = [](QChar c) { return c.unicode() < 0x80; };
    if (std::all_of(name.cbegin(), name.cend(), isAscii)) {
        return !name.isEmpty() && isNameStart(name.at(0).unicode())
            && std::all_of(name.cbegin(), name.cend(), [](QChar c) { return isNameCharacter(c.unicode()); });
    }
    const QVector<uint> characters = name.toUcs4();
    return !characters.isEmpty() && isNameStart(characters.first())
        && std::all_of(characters.cbegin(), characters.cend(), isNameCharacter);
}

bool isValidName(const QString &name)
{
    return isName(name) && (isPlain(name) || parserTakesElement(name));
}

bool isValidAttributeName(const QString &name)
{
    return isName(name) && (isPlain(name) || parserTakesAttribute(name));
}

QString nameFrom(const QString &text)
{
    if (isValidName(text))
        return text;
    const int certainLength = 1'000;
    QVector<uint> characters = text.left(certainLength).toUcs4();
    std::replace_if(
        characters.begin(), characters.end(), [](uint c) { return !isNameCharacter(c); }, uint('_'));
    if (characters.isEmpty() || !isNameStart(characters.first()))
        characters.prepend('_');
    const QString name = QString::fromUcs4(characters.constData(), characters.size());
    if (isValidName(name))
        return name;
    // Some letters and places of colons are names by the rules, but not to the parser.
    std::replace_if(
        characters.begin(), characters.end(), [](uint c) { return c >= 0x80 || c == ':'; }, uint('_'));
    return QString::fromUcs4(characters.constData(), characters.size());
}

QString withoutIllegalCharacters(const QString &text)
{
    const auto wellPaired = [&text](int i) {
        return text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
    };
    int i = 0;
    while (i < text.size() && !text.at(i).isSurrogate() && isLegal(text.at(i)))
        ++i;
    if (i == text.size())
        return text;
    QString legal = text.left(i);
    for (; i < text.size(); ++i) {
        if (wellPaired(i)) {
            legal += text.at(i);
            legal += text.at(++i);
        } else if (!text.at(i).isSurrogate() && isLegal(text.at(i))) {
            legal += text.at(i);
        }
    }
    return legal;
}

} // namespace ExtensionFile

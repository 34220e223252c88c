#include "extensionfile/names.h"

#include <algorithm>
#include <memory>

#include <expat.h>

namespace ExtensionFile {

namespace {

/// Names of a letter and what is common; asking the parser takes longer.
bool isCommonName(const QString &name)
{
    const auto isCommon = [](QChar c) {
        return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('-'));
    };
    return !name.isEmpty() && name.at(0).isLetter() && std::all_of(name.cbegin(), name.cend(), isCommon);
}

/// Asks the parser itself, so that the answer can't differ from what a later reading finds.
bool parserTakes(const QString &name)
{
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate("UTF-8"), &XML_ParserFree);
    Q_CHECK_PTR(parser);
    QString taken;
    XML_SetUserData(parser.get(), &taken);
    XML_SetStartElementHandler(parser.get(),
        [](void *result, const char *tag, const char **) { *static_cast<QString *>(result) = QString::fromUtf8(tag); });
    const QByteArray element = '<' + name.toUtf8() + "/>";
    return XML_Parse(parser.get(), element.constData(), element.size(), XML_TRUE) == XML_STATUS_OK && taken == name;
}

bool isLegal(QChar c)
{
    const ushort code = c.unicode();
    return !c.isSurrogate() && (code >= 0x20 ? code < 0xfffe : code == '\t' || code == '\n' || code == '\r');
}

} // namespace

bool isName(const QString &name)
{
    return isCommonName(name) || parserTakes(name);
}

QString nameFrom(const QString &text)
{
    if (isName(text))
        return text;
    QString name = text.left(1'000);
    const QChar filler = QLatin1Char('_');
    std::replace_if(
        name.begin(), name.end(), [filler](QChar c) { return !isName(QString(filler) + c); }, filler);
    return isName(name) ? name : QString(filler) + name;
}

QString withoutIllegalCharacters(const QString &text)
{
    if (std::all_of(text.cbegin(), text.cend(), isLegal))
        return text;
    QString legal;
    for (int i = 0; i < text.size(); ++i) {
        const bool isPaired = text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPaired)
            legal += text.at(i++);
        if (isPaired || isLegal(text.at(i)))
            legal += text.at(i);
    }
    return legal;
}

} // namespace ExtensionFile

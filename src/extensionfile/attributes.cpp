#include "extensionfile/attributes.h"

namespace ExtensionFile {

namespace {
const QLatin1String openingMark("tr('");
const QLatin1String closingMark("')");
const QLatin1Char quote('\''); // in both marks
} // namespace

QString withoutTranslationMarks(const QString &value)
{
    // Nearly every value has no mark at all, which a single character tells, or is marked as a whole.
    if (!value.contains(quote))
        return value;
    if (value.startsWith(openingMark) && value.indexOf(quote, openingMark.size()) == value.size() - closingMark.size()
        && value.endsWith(closingMark))
        return value.mid(openingMark.size(), value.size() - openingMark.size() - closingMark.size());
    if (!value.contains(openingMark) || !value.contains(closingMark))
        return value;
    QString bare = value;
    // What is left of two marks can make a third, which a later reading would take off.
    while (bare.contains(openingMark) || bare.contains(closingMark)) {
        bare.remove(openingMark);
        bare.remove(closingMark);
    }
    return bare;
}

QString withTranslationMarks(const QString &value)
{
    return openingMark + value + closingMark;
}

QString brokenByTranslationMarks(bool isMarked)
{
    return isMarked ? QStringLiteral("tr\\('|'\\)|'.*tr\\($") : QStringLiteral("tr\\('.*'\\)|'\\).*tr\\('|tr\\('\\)");
}

} // namespace ExtensionFile

#include "extensionfile/attributes.h"

namespace ExtensionFile {

namespace {
const QLatin1String openingMark("tr('");
const QLatin1String closingMark("')");
} // namespace

QString withoutTranslationMarks(const QString &value)
{
    if (!value.contains(openingMark) || !value.contains(closingMark))
        return value;
    QString bare = value;
    bare.remove(openingMark);
    bare.remove(closingMark);
    return bare;
}

QString withTranslationMarks(const QString &value)
{
    return openingMark + value + closingMark;
}

} // namespace ExtensionFile

#include "attributefields.h"

namespace {

QStringList words(const char *list)
{
    return QString::fromLatin1(list).split(QLatin1Char(' '));
}

} // namespace

QStringList AttributeFields::typeNames()
{
    return words("String Enum Bool Int File ShortCut");
}

QMap<QString, QStringList> AttributeFields::table()
{
    return {
        { QStringLiteral("string"), words("key name value regexp tips trans") },
        { QStringLiteral("enum"), words("key name value mode") },
        { QStringLiteral("bool"), words("key name value") },
        { QStringLiteral("int"), words("key name value min max") },
        { QStringLiteral("file"), words("key name value filter title method") },
        { QStringLiteral("ShortCut"), words("key name value") },
    };
}

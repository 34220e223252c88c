#include "propertybrowser/propertytypenames.h"

const QMap<QString, int> &PropertyTypeNames::numberByName()
{
    static const QMap<QString, int> map {
        { QStringLiteral("int"), 3 },
        { QStringLiteral("size"), 14 },
        { QStringLiteral("rect"), 15 },
        { QStringLiteral("file"), 18 },
        { QStringLiteral("font"), 16 },
        { QStringLiteral("bool"), 2 },
        { QStringLiteral("flag"), 8 },
        { QStringLiteral("enum"), 7 },
        { QStringLiteral("date"), 10 },
        { QStringLiteral("time"), 12 },
        { QStringLiteral("text"), 6 },
        { QStringLiteral("color"), 9 },
        { QStringLiteral("point"), 13 },
        { QStringLiteral("float"), 4 },
        { QStringLiteral("double"), 4 },
        { QStringLiteral("string"), 5 },
        { QStringLiteral("datetime"), 11 },
        { QStringLiteral("stringlist"), 7 },
        { QStringLiteral("keysequence"), 17 },
    };
    return map;
}

const QMap<int, QString> &PropertyTypeNames::nameByNumber()
{
    static const QMap<int, QString> map {
        { 0, QStringLiteral("null") },
        { 3, QStringLiteral("int") },
        { 14, QStringLiteral("size") },
        { 15, QStringLiteral("rect") },
        { 16, QStringLiteral("font") },
        { 2, QStringLiteral("bool") },
        { 8, QStringLiteral("flag") },
        { 7, QStringLiteral("enum") },
        { 10, QStringLiteral("date") },
        { 12, QStringLiteral("time") },
        { 6, QStringLiteral("text") },
        { 9, QStringLiteral("color") },
        { 13, QStringLiteral("point") },
        { 4, QStringLiteral("float") },
        { 5, QStringLiteral("string") },
        { 11, QStringLiteral("datetime") },
        { 18, QStringLiteral("file") },
        { 17, QStringLiteral("keysequence") },
    };
    return map;
}

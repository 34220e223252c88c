#pragma once

#include <QString>

/// What the sheets accept, by field, and what is a problem in a file. The texts must match as a whole (TextPattern).
namespace Pattern {

/// Of the definition side.
inline QString pointId()
{
    return QStringLiteral("[a-zA-Z][a-zA-Z0-9-_.]{0,255}");
}
/// The key of a sub point, of an attribute and of a meta entry.
inline QString key()
{
    return QStringLiteral("[a-zA-Z][a-zA-Z0-9-_.]{0,51}");
}
inline QString name()
{
    return QStringLiteral("[^</>'&\"]{0,255}");
}
inline QString description()
{
    return QStringLiteral("^.{0,1000}$");
}
inline QString otherOfSubPoint()
{
    return QStringLiteral("[a-zA-Z][a-zA-Z0-9-_.]{1,256}$");
}

/// Characters that the "id" of a record and of an entry of a format may have. They differ on purpose.
constexpr int recordIdLength = 49;
constexpr int entryIdLength = 40;

/// Of the realization side; empty for a field that has none.
[[nodiscard]] inline QString realized(const QString &key, int longestId)
{
    if (key == QLatin1String("id"))
        return QStringLiteral("[0-9a-zA-Z_.]{0,%1}$").arg(longestId);
    if (key == QLatin1String("text"))
        return QStringLiteral("^.{0,25}$");
    if (key == QLatin1String("toolTip") || key == QLatin1String("statusTip"))
        return QStringLiteral("^.{0,1000}$");
    if (key == QLatin1String("parent"))
        return QStringLiteral("[a-zA-Z][a-zA-Z0-9-_.]{0,249}");
    if (key == QLatin1String("sceneName"))
        return QStringLiteral("[0-9a-zA-Z_.]{0,249}$");
    return {};
}

} // namespace Pattern

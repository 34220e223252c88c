#pragma once

#include <QString>

/// What the sheets of the definition page accept, by field. The texts must match as a whole.
namespace Pattern {

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

} // namespace Pattern

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// The types that an attribute declaration can have, and the keys that a declaration of each type carries.
namespace AttributeFields {

[[nodiscard]] QStringList typeNames();

/// By lower-case type name. The key "ShortCut" is the exception, so a look-up by a lowered name never finds it and
/// declarations of that type keep the keys that they have.
[[nodiscard]] QMap<QString, QStringList> table();

} // namespace AttributeFields

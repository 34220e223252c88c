#pragma once

#include "propertybrowser/propertybrowser_global.h"

#include <QMap>
#include <QString>

/// The two tables between the names and the numbers of @p PropertyType. They are not each other's inverse: "double" and
/// "stringlist" are second names of 4 and 7, and "null" is the name of 0 but no name gives it.
namespace PropertyTypeNames {

[[nodiscard]] PROPERTYBROWSER_EXPORT const QMap<QString, int> &numberByName();
[[nodiscard]] PROPERTYBROWSER_EXPORT const QMap<int, QString> &nameByNumber();

} // namespace PropertyTypeNames

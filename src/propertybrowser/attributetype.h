#pragma once

#include "propertybrowser/propertybrowser_global.h"

class QString;

/// The @p PropertyType number of an attribute type name, compared exactly and case-sensitively; any name that is not
/// known, the empty one included, gives the one-line string.
[[nodiscard]] PROPERTYBROWSER_EXPORT int attributeTypeToPropertyType(const QString &name);

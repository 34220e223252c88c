#pragma once

class QString;

/// The @p PropertyType number of an attribute type name on the realization page, compared exactly and case-sensitively;
/// any name that is not known, the empty one included, gives the one-line string. "Text" is not known here on purpose:
/// what a record holds of it is edited in one line.
[[nodiscard]] int realizationAttributeToPropertyType(const QString &name);

#pragma once

#include <QString>

namespace ExtensionFile {

/// Whether @p name can name an element or an attribute: it is what the parser takes for a name.
[[nodiscard]] bool isName(const QString &name);

/// A name made of @p text: what a name can't have becomes "_", and what a name can't begin with gets "_" before it.
/// Only the first 1,000 characters count, but a name stays as it is.
[[nodiscard]] QString nameFrom(const QString &text);

/// @p text without what no XML document can hold, not even as a reference: control characters but tab, line feed and
/// carriage return, halves of surrogate pairs, U+FFFE and U+FFFF.
[[nodiscard]] QString withoutIllegalCharacters(const QString &text);

} // namespace ExtensionFile

#pragma once

#include <QString>

namespace ExtensionFile {

/// Whether `name` is a name of XML 1.0, fifth edition; colons count as letters.
[[nodiscard]] bool isName(const QString &name);

/// Whether `name` can name an element so that read() takes it back (and then an attribute as well): the parser knows of
/// names only the letters of the fourth edition, a colon once and not at either end, and no more than about 4,000
/// characters.
[[nodiscard]] bool isValidName(const QString &name);

/// Whether `name` can name an attribute so that read() takes it back. The parser is not as narrow there, for it checks
/// nothing: any letter of the fifth edition will do.
[[nodiscard]] bool isValidAttributeName(const QString &name);

/// A valid element name made of `text`: what a name can't have becomes "_", and what a name can't begin with gets "_"
/// before it. A valid name stays as it is.
[[nodiscard]] QString nameFrom(const QString &text);

/// `text` without what no XML document can hold, not even as a reference: control characters but tab, line feed and
/// carriage return, halves of surrogate pairs, U+FFFE and U+FFFF.
[[nodiscard]] QString withoutIllegalCharacters(const QString &text);

} // namespace ExtensionFile

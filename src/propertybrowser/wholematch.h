#pragma once

class PropertyItem;
class QString;

/// How the "regexp" of a row is applied: it must match the whole text, whether or not it is written with anchors. An
/// empty pattern, one that is no valid expression and one that is too long to be shown in a field restrict nothing.
namespace WholeMatch {

enum class Lines { One, Many };

/// With `Lines::Many` a "." also matches a line break, so that a limit on the length holds for a text of many lines.
[[nodiscard]] bool matches(const QString &pattern, const QString &text, Lines lines);

/// The pattern in the item's data, empty when it restricts nothing.
[[nodiscard]] QString patternOf(const PropertyItem &item);

/// What is doubtful about @p text, which is a value of the row all the same; empty when nothing is.
[[nodiscard]] QString doubtAbout(const PropertyItem &item, const QString &text);

} // namespace WholeMatch

#pragma once

#include <QString>

/// How a pattern for a value is applied: it must match the whole text, whether or not it is written with anchors. An
/// empty pattern, one that is no valid expression and one that is too long to be shown in a field restrict nothing. GUI
/// thread, since compiled expressions are kept.
namespace TextPattern {

enum class Lines { One, Many };

/// With `Lines::Many` a "." also matches a line break, so that a limit on the length holds for a text of many lines.
[[nodiscard]] bool matches(const QString &pattern, const QString &text, Lines lines);

/// Whether there is a match anywhere in @p text; "." is any character.
[[nodiscard]] bool matchesPart(const QString &pattern, const QString &text);

[[nodiscard]] bool restricts(const QString &pattern);

/// What a text has to be to match, for a tool tip: in words where the pattern is of a known make, else the pattern
/// itself. Plain text.
[[nodiscard]] QString inWords(const QString &pattern);

} // namespace TextPattern

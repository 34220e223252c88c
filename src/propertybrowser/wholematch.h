#pragma once

class PropertyItem;
class QString;

/// What limits the text of a row, by the data of its record; how that is applied says TextPattern.
namespace WholeMatch {

/// The pattern in the item's data, empty when it restricts nothing.
[[nodiscard]] QString patternOf(const PropertyItem &item);

/// What a text of the row has to be, for the person whose text is refused.
[[nodiscard]] QString hint(const PropertyItem &item);

/// What the tool tip of the row says while nothing is wrong: its words of help, and what a text of it has to be.
[[nodiscard]] QString help(const PropertyItem &item);

/// What is doubtful about @p text, which is a value of the row all the same; empty when nothing is.
[[nodiscard]] QString doubtAbout(const PropertyItem &item, const QString &text);

} // namespace WholeMatch

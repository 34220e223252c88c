#pragma once

#include <QString>

/// What people get to see of the texts of extension files. A value, a name or an id may be as long as a file, and the
/// views of the toolkit lay a text out whole to show the beginning of it: a second for each million characters, again
/// and again.
namespace ExtensionFile {

/// Characters: more than any screen is wide, and a tool tip high.
constexpr int maximumShownLength = 1'000;

/// Characters of a text that can be edited. A longer one keeps every byte, but there is no working on it in a field; a
/// sheet has up to 500 of them, and lays each out whole.
constexpr int maximumEditableLength = 4'000;

/// @p text as it is handed to a view: whole, or its beginning with an ellipsis. Never to be taken for the text itself,
/// an id for instance.
[[nodiscard]] inline QString shown(const QString &text)
{
    if (text.size() <= maximumShownLength)
        return text;
    const bool cutsPair = text.at(maximumShownLength - 1).isHighSurrogate();
    return text.left(cutsPair ? maximumShownLength - 1 : maximumShownLength) + QChar(0x2026);
}

} // namespace ExtensionFile

#pragma once

#include <QString>
#include <QVariant>

class PropertyItem;

/// How a kind of row is typed: between its values and the text in its line. An entry may be null where noted. The
/// functions keep nothing, so a codec is a constant of its kind.
struct TextCodec
{
    /// The value that a text stands for, invalid when it is none or is out of the item's bounds. Never given an empty
    /// text, except where @p emptyIsText.
    QVariant (*parse)(const PropertyItem &item, const QString &text);
    /// The text shown for a value of the kind's own type. Values are the same when their texts are.
    QString (*format)(const QVariant &value);
    /// The text that is handed out for a record that came with a text. Null: the same as @p format.
    QString (*store)(const PropertyItem &item, const QVariant &value) = nullptr;
    /// The value of a text that the record came with. Null: the same as @p parse.
    QVariant (*load)(const PropertyItem &item, const QString &text) = nullptr;
    /// What is expected, told to the user whose text is refused.
    QString (*hint)(const PropertyItem &item) = nullptr;
    /// What the arrow keys do at the cursor; false when they can't. Null: no arrows.
    bool (*step)(const PropertyItem &item, QString *text, int cursor, int steps) = nullptr;
    /// A record that came without a value gets a value of the kind's own type, not a text.
    bool isNumber = false;
    /// An empty text is a value like any other and @p parse decides; otherwise it means "no value".
    bool emptyIsText = false;

    [[nodiscard]] bool handsOutText(const PropertyItem &item) const;
    /// The text that a line shows for the item's value as it is.
    [[nodiscard]] QString shownText(const PropertyItem &item) const;
    /// The item's value in the kind's own type, invalid when it has none or an unusable one.
    [[nodiscard]] QVariant ownValue(const PropertyItem &item) const;
    [[nodiscard]] QString storedText(const PropertyItem &item, const QVariant &value) const;
    [[nodiscard]] bool accepts(const PropertyItem &item, const QString &text) const;
    /// Why the item's own value would be refused if it were typed; empty when it would not.
    [[nodiscard]] QString problemOf(const PropertyItem &item) const;
};

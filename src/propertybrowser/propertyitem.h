#pragma once

#include "propertybrowser/propertybrowser_global.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

/// The kinds of rows of a property sheet. The numbers are stored and compared as plain integers; 1 is not used, and a
/// number that is not listed is shown read-only. @p Null stands for no type and is edited as one-line text.
enum class PropertyType {
    Null = 0,
    Bool = 2,
    Int = 3,
    Float = 4,
    String = 5,
    Text = 6,
    Enum = 7,
    Flag = 8,
    Color = 9,
    Date = 10,
    DateTime = 11,
    Time = 12,
    Point = 13,
    Size = 14,
    Rect = 15,
    Font = 16,
    KeySequence = 17,
    File = 18,
};

/// One row of a property sheet: what it shows, which editor it asks for and what limits the editor. A plain value that
/// knows no widget.
class PROPERTYBROWSER_EXPORT PropertyItem final
{
public:
    /// One choice of an enumeration or one flag of a set.
    struct OptionItem
    {
        QString value; ///< becomes the property's value when chosen
        QString text;  ///< shown in the drop-down, the beginning of a very long one
        QString icon;  ///< path of an icon, or empty

        [[nodiscard]] bool operator==(const OptionItem &other) const
        {
            return value == other.value && text == other.text && icon == other.icon;
        }
    };

    PropertyItem() = default;
    PropertyItem(PropertyType type, const QString &name, const QString &displayText, const QVariant &value);

    [[nodiscard]] PropertyType type() const { return m_type; }
    [[nodiscard]] QString name() const { return m_name; }
    /// The beginning of a very long one.
    [[nodiscard]] QString displayText() const { return m_displayText; }
    [[nodiscard]] QVariant value() const { return m_value; }
    /// An invalid variant for a key that was never set, which stands for "no restriction".
    [[nodiscard]] QVariant data(const QString &key) const { return m_data.value(key); }
    [[nodiscard]] QStringList dataKeys() const { return m_data.keys(); }
    [[nodiscard]] const QList<OptionItem> &options() const { return m_options; }
    [[nodiscard]] bool isEditable() const { return m_editable; }

    void setData(const QString &key, const QVariant &value) { m_data.insert(key, value); }
    void setVal(const QVariant &value) { m_value = value; }
    void addOption(const OptionItem &option) { insertOption(m_options.size(), option); }
    /// An index below 0 prepends, one past the end appends.
    void insertOption(int index, const OptionItem &option);
    /// Replaces the options; each string serves as value and as text.
    void setOptionList(const QStringList &options);
    void setEditable(bool editable) { m_editable = editable; }

    /// Whether the two make the same row. Values are the same when their texts are: a file has texts only.
    [[nodiscard]] bool operator==(const PropertyItem &other) const;
    [[nodiscard]] bool operator!=(const PropertyItem &other) const { return !(*this == other); }

private:
    PropertyType m_type = PropertyType::Null;
    QString m_name;
    QString m_displayText;
    QVariant m_value;
    QMap<QString, QVariant> m_data;
    QList<OptionItem> m_options;
    bool m_editable = true;
};

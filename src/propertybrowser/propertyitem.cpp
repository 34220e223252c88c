#include "propertybrowser/propertyitem.h"

#include "extensionfile/showntext.h"

#include <optional>

namespace {

/// Nothing for what has no text, a size for instance; nor has a list, but of one text.
std::optional<QString> textOf(const QVariant &value)
{
    QVariant text = value;
    if (text.convert(QMetaType::QString)) {
        return text.toString();
    }
    const bool isEmpty = !value.isValid() || (value.isNull() && value.canConvert<QString>());
    return isEmpty ? std::optional<QString>(QString()) : std::nullopt;
}

bool areSame(const QVariant &one, const QVariant &other)
{
    const std::optional<QString> oneText = textOf(one);
    const std::optional<QString> otherText = textOf(other);
    return oneText && otherText ? *oneText == *otherText : one == other;
}

} // namespace

PropertyItem::PropertyItem(PropertyType type, const QString &name, const QString &displayText, const QVariant &value)
    : m_type(type), m_name(name), m_displayText(ExtensionFile::shown(displayText)), m_value(value)
{ }

void PropertyItem::insertOption(int index, const OptionItem &option)
{
    m_options.insert(
        qBound(0, index, m_options.size()), { option.value, ExtensionFile::shown(option.text), option.icon });
}

void PropertyItem::setOptionList(const QStringList &options)
{
    m_options.clear();
    for (const QString &option : options) {
        addOption({ option, option, QString() });
    }
}

bool PropertyItem::operator==(const PropertyItem &other) const
{
    return m_type == other.m_type && m_name == other.m_name && m_displayText == other.m_displayText
        && areSame(m_value, other.m_value) && m_data == other.m_data && m_options == other.m_options
        && m_editable == other.m_editable;
}

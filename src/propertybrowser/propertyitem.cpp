#include "propertybrowser/propertyitem.h"

PropertyItem::PropertyItem(PropertyType type, const QString &name, const QString &displayText, const QVariant &value)
    : m_type(type), m_name(name), m_displayText(displayText), m_value(value)
{ }

void PropertyItem::insertOption(int index, const OptionItem &option)
{
    m_options.insert(qBound(0, index, m_options.size()), option);
}

void PropertyItem::setOptionList(const QStringList &options)
{
    m_options.clear();
    for (const QString &option : options) {
        m_options.append({ option, option, QString() });
    }
}

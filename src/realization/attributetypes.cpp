#include "attributetypes.h"

#include "propertybrowser/propertyitem.h"

#include <QString>

int realizationAttributeToPropertyType(const QString &name)
{
    struct Entry
    {
        QLatin1String name;
        PropertyType type;
    };
    static const Entry entries[] = {
        { QLatin1String("String"), PropertyType::String },
        { QLatin1String("Bool"), PropertyType::Bool },
        { QLatin1String("ShortCut"), PropertyType::KeySequence },
        { QLatin1String("File"), PropertyType::File },
        { QLatin1String("Int"), PropertyType::Int },
        { QLatin1String("Double"), PropertyType::Float },
        { QLatin1String("Enum"), PropertyType::Enum },
        { QLatin1String("Size"), PropertyType::Size },
        { QLatin1String("Flag"), PropertyType::Flag },
    };
    for (const Entry &entry : entries) {
        if (name == entry.name)
            return int(entry.type);
    }
    return int(PropertyType::String);
}

#include "attributetypes.h"

#include "propertybrowser/attributetype.h"
#include "propertybrowser/propertyitem.h"

#include <QString>

int realizationAttributeToPropertyType(const QString &name)
{
    // A text of several lines is edited in one here, on purpose.
    return name == QLatin1String("Text") ? int(PropertyType::String) : attributeTypeToPropertyType(name);
}

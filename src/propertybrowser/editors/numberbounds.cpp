#include "propertybrowser/editors/numberbounds.h"

#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QCoreApplication>

#include <cmath>

std::optional<double> NumberBounds::bound(const PropertyItem &item, const QString &key)
{
    bool isNumber = false;
    const double number = item.data(key).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
}

bool NumberBounds::contain(const PropertyItem &item, double number)
{
    const std::optional<double> min = bound(item, PropertyKey::Min);
    const std::optional<double> max = bound(item, PropertyKey::Max);
    return !(min && number < *min) && !(max && number > *max);
}

QString NumberBounds::hint(const PropertyItem &item, const QString &kind)
{
    const bool hasMin = bound(item, PropertyKey::Min).has_value();
    const bool hasMax = bound(item, PropertyKey::Max).has_value();
    const QString min = item.data(PropertyKey::Min).toString();
    const QString max = item.data(PropertyKey::Max).toString();
    if (hasMin && hasMax) {
        return QCoreApplication::translate("PropertyBrowser", "%1 from %2 to %3").arg(kind, min, max);
    }
    if (hasMin) {
        return QCoreApplication::translate("PropertyBrowser", "%1, at least %2").arg(kind, min);
    }
    return hasMax ? QCoreApplication::translate("PropertyBrowser", "%1, at most %2").arg(kind, max) : kind;
}

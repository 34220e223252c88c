#include "metasheet.h"

#include "attributesheet.h"
#include "model/keys.h"
#include "model/patterns.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/attributetype.h"
#include "propertybrowser/propertykeys.h"

namespace {

const QString typeKey = QStringLiteral("type");

} // namespace

QStringList MetaSheet::columns()
{
    return { QStringLiteral("key"), QStringLiteral("value"), typeKey };
}

QList<PropertyItem> MetaSheet::of(PointTreeWidgetItem *entry, const QStringList &typeNames)
{
    const QString typeName = entry->property(typeKey).toString();
    QList<PropertyItem> records;
    const PropertyHash properties = entry->properties();
    for (const PropertyHash::Entry &property : properties) {
        if (property.key == typeKey)
            continue;
        int type = int(PropertyType::String);
        if (property.key == QLatin1String("value"))
            type = attributeTypeToPropertyType(typeName);
        else if (property.key == QLatin1String("trans"))
            type = int(PropertyType::Bool);
        else if (property.key == QLatin1String("min") || property.key == QLatin1String("max"))
            type = int(PropertyType::Int);
        PropertyItem record(PropertyType(type), property.key, property.key, property.value);
        if (property.key == nameKey)
            record.setData(PropertyKey::RegExp, Pattern::name());
        else if (property.key == QLatin1String("key")) {
            record.setData(PropertyKey::RegExp, Pattern::key());
            // No file keeps it, so nobody has to think of one.
            record.setData(PropertyKey::MayBeEmpty, true);
        }
        records.append(record);
    }
    records.append(AttributeSheet::typeRecord(typeName, typeNames));
    return records;
}

PointTreeWidgetItem *MetaSheet::create(PointTreeWidgetItem *owner)
{
    auto *entry = new PointTreeWidgetItem(QString());
    entry->setKind(QStringLiteral("Meta"));
    entry->setPointId(owner->pointId());
    entry->setPluginId(owner->pluginId());
    entry->setBasePath(owner->basePath());
    entry->setProperty(QStringLiteral("key"), QString());
    entry->setProperty(QStringLiteral("value"), QString());
    entry->setProperty(typeKey, QStringLiteral("String"));
    owner->addChild(entry, true);
    return entry;
}

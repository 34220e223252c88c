#include "attributesheet.h"

#include "model/keys.h"
#include "model/patterns.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/attributetype.h"
#include "propertybrowser/propertykeys.h"

namespace {

PropertyType editorOf(const QString &typeName)
{
    return PropertyType(attributeTypeToPropertyType(typeName));
}

PropertyItem valueRecord(PointTreeWidgetItem *attribute, const QVariant &value)
{
    const QString key = QStringLiteral("value");
    PropertyItem record(editorOf(attribute->kind()), key, key, value);
    if (attribute->kind() == QLatin1String("Enum")) {
        for (PointObject *entry : attribute->children()) {
            if (entry->item()->kind() != QLatin1String("Data"))
                continue;
            const QString text = entry->property(QStringLiteral("text")).toString();
            record.addOption({ text, text, QString() });
        }
    } else if (attribute->kind() == QLatin1String("String")) {
        const QVariant pattern = attribute->property(QStringLiteral("regexp"));
        if (!pattern.isNull())
            record.setData(PropertyKey::RegExp, pattern);
    }
    return record;
}

PropertyItem recordOf(PointTreeWidgetItem *attribute, const QString &key, const QVariant &value)
{
    if (key == QLatin1String("value"))
        return valueRecord(attribute, value);
    PropertyItem record(PropertyType::String, key, key, value);
    if (key == QLatin1String("trans"))
        record = PropertyItem(editorOf(QStringLiteral("Bool")), key, key, value);
    else if (key == QLatin1String("max") || key == QLatin1String("min"))
        record = PropertyItem(editorOf(QStringLiteral("Int")), key, key, value);
    else if (key == nameKey)
        record.setData(PropertyKey::RegExp, Pattern::name());
    else if (key == QLatin1String("key"))
        record.setData(PropertyKey::RegExp, Pattern::key());
    return record;
}

} // namespace

void AttributeSheet::bringIntoLine(PointTreeWidgetItem *attribute, const QStringList &fields)
{
    if (fields.isEmpty())
        return;
    PropertyHash properties;
    for (const QString &field : fields)
        properties.insert(field, attribute->property(field));
    attribute->setProperties(properties);
}

QList<PropertyItem> AttributeSheet::of(PointTreeWidgetItem *attribute, const QStringList &typeNames)
{
    QList<PropertyItem> records;
    const PropertyHash properties = attribute->properties();
    for (const PropertyHash::Entry &entry : properties) {
        // An attribute of that name is never written back, and would be taken for the type.
        if (entry.key.compare(QLatin1String("type"), Qt::CaseInsensitive) != 0)
            records.append(recordOf(attribute, entry.key, entry.value));
    }
    PropertyItem type = typeRecord(attribute->kind(), typeNames);
    // A sub point that stands in the row of an attribute stays a sub point.
    if (attribute->isKind(QLatin1String("SubExtPoint")))
        type.setEditable(false);
    records.append(type);
    return records;
}

PropertyItem AttributeSheet::typeRecord(const QString &current, const QStringList &typeNames)
{
    const QString key = QStringLiteral("type");
    PropertyItem record(PropertyType::Enum, key, key, current);
    if (!current.isEmpty())
        record.addOption({ current, current, QString() });
    for (const QString &name : typeNames) {
        if (name != current)
            record.addOption({ name, name, QString() });
    }
    return record;
}

PointTreeWidgetItem *AttributeSheet::create(PointTreeWidgetItem *owner, const QStringList &fields)
{
    auto *attribute = new PointTreeWidgetItem(QString());
    attribute->setKind(QStringLiteral("String"));
    for (const QString &field : fields)
        attribute->setProperty(field, QString());
    owner->addChild(attribute, false);
    return attribute;
}

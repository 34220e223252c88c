#include "pointsheet.h"

#include "childtypemask.h"
#include "model/definitions.h"
#include "model/keys.h"
#include "model/patterns.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/propertykeys.h"

namespace {

const QString displayIcon = QStringLiteral("displayicon");
const QString displayLabel = QStringLiteral("displaylabel");
const QString description = QStringLiteral("description");

PropertyItem record(PointTreeWidgetItem *item, const QString &key, const QVariant &typeNumber)
{
    return PropertyItem(PropertyType(typeNumber.toInt()), key, key, item->properties().value(key));
}

PropertyItem withPattern(PropertyItem record, const QString &pattern)
{
    record.setData(PropertyKey::RegExp, pattern);
    return record;
}

/// The attributes of type @p typeName that can serve as label or icon; without any, the current value alone.
PropertyItem withAttributeOptions(PropertyItem record, PointTreeWidgetItem *item, QLatin1String typeName)
{
    const QString current = record.value().toString();
    bool any = false;
    const Definitions::Nodes attributes = Definitions::declarations(item);
    for (PointTreeWidgetItem *attribute : attributes) {
        if (attribute->kind() != typeName)
            continue;
        any = true;
        const QString key = attribute->property(QStringLiteral("key")).toString();
        const PropertyItem::OptionItem option { key, attribute->property(nameKey).toString(), QString() };
        if (key == current)
            record.insertOption(0, option);
        else
            record.addOption(option);
    }
    if (!any)
        record.addOption({ current, current, QString() });
    return record;
}

/// Puts the records into their places: @p firstKey at the front, "description" at the end.
class Sheet final
{
public:
    explicit Sheet(const QString &firstKey) : m_firstKey(firstKey) { }

    void add(const PropertyItem &record)
    {
        if (record.name() == m_firstKey)
            m_records.prepend(record);
        else if (record.name() == description)
            m_last.append(record);
        else
            m_records.append(record);
    }

    [[nodiscard]] QList<PropertyItem> records() const { return m_records + m_last; }

private:
    QString m_firstKey;
    QList<PropertyItem> m_records;
    QList<PropertyItem> m_last;
};

struct KeyType
{
    const char *key;
    PropertyType type;
};

constexpr KeyType pointKeys[] = {
    { "id", PropertyType::String },
    { "name", PropertyType::String },
    { "displaylabel", PropertyType::Enum },
    { "displayicon", PropertyType::Enum },
    { "hasformat", PropertyType::Bool },
    { "description", PropertyType::Text },
};

constexpr KeyType subPointKeys[] = {
    { "key", PropertyType::String },
    { "name", PropertyType::String },
    { "displaylabel", PropertyType::Enum },
    { "displayicon", PropertyType::Enum },
    { "childtype", PropertyType::Flag },
    { "description", PropertyType::Text },
};

template <size_t count>
PointSheet::TypeTable tableOf(const KeyType (&entries)[count])
{
    PointSheet::TypeTable types;
    for (const KeyType &entry : entries)
        types.insert(QString::fromLatin1(entry.key), int(entry.type));
    return types;
}

template <size_t count>
QStringList keysOf(const KeyType (&entries)[count])
{
    QStringList keys;
    for (const KeyType &entry : entries)
        keys.append(QString::fromLatin1(entry.key));
    return keys;
}

} // namespace

PointSheet::TypeTable PointSheet::pointTypes()
{
    return tableOf(pointKeys);
}

PointSheet::TypeTable PointSheet::subPointTypes()
{
    return tableOf(subPointKeys);
}

QStringList PointSheet::missingKeys(const PointTreeWidgetItem *node)
{
    if (!node)
        return {};
    QStringList missing;
    if (node->isKind(QLatin1String("ExtPoint")))
        missing = keysOf(pointKeys);
    else if (node->isKind(QLatin1String("SubExtPoint")))
        missing = keysOf(subPointKeys);
    for (const PropertyHash::Entry &entry : node->properties())
        missing.removeAll(entry.key.toLower());
    return missing;
}

QList<PropertyItem> PointSheet::ofPoint(PointTreeWidgetItem *point, const TypeTable &types)
{
    Sheet sheet(idKey);
    const QStringList keys = point->properties().keys();
    for (const QString &key : keys) {
        PropertyItem row = record(point, key, types.value(key));
        if (key == displayIcon)
            row = withAttributeOptions(row, point, QLatin1String("File"));
        else if (key == displayLabel)
            row = withAttributeOptions(row, point, QLatin1String("String"));
        else if (key == idKey)
            row = withPattern(row, Pattern::pointId());
        else if (key == nameKey)
            row = withPattern(row, Pattern::name());
        else if (key == description)
            row = withPattern(row, Pattern::description());
        sheet.add(row);
    }
    return sheet.records();
}

QList<PropertyItem> PointSheet::ofSubPoint(
    PointTreeWidgetItem *subPoint, const TypeTable &types, const TypeTable &pointTypes, const ChildTypeMask &childTypes)
{
    Sheet sheet(QStringLiteral("key"));
    const QStringList keys = subPoint->properties().keys();
    for (const QString &key : keys) {
        PropertyItem row = record(subPoint, key, types.value(key));
        if (key == displayIcon) {
            row = withAttributeOptions(row, subPoint, QLatin1String("File"));
        } else if (key == displayLabel) {
            row = withAttributeOptions(row, subPoint, QLatin1String("String"));
        } else if (key == QLatin1String("key")) {
            row = withPattern(row, Pattern::key());
        } else if (key == nameKey) {
            row = withPattern(record(subPoint, key, pointTypes.value(key)), Pattern::name());
        } else if (key == description) {
            row = withPattern(row, Pattern::description());
        } else if (key == QLatin1String("childtype")) {
            if (childTypes.names().isEmpty())
                continue;
            row.setVal(childTypes.valueOf(row.value().toString()));
            row.setOptionList(childTypes.names());
        } else {
            row = withPattern(row, Pattern::otherOfSubPoint());
        }
        sheet.add(row);
    }
    return sheet.records();
}

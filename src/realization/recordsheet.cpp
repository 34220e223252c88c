#include "recordsheet.h"

#include "extensionfile/limits.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/patterns.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/propertykeys.h"
#include "realizationicons.h"
#include "sheetrows.h"

#include <QCoreApplication>

namespace {

QString say(const char *text)
{
    return QCoreApplication::translate("RecordSheet", text);
}

/// The options of a set of flags stand for bits and keep their order; of all others the current one goes first, so
/// that it is the one shown.
void addOptions(PropertyItem *row, const QStringList &options)
{
    if (row->type() == PropertyType::Flag) {
        row->setOptionList(options);
        return;
    }
    const QString current = row->value().toString();
    for (const QString &option : options)
        row->insertOption(option == current ? 0 : row->options().size(), { option, option, QString() });
}

PropertyItem rowOf(
    PointTreeWidgetItem *record, const QString &key, const QVariant &value, const Definitions::Attributes &declared)
{
    PropertyItem row = SheetRows::row(key, value, declared);
    if (declared.keys.contains(key)) {
        const QString standard = declared.defaults.value(key).toString();
        if (value.toString() == standard)
            row.setData(PropertyKey::Borrowed, say(QT_TRANSLATE_NOOP("RecordSheet", "The default of the attribute")));
        else if (key != idKey)
            row.setData(PropertyKey::Reset, say(QT_TRANSLATE_NOOP("RecordSheet", "Back to the Default")));
    }
    const QStringList options = declared.options.value(key);
    if (!options.isEmpty()) {
        addOptions(&row, options);
        return row;
    }
    if (key == iconKey)
        row.setVal(RealizationIcons::path(value.toString(), record->basePath()));
    SheetRows::restrict(&row, Pattern::recordIdLength);
    return row;
}

} // namespace

bool RecordSheet::storeDefaults(PointTreeWidgetItem *record)
{
    const Definitions::Attributes declared = SheetRows::declared(record);
    bool stored = false;
    for (const QString &key : declared.keys) {
        if (record->property(key).isValid()
            || record->properties().size() >= ExtensionFile::Limits().maximumAttributesPerElement)
            continue;
        // A declaration without a default makes an empty value: what has no key has no row to be edited in.
        const QVariant value = declared.defaults.value(key);
        record->setProperty(key, value.isValid() ? value : QVariant(QStringLiteral("")));
        stored = true;
    }
    return stored;
}

QList<PropertyItem> RecordSheet::of(PointTreeWidgetItem *record)
{
    QList<PropertyItem> rows = withoutChildTypes(record);
    if (record)
        SheetRows::addChildTypes(&rows, record);
    return rows;
}

QList<PropertyItem> RecordSheet::withoutChildTypes(PointTreeWidgetItem *record)
{
    QList<PropertyItem> rows;
    if (!record)
        return rows;
    const Definitions::Attributes declared = SheetRows::declared(record);
    const PropertyHash properties = SheetRows::properties(record, declared.keys);
    for (const PropertyHash::Entry &entry : properties)
        SheetRows::add(&rows, rowOf(record, entry.key, entry.value, declared));
    // What has been declared since the defaults were stored is shown as well, and stored by the next click.
    for (const QString &key : declared.keys) {
        if (!properties.contains(key))
            SheetRows::add(&rows, rowOf(record, key, declared.defaults.value(key), declared));
    }
    return rows;
}

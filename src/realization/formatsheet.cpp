#include "formatsheet.h"

#include "model/controller.h"
#include "model/keys.h"
#include "model/patterns.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/propertykeys.h"
#include "realizationicons.h"
#include "sheetrows.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

QString say(const char *text)
{
    return QCoreApplication::translate("FormatSheet", text);
}

bool showsOnlyItsOwn(const PointTreeWidgetItem *item)
{
    return item->isKind(QLatin1String("format")) || item->isKind(QLatin1String("menubar"))
        || item->isKind(QLatin1String("toolbars"));
}

/// @p source is the node that has the value: the path of an icon is relative to the file of that one.
PropertyItem rowOf(
    const QString &key, const QVariant &value, PointTreeWidgetItem *source, const Definitions::Attributes &declared)
{
    PropertyItem row = SheetRows::row(key, value, declared);
    const QStringList options = declared.options.value(key);
    for (const QString &option : options)
        row.addOption({ option, option, QString() });
    if (key == iconKey)
        row.setVal(RealizationIcons::path(value.toString(), source->basePath()));
    SheetRows::restrict(&row, Pattern::entryIdLength);
    return row;
}

} // namespace

QList<PropertyItem> FormatSheet::of(PointTreeWidgetItem *item)
{
    QList<PropertyItem> rows;
    if (!item)
        return rows;
    const Definitions::Attributes declared = SheetRows::declared(item);
    QStringList asked = declared.keys;
    PropertyHash recorded;
    PointTreeWidgetItem *record = nullptr;
    if (!showsOnlyItsOwn(item)) {
        record = Controller::instance()->ownRealizations().anyRecord(item->properties().text(idKey));
        if (record)
            recorded = SheetRows::properties(record, declared.keys);
        asked = recorded.keys() + asked;
    }
    const PropertyHash own = SheetRows::properties(item, asked);
    QStringList keys = own.keys();
    if (!showsOnlyItsOwn(item))
        keys += asked;
    keys.removeDuplicates();
    for (const QString &key : qAsConst(keys)) {
        // What shows only its own would lose the row.
        const bool canBeReset = !showsOnlyItsOwn(item) && asked.contains(key) && key != idKey;
        const bool isRecorded = !recorded.value(key).isNull();
        PropertyItem row;
        if (!own.value(key).isNull() || showsOnlyItsOwn(item)) {
            row = rowOf(key, own.value(key), item, declared);
            if (canBeReset)
                row.setData(PropertyKey::Reset,
                    isRecorded ? say(QT_TRANSLATE_NOOP("FormatSheet", "Back to the Record's"))
                               : say(QT_TRANSLATE_NOOP("FormatSheet", "Back to the Default")));
        } else if (isRecorded) {
            row = rowOf(key, recorded.value(key), record, declared);
            row.setData(PropertyKey::Borrowed, say(QT_TRANSLATE_NOOP("FormatSheet", "Taken over from the record")));
        } else {
            row = rowOf(key, declared.defaults.value(key), item, declared);
            row.setData(PropertyKey::Borrowed, say(QT_TRANSLATE_NOOP("FormatSheet", "The default of the attribute")));
        }
        SheetRows::add(&rows, row);
    }
    SheetRows::addChildTypes(&rows, item);
    return rows;
}

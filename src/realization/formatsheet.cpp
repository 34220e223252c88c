#include "formatsheet.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "realizationicons.h"
#include "sheetrows.h"

#include <QStringList>

namespace {

constexpr int idLength = 40;

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
    if (key == QLatin1String("icon"))
        row.setVal(RealizationIcons::path(value.toString(), source->basePath()));
    SheetRows::restrict(&row, idLength);
    return row;
}

} // namespace

QList<PropertyItem> FormatSheet::of(PointTreeWidgetItem *item)
{
    QList<PropertyItem> rows;
    if (!item)
        return rows;
    const Definitions::Attributes declared = SheetRows::declared(item);
    const PropertyHash properties = item->properties();
    QStringList keys = properties.keys();
    PointTreeWidgetItem *record = nullptr;
    if (!showsOnlyItsOwn(item)) {
        for (const QString &key : declared.keys) {
            if (!keys.contains(key))
                keys.append(key);
        }
        record = Controller::instance()->ownRealizations().anyRecord(properties.value(QStringLiteral("id")).toString());
    }
    for (const QString &key : qAsConst(keys)) {
        const QVariant own = properties.value(key);
        const QVariant recorded = record ? record->property(key) : QVariant();
        if (own.isValid() || showsOnlyItsOwn(item))
            SheetRows::add(&rows, rowOf(key, own, item, declared));
        else if (recorded.isValid())
            SheetRows::add(&rows, rowOf(key, recorded, record, declared));
        else
            SheetRows::add(&rows, rowOf(key, declared.defaults.value(key), item, declared));
    }
    SheetRows::addChildTypes(&rows, item);
    return rows;
}

#include "tabledrop.h"

#include "dropwords.h"
#include "model/controller.h"
#include "model/generatedid.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "ownslots.h"
#include "pointdrop.h"

namespace {

PointTreeWidgetItem *makeRecord(const PointTreeWidgetItem *point)
{
    const QString kind = Definitions::realizedKind(point);
    const QString id = GeneratedId::make(Controller::instance()->pluginId(), kind);
    auto *record = new PointTreeWidgetItem(id);
    record->assignFields(*point);
    record->setKind(kind);
    if (record->basePath().isEmpty())
        record->setBasePath(OwnSlots::basePath());
    PropertyHash properties { { idKey, id } };
    const PropertyHash defaults = Definitions::defaults(point);
    for (const PropertyHash::Entry &entry : defaults) {
        if (entry.key != idKey)
            properties.insert(entry.key, entry.value);
    }
    record->setProperties(properties);
    return record;
}

/// A point's new "ExtData" goes into a data set only if there is one.
PointTreeWidgetItem *dataForPoint(const PointTreeWidgetItem *point)
{
    if (PointTreeWidgetItem *known = OwnSlots::data(point))
        return known;
    PointTreeWidgetItem *data = OwnSlots::makeData(point);
    if (PointTreeWidgetItem *set = OwnSlots::firstDataSet())
        OwnEdits::insert(set, data);
    return data;
}

} // namespace

bool TableDrop::takes(const PointTreeWidgetItem *dragged)
{
    return PointDrop::takes(dragged) && !OwnSlots::pointIdOf(dragged).isEmpty();
}

QString TableDrop::words(const PointTreeWidgetItem *dragged)
{
    if (!dragged)
        return DropWords::gone();
    if (!PointDrop::takes(dragged))
        return DropWords::noPoint();
    if (!takes(dragged))
        return DropWords::pointWithoutId();
    return Controller::instance()->realizationRoot() ? DropWords::newRecord(dragged) : DropWords::noFile();
}

TableDrop::Outcome TableDrop::perform(PointTreeWidgetItem *dragged)
{
    Outcome outcome;
    if (!takes(dragged) || !Controller::instance()->realizationRoot())
        return outcome;
    outcome.isSubPoint = dragged->isKind(QLatin1String("SubExtPoint"));
    outcome.parent = outcome.isSubPoint ? OwnSlots::ensureData(dragged) : dataForPoint(dragged);
    outcome.record = makeRecord(dragged);
    OwnEdits::insert(outcome.parent, outcome.record);
    return outcome;
}

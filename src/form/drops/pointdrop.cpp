#include "pointdrop.h"

#include "allowedkinds.h"
#include "dropwords.h"
#include "model/controller.h"
#include "model/generatedid.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "rowplaces.h"

namespace {

/// An entry for @p point as @p taker takes it, which stands nowhere yet.
PointTreeWidgetItem *makeEntry(const PointTreeWidgetItem *point, const PointTreeWidgetItem *taker)
{
    const QString kind = Definitions::realizedKind(point);
    const PropertyHash defaults = Definitions::defaults(point);
    const QVariant text = defaults.value(QStringLiteral("text"));
    const QVariant label = text.isNull() ? defaults.value(QStringLiteral("title")) : text;
    const QString id = GeneratedId::make(Controller::instance()->pluginId(), kind);
    auto *entry = new PointTreeWidgetItem(id);
    entry->setKind(kind);
    entry->setProperty(idKey, id);
    if (!label.toString().isEmpty())
        entry->setText(1, label.toString());
    entry->setPluginId(taker->pluginId());
    entry->setPointId(taker->pointId());
    entry->setBasePath(OwnSlots::basePath());
    return entry;
}

PointTreeWidgetItem *showMirror(PointTreeWidgetItem *row, const PointTreeWidgetItem &entry)
{
    auto *displayed = new PointTreeWidgetItem(entry);
    row->QTreeWidgetItem::addChild(displayed);
    row->addChild(displayed, false);
    return displayed;
}

DropOutcome dropDirectly(PointTreeWidgetItem *row, const PointTreeWidgetItem *point)
{
    PointTreeWidgetItem *entry = makeEntry(point, row);
    if (entry->isKind(QLatin1String("MenuBar")) || entry->isKind(QLatin1String("ToolBars")))
        entry->setText(0, entry->kind());
    row->QTreeWidgetItem::addChild(entry);
    row->addChild(entry, true);
    Controller::instance()->addRealization(entry->master()->item());
    DropOutcome outcome;
    outcome.add(nullptr, entry);
    return outcome;
}

/// Puts a record with the "id" of @p entry into @p data.
void addTwin(PointTreeWidgetItem *data, PointTreeWidgetItem *entry)
{
    auto *twin = new PointTreeWidgetItem(entry->text(0));
    twin->assignFields(*entry);
    twin->setPointId(data->pointId());
    twin->setPluginId(data->pluginId());
    twin->setProperty(idKey, entry->property(idKey));
    OwnEdits::insert(data, twin);
}

DropOutcome enterBeside(const DropSite &site, const DropPlan &plan, PointTreeWidgetItem *point)
{
    PointTreeWidgetItem *entry = makeEntry(point, site.row->master()->parent()->item());
    if (plan.recorded) {
        entry->setIsNew(true);
        addTwin(OwnSlots::ensureData(point), entry);
    }
    DropOutcome outcome;
    outcome.add(nullptr, RowPlaces::insertNew(entry, plan.place, site.row));
    outcome.modified = plan.recorded;
    return outcome;
}

} // namespace

bool PointDrop::takes(const PointTreeWidgetItem *dragged)
{
    return dragged && (dragged->isKind(QLatin1String("ExtPoint")) || dragged->isKind(QLatin1String("SubExtPoint")));
}

DropPlan PointDrop::plan(const DropSite &site, PointTreeWidgetItem *dragged)
{
    if (!site.row || !takes(dragged))
        return DropPlan::refusal(DropWords::noRow());
    const QString kind = Definitions::realizedKind(dragged).toLower();
    const auto allows = [&kind](PointTreeWidgetItem *row) {
        return [&kind, row](const PointTreeWidgetItem *node) {
            return !kind.isEmpty() && AllowedKinds::forPoint(node, row).contains(kind);
        };
    };
    DropPlan onto = site.into(allows(site.row));
    if (!onto)
        onto.reason = AllowedKinds::isTakenAlready(site.row, kind) ? DropWords::takenAlready(site.row, kind)
                                                                   : DropWords::notTaken(site.row, kind);
    const DropPlan plan = site.choose(onto, site.beside(allows(site.above().row)));
    // Without a model there is nothing to record it in.
    return plan.recorded && !Controller::instance()->realizationRoot() ? DropPlan::refusal(DropWords::noFile()) : plan;
}

DropOutcome PointDrop::perform(const DropSite &site, PointTreeWidgetItem *dragged, OwnSlots::FirstFound *found)
{
    const DropPlan what = plan(site, dragged);
    if (!what)
        return {};
    if (what.place != DropPlan::Place::Into)
        return enterBeside(site, what, dragged);
    if (!what.recorded)
        return dropDirectly(site.row, dragged);

    Controller *const controller = Controller::instance();
    PointTreeWidgetItem *data = nullptr;
    PointTreeWidgetItem *format = nullptr;
    if (site.tabName.isEmpty()) {
        found->find(controller->realizationRoot());
        data = found->data;
        format = found->dataSet && data ? found->format : nullptr;
    } else {
        data = OwnSlots::ensureData(dragged);
        format = OwnSlots::format(data, site.tabName);
        if (!format)
            format = OwnSlots::addFormat(data, *data);
    }

    PointTreeWidgetItem *entry = makeEntry(dragged, what.through);
    entry->setIsNew(true);
    entry->setProperty(parentKey, OwnSlots::parentName(what.through));
    if (format) {
        OwnEdits::insert(format, entry);
        addTwin(data, entry);
    } else {
        // Nothing holds it but the row that mirrors it.
        controller->retire(entry);
    }
    DropOutcome outcome;
    outcome.add(site.tabName.isEmpty() ? nullptr : format, showMirror(site.row, *entry));
    outcome.modified = true;
    return outcome;
}

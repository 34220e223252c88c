#include "recorddrop.h"

#include "allowedkinds.h"
#include "dropwords.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "ownslots.h"
#include "rowplaces.h"

namespace {

/// A reference to @p record, which stands nowhere yet.
PointTreeWidgetItem *makeReference(PointTreeWidgetItem *record)
{
    const QVariant text = record->property(QStringLiteral("text"));
    const QVariant label = text.isNull() ? record->property(QStringLiteral("title")) : text;
    const QString id = record->property(idKey).toString();
    auto *reference = new PointTreeWidgetItem(id);
    reference->assignFields(*record);
    reference->setIsDroppedCopy(true);
    if (!label.isNull())
        reference->setText(1, label.toString());
    reference->setProperty(idKey, id);
    return reference;
}

/// The formats that a recorded reference goes to, which is at least one.
QVector<PointTreeWidgetItem *> formatsFor(PointTreeWidgetItem *record, const QString &tabName)
{
    PointTreeWidgetItem *data = record->parentItem();
    QVector<PointTreeWidgetItem *> formats;
    if (!tabName.isEmpty()) {
        if (PointTreeWidgetItem *format = OwnSlots::format(data, tabName))
            formats.append(format);
    } else {
        for (PointObject *child : data->children()) {
            if (child->item()->isKind(QLatin1String("Format")))
                formats.append(child->item());
        }
    }
    if (formats.isEmpty())
        formats.append(OwnSlots::addFormat(data, *record));
    return formats;
}

DropOutcome dropDirectly(PointTreeWidgetItem *row, PointTreeWidgetItem *record)
{
    PointTreeWidgetItem *reference = makeReference(record);
    row->QTreeWidgetItem::addChild(reference);
    row->addChild(reference, true);
    Controller::instance()->addRealization(reference->master()->item());
    DropOutcome outcome;
    outcome.add(nullptr, reference);
    outcome.modified = true;
    return outcome;
}

DropOutcome recordBeside(const DropSite &site, const DropPlan &plan, PointTreeWidgetItem *record)
{
    DropOutcome outcome;
    outcome.add(nullptr, RowPlaces::insertNew(makeReference(record), plan.place, site.row));
    outcome.modified = true;
    return outcome;
}

/// A recorded drop changes the owner of the record, which must be there and be ours.
QString whyNotRecorded(const PointTreeWidgetItem *record)
{
    const Controller *controller = Controller::instance();
    if (!record->parentItem() || !controller->sourceDataManager())
        return DropWords::noFile();
    return controller->ownRealizations().isForeign(record->parentItem()) ? DropWords::foreignEntry(record) : QString();
}

} // namespace

DropPlan RecordDrop::plan(const DropSite &site, PointTreeWidgetItem *dragged)
{
    if (!site.row || !dragged)
        return DropPlan::refusal(DropWords::noRow());
    const QString kind = dragged->kind().toLower();
    const auto allows = [&kind](const PointTreeWidgetItem *node) { return AllowedKinds::of(node).contains(kind); };
    DropPlan onto = site.into(allows);
    if (!onto)
        onto.reason = DropWords::notTaken(site.row, dragged->kind());
    const DropPlan plan = site.choose(onto, site.beside(allows));
    const QString obstacle = plan.recorded ? whyNotRecorded(dragged) : QString();
    return obstacle.isEmpty() ? plan : DropPlan::refusal(obstacle);
}

DropOutcome RecordDrop::perform(const DropSite &site, PointTreeWidgetItem *dragged)
{
    const DropPlan what = plan(site, dragged);
    if (!what)
        return {};
    if (what.place != DropPlan::Place::Into)
        return recordBeside(site, what, dragged);
    if (!what.recorded)
        return dropDirectly(site.row, dragged);

    DropOutcome outcome;
    outcome.modified = true;
    const QString parentName = OwnSlots::parentName(what.through);
    const QVector<PointTreeWidgetItem *> formats = formatsFor(dragged, site.tabName);
    PointTreeWidgetItem *saved = nullptr;
    for (PointTreeWidgetItem *format : formats) {
        saved = saved ? new PointTreeWidgetItem(*saved) : makeReference(dragged);
        saved->setProperty(parentKey, parentName);
        OwnEdits::insert(format, saved);
    }
    auto *displayed = new PointTreeWidgetItem(*saved);
    site.row->QTreeWidgetItem::addChild(displayed);
    site.row->addChild(displayed, false);
    for (PointTreeWidgetItem *format : formats)
        outcome.add(format, displayed);
    return outcome;
}

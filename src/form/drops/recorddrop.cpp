#include "recorddrop.h"

#include "allowedkinds.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "ownslots.h"

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

} // namespace

DropPlan RecordDrop::plan(const DropSite &site, PointTreeWidgetItem *dragged)
{
    if (!site.row || !dragged)
        return {};
    const QString kind = dragged->kind().toLower();
    const DropPlan plan
        = site.into([&kind](const PointTreeWidgetItem *node) { return AllowedKinds::of(node).contains(kind); });
    const Controller *controller = Controller::instance();
    // A recorded drop changes the owner of the record, which must be there and be ours.
    if (plan.recorded
        && (!dragged->parentItem() || !controller->sourceDataManager()
            || controller->ownRealizations().isForeign(dragged->parentItem())))
        return {};
    return plan;
}

DropOutcome RecordDrop::perform(const DropSite &site, PointTreeWidgetItem *dragged)
{
    const DropPlan what = plan(site, dragged);
    if (!what)
        return {};
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

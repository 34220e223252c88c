#include "formatediting.h"

#include "formatfilling.h"
#include "model/controller.h"
#include "model/generatedid.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

#include <QSet>

#include <algorithm>

namespace {

const QString menuBar = QStringLiteral("menubar");
const QString toolBars = QStringLiteral("toolbars");

} // namespace

QStringList FormatEditing::childTypes(PointTreeWidgetItem *row)
{
    if (!row)
        return {};
    QStringList types = Controller::instance()->definitions().childTypes(row->kind().toLower(), row->pointId());
    if (row->kind() == QLatin1String("format")) {
        types << menuBar << toolBars;
        types.removeDuplicates();
        QSet<QString> taken;
        for (PointObject *child : row->children())
            taken.insert(child->item()->kind().toLower());
        types.erase(
            std::remove_if(types.begin(), types.end(), [&](const QString &type) { return taken.contains(type); }),
            types.end());
    }
    types.removeAll(QString());
    return types;
}

PointTreeWidgetItem *FormatEditing::createChild(PointTreeWidgetItem *row, const QString &type)
{
    auto *child = new PointTreeWidgetItem(QString());
    child->assignFields(*row);
    child->setKind(type);
    if (type == menuBar || type == toolBars) {
        child->QTreeWidgetItem::setText(0, type);
    } else {
        const QString id = GeneratedId::make(Controller::instance()->pluginId(), type + QLatin1Char('.'));
        child->setProperty(idKey, id);
        child->QTreeWidgetItem::setText(0, id);
    }
    row->addChild(child, true);
    // The copy that is saved has no row yet; the rows of this side follow the model.
    PointTreeWidgetItem *saved = child->master()->item();
    if (PointTreeWidgetItem *above = saved != child ? saved->parentItem() : nullptr)
        above->QTreeWidgetItem::addChild(saved);
    return child;
}

PointTreeWidgetItem *FormatEditing::createRoot(const QString &name)
{
    Controller *controller = Controller::instance();
    auto *root = new PointTreeWidgetItem(QStringLiteral("format"));
    root->setHasFormat(true);
    root->setKind(QStringLiteral("format"));
    root->setPluginId(controller->pluginId());
    root->setProperty(targetKey, name);
    if (PointTreeWidgetItem *set = controller->ownEdits().ensureDataSet())
        OwnEdits::insert(set, root);
    else
        controller->retire(root);
    return root;
}

void FormatEditing::rename(PointTreeWidgetItem *node, const QString &id)
{
    Controller *controller = Controller::instance();
    const QString old = node->property(idKey).toString();
    const bool isRecord = OwnRealizations::isRecord(node);
    OwnRealizations::Nodes entries;
    if (isRecord && !id.isEmpty())
        entries = controller->ownRealizations().references(old);
    else if (OwnRealizations::isRoot(node) || OwnRealizations::isEntry(node))
        entries.append(node);
    OwnRealizations::Nodes placed;
    if (!old.isEmpty() && !id.isEmpty()) {
        for (PointTreeWidgetItem *entry : qAsConst(entries))
            placed += FormatFilling::placedUnder(entry);
    }
    if (isRecord)
        controller->ownEdits().renameRecord(node, id);
    else
        node->setProperty(idKey, id);
    for (PointTreeWidgetItem *entry : qAsConst(placed))
        entry->setProperty(parentKey, id);
}

bool FormatEditing::isDeletable(PointTreeWidgetItem *row)
{
    return row && !Controller::instance()->ownRealizations().isForeign(row);
}

bool FormatEditing::moveByOne(PointTreeWidgetItem *row, int step)
{
    PointTreeWidgetItem *shownAbove = row ? row->parentItem() : nullptr;
    if (!shownAbove || !isDeletable(row))
        return false;
    PointTreeWidgetItem *saved = row->master()->item();
    PointTreeWidgetItem *above = saved->parentItem();
    if (!above)
        return false;
    QSet<const PointObject *> shown;
    for (PointObject *beside : shownAbove->children())
        shown.insert(beside->master());
    const QList<PointObject *> &all = above->children();
    const int old = all.indexOf(saved);
    int now = old + step;
    while (now >= 0 && now < all.size() && !shown.contains(all.at(now)))
        now += step;
    return now >= 0 && now < all.size() && OwnEdits::move(saved, above, now);
}

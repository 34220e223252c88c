#include "formatediting.h"

#include "model/controller.h"
#include "model/generatedid.h"
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
    QStringList types = Controller::instance()->childTypes(row->kind().toLower(), row->pointId());
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
        child->setProperty(QStringLiteral("id"), id);
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
    root->setProperty(QStringLiteral("target"), name);
    if (PointTreeWidgetItem *set = controller->ensureDataSet())
        controller->insertRealization(set, root);
    else
        controller->retire(root);
    return root;
}

bool FormatEditing::isDeletable(PointTreeWidgetItem *row)
{
    return row && !Controller::instance()->ownRealizations().isForeign(row);
}

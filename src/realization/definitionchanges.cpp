#include "definitionchanges.h"

#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

namespace {

PointTreeWidgetItem *pluginNode(PointTreeWidgetItem *root, const QString &plugin)
{
    for (PointObject *child : root->children()) {
        if (child->property(idKey).toString() == plugin)
            return child->item();
    }
    auto *node = new PointTreeWidgetItem(plugin);
    node->setProperty(idKey, plugin);
    node->setProperty(QStringLiteral("filename"), plugin);
    root->addChild(node, false);
    root->QTreeWidgetItem::addChild(node);
    return node;
}

/// The copy of @p definition under @p parent: the one that it links to, else the one with the same "id".
PointTreeWidgetItem *copyUnder(PointTreeWidgetItem *parent, PointTreeWidgetItem *definition)
{
    if (definition->link() != definition && definition->link()->isHeldBy(parent))
        return definition->link()->item();
    const QString id = definition->property(idKey).toString();
    for (PointObject *child : parent->children()) {
        if (!id.isEmpty() && child->property(idKey).toString() == id)
            return child->item();
    }
    return nullptr;
}

/// The opened file's own definitions are offered as soon as they are made.
bool isOffered(const PointTreeWidgetItem *definition)
{
    return definition->link() != definition;
}

} // namespace

void DefinitionChanges::add(
    PointTreeWidgetItem *root, const QString &plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint)
{
    Controller *controller = Controller::instance();
    if (isOffered(point) && (!subPoint || isOffered(subPoint)))
        return;
    PointTreeWidgetItem *owner = pluginNode(root, plugin);
    if (!subPoint) {
        controller->offerDefinition(point, owner);
        return;
    }
    if (!copyUnder(owner, point))
        controller->offerDefinition(point, owner);
    // A point that had none has brought the sub points that it has.
    if (!isOffered(subPoint))
        controller->offerDefinition(subPoint, copyUnder(owner, point));
}

#include "definitionchanges.h"

#include "model/controller.h"
#include "model/definitionmirror.h"
#include "model/pointtreewidgetitem.h"

namespace {

const QString idKey = QStringLiteral("id");

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

PointTreeWidgetItem *addCopy(PointTreeWidgetItem *parent, PointTreeWidgetItem *definition)
{
    PointTreeWidgetItem *copy = DefinitionMirror::mirror(parent, definition);
    const QVector<PointTreeWidgetItem *> points = DefinitionMirror::points(copy);
    for (PointTreeWidgetItem *node : points)
        Controller::instance()->registerDefinition(node);
    return copy;
}

} // namespace

void DefinitionChanges::add(
    PointTreeWidgetItem *root, const QString &plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint)
{
    PointTreeWidgetItem *owner = pluginNode(root, plugin);
    if (!subPoint) {
        addCopy(owner, point);
        return;
    }
    PointTreeWidgetItem *copy = copyUnder(owner, point);
    if (!copy)
        copy = addCopy(owner, point);
    // A point that had no copy has brought the sub points that it has.
    if (subPoint->link() == subPoint || !subPoint->link()->isHeldBy(copy))
        addCopy(copy, subPoint);
}

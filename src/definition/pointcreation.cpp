#include "pointcreation.h"

#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

#include <QDateTime>

PointCreation::Role PointCreation::roleOf(const PointTreeWidgetItem *item)
{
    if (!item->PointObject::parent())
        return Role::Plugin;
    if (item->isKind(QLatin1String("ExtPoint")))
        return Role::Point;
    if (item->isKind(QLatin1String("SubExtPoint")))
        return Role::SubPoint;
    return Role::Other;
}

PointTreeWidgetItem *PointCreation::createPoint(PointTreeWidgetItem *plugin)
{
    // Spelled so: files and users know the name.
    const QString name = QStringLiteral("Piont");
    auto *point = new PointTreeWidgetItem(name);
    point->setKind(QStringLiteral("ExtPoint"));
    const QString id = QString::number(QDateTime::currentSecsSinceEpoch());
    point->setProperty(idKey, id);
    point->setProperty(nameKey, name);

    // The root of a file that declared nothing was told its plug-in's id by its attribute alone.
    if (plugin->pluginId().isEmpty())
        plugin->setPluginId(plugin->property(idKey).toString());
    if (plugin->children().isEmpty()) {
        auto *set = new PointTreeWidgetItem(QString());
        set->setKind(QStringLiteral("ExtPointSet"));
        set->setPluginId(plugin->pluginId());
        set->setPointId(plugin->pointId());
        set->setHasFormat(plugin->hasFormat());
        plugin->addChild(set, false);
    }
    plugin->children().first()->addChild(point, false);
    plugin->QTreeWidgetItem::addChild(point);
    return point;
}

PointTreeWidgetItem *PointCreation::createSubPoint(PointTreeWidgetItem *point)
{
    const QString name = QStringLiteral("SubPoint");
    auto *subPoint = new PointTreeWidgetItem(name);
    subPoint->setKind(QStringLiteral("SubExtPoint"));
    subPoint->setProperty(QStringLiteral("key"), name);
    subPoint->setProperty(nameKey, name);
    point->addChild(subPoint, false);
    point->QTreeWidgetItem::addChild(subPoint);
    return subPoint;
}

void PointCreation::takeOut(PointTreeWidgetItem *node)
{
    if (PointObject *parent = node->parent())
        parent->detachChild(node);
}

void PointCreation::destroyWithCounterpart(PointTreeWidgetItem *node)
{
    takeOut(node);
    node->unlink();
    PointTreeWidgetItem::destroySubtree(node);
}

#include "allowedkinds.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

QStringList AllowedKinds::of(const PointTreeWidgetItem *node)
{
    QStringList kinds;
    const QStringList entries
        = Controller::instance()->definitions().childTypes(node->kind().toLower(), node->pointId());
    for (const QString &entry : entries) {
        if (!entry.isEmpty())
            kinds.append(entry.toLower());
    }
    return kinds;
}

QStringList AllowedKinds::forPoint(const PointTreeWidgetItem *node, const PointTreeWidgetItem *row)
{
    QStringList kinds = of(node);
    if (node->isKind(QLatin1String("Format"))) {
        kinds.append(QStringLiteral("menubar"));
        kinds.append(QStringLiteral("toolbars"));
        for (PointObject *child : row->children())
            kinds.removeAll(child->item()->kind().toLower());
    }
    return kinds;
}

#include "allowedkinds.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

namespace {

QStringList withBars(const PointTreeWidgetItem *node)
{
    QStringList kinds = AllowedKinds::of(node);
    if (node->isKind(QLatin1String("Format")))
        kinds += { QStringLiteral("menubar"), QStringLiteral("toolbars") };
    return kinds;
}

} // namespace

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
    QStringList kinds = withBars(node);
    if (node->isKind(QLatin1String("Format"))) {
        for (PointObject *child : row->children())
            kinds.removeAll(child->item()->kind().toLower());
    }
    return kinds;
}

bool AllowedKinds::isTakenAlready(const PointTreeWidgetItem *row, const QString &kind)
{
    return withBars(row).contains(kind) && !forPoint(row, row).contains(kind);
}

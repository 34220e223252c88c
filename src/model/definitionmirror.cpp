#include "definitionmirror.h"

#include "pointtreewidgetitem.h"

namespace {

bool isPoint(const PointTreeWidgetItem *node)
{
    return node->isKind(QLatin1String("ExtPoint")) || node->isKind(QLatin1String("SubExtPoint"));
}

} // namespace

PointTreeWidgetItem *DefinitionMirror::mirror(PointTreeWidgetItem *parent, PointTreeWidgetItem *definition)
{
    auto *copy = new PointTreeWidgetItem(*definition);
    copy->setLink(copy);
    definition->setLink(copy);
    // The directory of the file is a matter of realizations; the points of siblings have none either.
    copy->setBasePath({});
    if (isPoint(copy))
        parent->QTreeWidgetItem::addChild(copy);
    parent->addChild(copy, false);
    for (PointObject *child : definition->children())
        mirror(copy, child->item());
    return copy;
}

QVector<PointTreeWidgetItem *> DefinitionMirror::points(PointTreeWidgetItem *copy)
{
    QVector<PointTreeWidgetItem *> found;
    if (isPoint(copy))
        found.append(copy);
    for (PointObject *child : copy->children()) {
        if (isPoint(child->item()))
            found += points(child->item());
    }
    return found;
}

#include "formatsources.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

#include <QHash>

namespace {

QString idOf(const PointObject *node)
{
    return node->properties().value(QStringLiteral("id")).toString();
}

void linkNamesakes(PointObject *node, const QHash<QString, PointObject *> &byId)
{
    for (PointObject *child : node->children()) {
        PointObject *own = byId.value(idOf(child));
        if (own && child->link() == child)
            child->setLink(own);
        linkNamesakes(child, byId);
    }
}

/// What an earlier showing linked may stand for something else by now.
void unlinkSiblings(PointObject *node)
{
    node->setLink(node);
    for (PointObject *child : node->children())
        unlinkSiblings(child);
}

} // namespace

FormatSources FormatSources::of(const QString &name)
{
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    FormatSources sources;
    sources.own = realizations.formats(name);
    sources.siblings = realizations.siblingFormats(name);
    return sources;
}

void FormatSources::linkSiblings() const
{
    for (PointTreeWidgetItem *root : siblings)
        unlinkSiblings(root);
    if (own.isEmpty())
        return;
    QHash<QString, PointObject *> byId;
    for (PointObject *child : own.first()->children()) {
        const QString id = idOf(child);
        // One that names a "parent" is an entry of its own beside the sibling's.
        const bool placed = !child->properties().value(QStringLiteral("parent")).toString().isEmpty();
        if (!id.isEmpty() && !placed && !byId.contains(id))
            byId.insert(id, child);
    }
    for (PointTreeWidgetItem *root : siblings) {
        root->setLink(own.first());
        if (!byId.isEmpty())
            linkNamesakes(root, byId);
    }
}

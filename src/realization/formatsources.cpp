#include "formatsources.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

namespace {

QString idOf(const PointObject *node)
{
    return node->properties().value(QStringLiteral("id")).toString();
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

void FormatSources::linkSiblings()
{
    m_ownById.clear();
    for (PointTreeWidgetItem *root : qAsConst(own))
        collectOwn(root);
    for (PointTreeWidgetItem *root : qAsConst(siblings)) {
        // What an earlier showing linked may stand for something else by now.
        root->setLink(own.isEmpty() ? root : own.first());
        for (PointObject *child : root->children())
            link(child);
    }
}

bool FormatSources::mirrorsOwn(const PointTreeWidgetItem *node) const
{
    return node->link() != node && m_ownById.value(idOf(node)) == node->link();
}

void FormatSources::collectOwn(const PointObject *node)
{
    for (PointObject *child : node->children()) {
        const QString id = idOf(child);
        if (!id.isEmpty() && !m_ownById.contains(id))
            m_ownById.insert(id, child);
        collectOwn(child);
    }
}

void FormatSources::link(PointObject *node) const
{
    PointObject *namesake = m_ownById.value(idOf(node));
    node->setLink(namesake ? namesake : node);
    for (PointObject *child : node->children())
        link(child);
}

#include "formatsources.h"

#include "model/controller.h"
#include "model/keys.h"
#include "model/subtree.h"

namespace {

QString idOf(const PointObject *node)
{
    return node->properties().value(idKey).toString();
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
    for (PointTreeWidgetItem *root : qAsConst(own)) {
        forSubtree(root, [this, root](PointTreeWidgetItem *node) {
            const QString id = idOf(node);
            if (node != root && !id.isEmpty() && !m_ownById.contains(id))
                m_ownById.insert(id, node);
        });
    }
    for (PointTreeWidgetItem *root : qAsConst(siblings)) {
        // What an earlier showing linked may stand for something else by now.
        forSubtree(root, [this](PointTreeWidgetItem *node) {
            PointObject *namesake = m_ownById.value(idOf(node));
            node->setLink(namesake ? namesake : node);
        });
        root->setLink(own.isEmpty() ? root : own.first());
    }
}

bool FormatSources::mirrorsOwn(const PointTreeWidgetItem *node) const
{
    return node->link() != node && m_ownById.value(idOf(node)) == node->link();
}

#include "ownpoints.h"

#include "documentorder.h"
#include "model/keys.h"
#include "modelchanges.h"
#include "nodeindexes.h"
#include "openedfilesink.h"
#include "siblingsink.h"
#include "subtree.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace {

/// As a file would have them.
PropertyHash textsOf(const PointTreeWidgetItem *node)
{
    PropertyHash texts = node->properties();
    for (const PropertyHash::Entry &entry : node->properties()) {
        if (entry.value.userType() != QMetaType::QString)
            texts.insert(entry.key, entry.value.toString());
    }
    return texts;
}

/// Reads @p definition, as it stands in the model, into @p sink, and links it with everything under it to what came of
/// it.
void read(PointTreeWidgetItem *definition, SiblingSink *sink)
{
    walkSubtree(
        definition,
        [sink](PointTreeWidgetItem *node) {
            sink->startDefinition(node->kind(), textsOf(node));
            node->setLink(sink->current());
        },
        [sink](PointTreeWidgetItem *) { sink->endElement(); });
}

/// A set, which stands directly under the root, belongs to no point.
void describeOwn(PointTreeWidgetItem *node, const QString &pluginId)
{
    forSubtree(node, [&pluginId](PointTreeWidgetItem *item) {
        const PointTreeWidgetItem *above = item->parentItem();
        if (above && above->parentItem())
            OpenedFileSink::describeDefinition(item, *above, pluginId);
    });
}

} // namespace

OwnPoints::OwnPoints(NodeIndexes *indexes, ModelChanges *changes, std::function<void()> rootChanged)
    : m_indexes(indexes), m_changes(changes), m_rootChanged(std::move(rootChanged))
{ }

OwnPoints::~OwnPoints()
{
    stop();
}

void OwnPoints::watch(PointTreeWidgetItem *definitions, PointTreeWidgetItem *points)
{
    m_definitions = definitions;
    m_points = points;
    m_definitions->setWatcher(this);
}

void OwnPoints::stop()
{
    if (m_definitions)
        m_definitions->setWatcher(nullptr);
}

void OwnPoints::offerAll()
{
    for (PointObject *set : m_definitions->children())
        offerSet(set->item());
}

void OwnPoints::takeBackAll()
{
    const QVector<OfferedSet> sets = std::exchange(m_sets, {});
    for (const OfferedSet &offered : sets)
        PointTreeWidgetItem::destroySubtree(offered.plugin);
    m_placed = 0;
}

QVector<PointTreeWidgetItem *> OwnPoints::plugins() const
{
    QVector<PointTreeWidgetItem *> plugins;
    for (const OfferedSet &offered : m_sets) {
        if (offered.plugin)
            plugins.append(offered.plugin);
    }
    return plugins;
}

void OwnPoints::offer(PointTreeWidgetItem *definition, PointTreeWidgetItem *above)
{
    SiblingSink sink(QString(), m_points, nullptr, SiblingSink::EarlierFormats::Omit);
    sink.resume(above);
    read(definition, &sink);
    deliver(sink.take(QThread::currentThread()).get());
    m_changes->noteDefinitions();
}

void OwnPoints::offerSet(PointTreeWidgetItem *set)
{
    if (!m_points)
        return;
    SiblingSink sink(QString(), m_points, nullptr, SiblingSink::EarlierFormats::Omit);
    sink.startDefinitions(textsOf(m_definitions));
    m_sets.append(OfferedSet { set, sink.current() });
    for (PointObject *child : set->children())
        read(child->item(), &sink);
    sink.endElement();
    sink.endElement();
    deliver(sink.take(QThread::currentThread()).get());
}

void OwnPoints::deliver(ScannedFile *file)
{
    while (!file->atEnd()) {
        const Announcement announcement = *file->next();
        if (announcement.kind == Announcement::DefinData) {
            enter(announcement.key, announcement.node);
        } else {
            announcement.parent->QTreeWidgetItem::addChild(announcement.node);
            announcement.parent->addChild(announcement.node, false);
        }
    }
}

void OwnPoints::putIntoPlace(PointTreeWidgetItem *definition, PointTreeWidgetItem *above)
{
    PointTreeWidgetItem *offered = definition->link()->item();
    const QList<PointObject *> &all = definition->parentItem()->children();
    const auto firstAfter = [&](auto stands) -> PointTreeWidgetItem * {
        for (int i = all.indexOf(definition) + 1; i < all.size(); ++i) {
            PointTreeWidgetItem *next = all.at(i)->link()->item();
            if (next != offered && stands(next))
                return next;
        }
        return nullptr;
    };
    PointTreeWidgetItem *next = firstAfter([above](PointTreeWidgetItem *node) { return node->isHeldBy(above); });
    if (!next || !offered->isHeldBy(above))
        return;
    above->detachChild(offered);
    above->insertIntoListOnly(above->children().indexOf(next), offered);
    const auto hasRow = [above](PointTreeWidgetItem *node) { return node->QTreeWidgetItem::parent() == above; };
    PointTreeWidgetItem *nextRow = hasRow(offered) ? firstAfter(hasRow) : nullptr;
    if (nextRow) {
        offered->takeRow();
        above->QTreeWidgetItem::insertChild(above->indexOfChild(nextRow), offered);
    }
    forSubtree(offered, [this](PointTreeWidgetItem *node) {
        const QString key = SiblingSink::indexKey(node->kind(), node->properties());
        if (m_indexes->remove(NodeIndexes::Points, key, node))
            enter(key, node);
    });
}

void OwnPoints::enter(const QString &key, PointTreeWidgetItem *offered)
{
    if (key.isEmpty())
        return;
    m_indexes->insert(
        NodeIndexes::Points, key, offered, [this](const PointTreeWidgetItem *left, const PointTreeWidgetItem *right) {
            const bool leftOwn = isOwn(left);
            const bool rightOwn = isOwn(right);
            return leftOwn == rightOwn ? comesBefore(left, right) : leftOwn;
        });
}

bool OwnPoints::isOwn(const PointTreeWidgetItem *offered) const
{
    const PointTreeWidgetItem *plugin = offered;
    while (plugin->parentItem() && plugin->parentItem() != m_points)
        plugin = plugin->parentItem();
    return std::any_of(
        m_sets.cbegin(), m_sets.cend(), [plugin](const OfferedSet &offeredSet) { return offeredSet.plugin == plugin; });
}

PointTreeWidgetItem *OwnPoints::offeredOf(PointTreeWidgetItem *node) const
{
    for (const OfferedSet &offered : m_sets) {
        if (offered.set == node)
            return offered.plugin;
    }
    return node->link() && node->link() != node ? node->link()->item() : nullptr;
}

void OwnPoints::childAdded(PointTreeWidgetItem *parent, PointTreeWidgetItem *child)
{
    describeOwn(child, m_definitions->properties().text(idKey));
    if (parent == m_definitions) {
        // The names of the root's own attributes stay as they are written.
        child->setDefinitionSide();
        offerSet(child);
    } else if (PointTreeWidgetItem *above = offeredOf(parent)) {
        offer(child, above);
        putIntoPlace(child, above);
    }
    m_changes->noteDefinitions();
}

void OwnPoints::childRemoved(PointTreeWidgetItem *, PointTreeWidgetItem *child)
{
    for (int i = 0; i < m_sets.size(); ++i) {
        if (m_sets.at(i).set == child) {
            PointTreeWidgetItem::destroySubtree(m_sets.takeAt(i).plugin);
            m_placed = qMin(m_placed, m_sets.size());
            break;
        }
    }
    // What it links to is the node that offers it, and all that is offered of what hangs under it goes with that.
    child->unlink();
    m_changes->noteDefinitions();
}

void OwnPoints::propertyChanged(PointTreeWidgetItem *node, const QString &key, const QVariant &old)
{
    m_changes->noteDefinitions();
    if (node == m_definitions) {
        followRoot();
        return;
    }
    if (key == idKey || key == nameKey)
        describeOwn(node, m_definitions->properties().text(idKey));
    // Of a set nothing is offered but its place.
    if (node->link() == node || !node->link())
        return;
    PointTreeWidgetItem *offered = node->link()->item();
    // The chain of links is written from this end, so that the offered node has the old value still.
    PropertyHash now = node->properties();
    PropertyHash before = now;
    before.insert(key, old);
    offered->showProperties(now);
    const QString oldKey = SiblingSink::indexKey(offered->kind(), before);
    const QString newKey = SiblingSink::indexKey(offered->kind(), now);
    if (oldKey != newKey) {
        m_indexes->remove(NodeIndexes::Points, oldKey, offered);
        enter(newKey, offered);
    }
    describeOffered(offered);
}

void OwnPoints::kindChanged(PointTreeWidgetItem *node, const QString &old)
{
    m_changes->noteDefinitions();
    if (node->link() == node || !node->link())
        return;
    PointTreeWidgetItem *offered = node->link()->item();
    m_indexes->remove(NodeIndexes::Points, SiblingSink::indexKey(old, offered->properties()), offered);
    offered->setKind(node->kind());
    enter(SiblingSink::indexKey(offered->kind(), offered->properties()), offered);
    describeOffered(offered);
}

void OwnPoints::describeOffered(PointTreeWidgetItem *offered)
{
    forSubtree(offered, [](PointTreeWidgetItem *item) { SiblingSink::describe(item, item->parentItem()); });
}

void OwnPoints::followRoot()
{
    const QString pluginId = m_definitions->properties().text(idKey);
    m_definitions->setPluginId(pluginId);
    for (PointObject *set : m_definitions->children())
        describeOwn(set->item(), pluginId);
    for (const OfferedSet &offered : qAsConst(m_sets)) {
        if (!offered.plugin)
            continue;
        offered.plugin->showProperties(m_definitions->properties());
        offered.plugin->QTreeWidgetItem::setText(0, pluginId);
        offered.plugin->setPluginId(pluginId);
        for (PointObject *child : offered.plugin->children())
            describeOffered(child->item());
    }
    m_rootChanged();
}

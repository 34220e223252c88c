#include "realizationindexing.h"

#include "documentorder.h"
#include "model/keys.h"
#include "modelchanges.h"
#include "nodeindexes.h"
#include "openedfilesink.h"
#include "subtree.h"

namespace {

/// Whether nothing in the document comes after what stands under @p node.
bool isAtEnd(const PointTreeWidgetItem *node)
{
    for (const PointTreeWidgetItem *above = node->parentItem(); above; above = node->parentItem()) {
        if (above->children().constLast()->item() != node)
            return false;
        node = above;
    }
    return true;
}

/// What stands directly under the root is a set, which nobody looks for.
bool isSet(const PointTreeWidgetItem *node)
{
    return node->parentItem() && !node->parentItem()->parentItem();
}

bool holdsTargetBefore(const PointTreeWidgetItem *left, const PointTreeWidgetItem *right)
{
    const bool leftRecorded = RealizationIndexing::isRecordedFormat(left);
    const bool rightRecorded = RealizationIndexing::isRecordedFormat(right);
    return leftRecorded == rightRecorded ? comesBefore(left, right) : rightRecorded;
}

} // namespace

/// Under what a node stands in the indexes. Built anew with what an attribute was, it says where the node stood.
struct RealizationIndexing::Keys
{
    Keys(const QString &kind, const QString &id, const QString &named)
        : name(id.isEmpty() ? kind : id), isLayout(kind.compare(QLatin1String("layout"), Qt::CaseInsensitive) == 0)
    {
        if (kind.compare(QLatin1String("format"), Qt::CaseInsensitive) == 0)
            target = named.isEmpty() ? id : named;
    }
    explicit Keys(const PointTreeWidgetItem *node)
        : Keys(node->kind(), node->properties().text(idKey), node->properties().text(targetKey))
    { }

    QString name;
    bool isLayout;
    QString target; ///< empty when it has no place among the targets
};

bool RealizationIndexing::isRecordedFormat(const PointTreeWidgetItem *node)
{
    const PointTreeWidgetItem *above = node->parentItem();
    return node->kind() == QLatin1String("Format") && above && above->isKind(QLatin1String("ExtData"));
}

void RealizationIndexing::childAdded(PointTreeWidgetItem *, PointTreeWidgetItem *child)
{
    describe(child);
    // What is loaded comes at the end and need not be compared with what is there.
    const bool atEnd = isAtEnd(child);
    forSubtree(child, [&](PointTreeWidgetItem *node) {
        if (!m_indexes->knows(node) && !isSet(node))
            enter(node, Keys(node), atEnd);
        noteRecord(node, node->parentItem());
    });
    m_changes->noteStructure();
}

void RealizationIndexing::childRemoved(PointTreeWidgetItem *parent, PointTreeWidgetItem *child)
{
    forSubtree(child, [&](PointTreeWidgetItem *node) {
        leave(node, Keys(node));
        noteRecord(node, node == child ? parent : node->parentItem());
    });
    m_changes->noteStructure();
}

void RealizationIndexing::describe(PointTreeWidgetItem *node)
{
    const PointTreeWidgetItem *root = node;
    while (root->parentItem())
        root = root->parentItem();
    const QString pluginId = root->properties().text(idKey);
    forSubtree(node, [&](PointTreeWidgetItem *item) {
        if (!isSet(item))
            OpenedFileSink::describeRealization(item, *item->parentItem(), pluginId, root->basePath());
    });
}

void RealizationIndexing::noteRecord(const PointTreeWidgetItem *node, const PointTreeWidgetItem *above)
{
    if (above && above->isKind(QLatin1String("ExtData")))
        m_changes->noteRecord(node->properties().text(idKey));
}

void RealizationIndexing::propertyChanged(PointTreeWidgetItem *node, const QString &key, const QVariant &old)
{
    // The root follows the one of the definition side, and stands in no index.
    if (!node->parentItem())
        return;
    if ((key == idKey || key == targetKey) && !isSet(node)) {
        const PropertyHash &properties = node->properties();
        const bool isId = key == idKey;
        leave(node,
            Keys(node->kind(), isId ? old.toString() : properties.text(idKey),
                isId ? properties.text(targetKey) : old.toString()));
        enter(node, Keys(node));
        if (isId)
            describe(node);
    }
    noteRecord(node, node->parentItem());
    if (key == idKey)
        m_changes->noteRecord(old.toString());
    m_changes->noteEdit(node, key, old);
}

void RealizationIndexing::kindChanged(PointTreeWidgetItem *node, const QString &old)
{
    if (isSet(node) || !node->parentItem())
        return;
    leave(node, Keys(old, node->properties().text(idKey), node->properties().text(targetKey)));
    enter(node, Keys(node));
    m_changes->noteStructure();
}

void RealizationIndexing::enter(PointTreeWidgetItem *node)
{
    if (!m_indexes->knows(node) && !isSet(node))
        enter(node, Keys(node));
}

void RealizationIndexing::enter(PointTreeWidgetItem *node, const Keys &keys, bool atEnd)
{
    const auto add = [&](NodeIndexes::Name name, const QString &key) {
        if (atEnd)
            m_indexes->add(name, key, node);
        else
            m_indexes->insert(name, key, node, comesBefore);
    };
    add(NodeIndexes::Realizations, keys.name);
    if (!keys.target.isEmpty())
        m_indexes->insert(NodeIndexes::Targets, keys.target, node, holdsTargetBefore);
    if (keys.isLayout)
        add(NodeIndexes::Layouts, QString());
}

void RealizationIndexing::leave(PointTreeWidgetItem *node, const Keys &keys)
{
    m_indexes->remove(NodeIndexes::Realizations, keys.name, node);
    if (!keys.target.isEmpty())
        m_indexes->remove(NodeIndexes::Targets, keys.target, node);
    if (keys.isLayout)
        m_indexes->remove(NodeIndexes::Layouts, QString(), node);
}

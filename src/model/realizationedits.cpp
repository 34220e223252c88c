// The manager's changes of the opened file's realization side.

#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"

namespace {

const QString idKey = QStringLiteral("id");
const QString targetKey = QStringLiteral("target");

/// The rows of this side follow the model, so that a page may show any part of it.
void insertRow(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index)
{
    // The rows may lack some that a caller has put in the lists only, so the neighbour tells the place.
    int row = -1;
    if (index >= 0 && index + 1 < parent->children().size())
        row = parent->indexOfChild(parent->children().at(index + 1)->item());
    if (row < 0)
        parent->QTreeWidgetItem::addChild(node);
    else
        parent->QTreeWidgetItem::insertChild(row, node);
}

/// Into the list of @p parent alone: a mirrored parent's master is none of its business.
void insertIntoList(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index)
{
    if (index < 0 || index >= parent->children().size()) {
        parent->addChild(node, false);
        return;
    }
    PointObject *const link = parent->link();
    parent->setLink(parent);
    parent->insertChild(index, node);
    parent->setLink(link);
}

template <typename Visitor>
void forSubtree(PointTreeWidgetItem *node, Visitor visit)
{
    visit(node);
    for (PointObject *child : node->children())
        forSubtree(child->item(), visit);
}

} // namespace

OwnRealizations SourceDataManager::ownRealizations() const
{
    return { &m_indexes, m_realizationRoot, m_allDataRoot };
}

PointTreeWidgetItem *SourceDataManager::ensureDataSet()
{
    if (!m_realizationRoot)
        return nullptr;
    for (PointObject *child : m_realizationRoot->children()) {
        if (child->item()->isKind(QLatin1String("ExtDataSet")))
            return child->item();
    }
    auto *set = new PointTreeWidgetItem(QString());
    set->setKind(QStringLiteral("ExtDataSet"));
    insertRealization(m_realizationRoot, set);
    return set;
}

void SourceDataManager::insertRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index)
{
    insertIntoList(parent, node, index);
    node->takeRow();
    insertRow(parent, node, index);
    addRealization(node);
    if (node->isKind(QLatin1String("format")) && !node->property(targetKey).toString().isEmpty())
        addTarget(node);
    if (node->isKind(QLatin1String("layout")))
        m_indexes.add(NodeIndexes::Layouts, QString(), node);
}

bool SourceDataManager::moveRealization(PointTreeWidgetItem *node, PointTreeWidgetItem *parent, int index)
{
    if (!node || !parent || node->reaches(parent))
        return false;
    if (PointTreeWidgetItem *above = node->parentItem())
        above->detachChild(node);
    node->takeRow();
    insertIntoList(parent, node, index);
    insertRow(parent, node, index);
    // Another point may say what the node is from now on.
    const QString oldPoint = node->pointId();
    forSubtree(node, [&](PointTreeWidgetItem *item) {
        if (item->pointId() == oldPoint)
            item->setPointId(parent->pointId());
        item->setHasFormat(parent->hasFormat());
    });
    return true;
}

void SourceDataManager::setRealizationProperty(PointTreeWidgetItem *node, const QString &key, const QVariant &value)
{
    // Who stands in which index is known by the old value.
    QVector<PointTreeWidgetItem *> byId;
    QVector<PointTreeWidgetItem *> byTarget;
    PointObject *object = node;
    while (object) {
        PointTreeWidgetItem *item = object->item();
        const QString id = item->property(idKey).toString();
        if (key == idKey && m_indexes.remove(NodeIndexes::Realizations, id.isEmpty() ? item->kind() : id, item))
            byId.append(item);
        if (key == targetKey && m_indexes.remove(NodeIndexes::Targets, item->property(targetKey).toString(), item))
            byTarget.append(item);
        object = object->link() == object ? nullptr : object->link();
    }
    const QString old = node->property(key).toString();
    node->setProperty(key, value);
    if (key == idKey && node->isKind(QLatin1String("ExtData"))) {
        forSubtree(node, [&](PointTreeWidgetItem *item) {
            if (item->pointId() == old)
                item->setPointId(value.toString());
        });
    }
    for (PointTreeWidgetItem *item : qAsConst(byId))
        addRealization(item);
    for (PointTreeWidgetItem *item : qAsConst(byTarget))
        addTarget(item);
    if (!byTarget.isEmpty())
        restoreTarget(old);
}

void SourceDataManager::restoreTarget(const QString &target)
{
    if (target.isEmpty() || formatOfTarget(target))
        return;
    const OwnRealizations::Nodes formats = ownRealizations().formats(target);
    if (!formats.isEmpty() && formats.constLast()->property(targetKey).toString() == target)
        addTarget(formats.constLast());
}

void SourceDataManager::destroyRealization(PointTreeWidgetItem *node)
{
    if (!node)
        return;
    const QString target = node->property(targetKey).toString();
    if (PointTreeWidgetItem *above = node->parentItem())
        above->detachChild(node);
    PointTreeWidgetItem::destroySubtree(node);
    restoreTarget(target);
}

void SourceDataManager::retire(PointTreeWidgetItem *node)
{
    if (!node)
        return;
    m_retired.append(node);
    unregister(node);
}

void SourceDataManager::unregister(PointTreeWidgetItem *node)
{
    QVector<PointTreeWidgetItem *> open { node };
    while (!open.isEmpty()) {
        PointTreeWidgetItem *item = open.takeLast();
        m_indexes.forget(item);
        for (PointObject *child : item->children()) {
            if (child->parent() == item)
                open.append(child->item());
        }
    }
}

void SourceDataManager::followPointId(const QString &old, const QString &now)
{
    if (old == now || old.isEmpty() || now.isEmpty() || definition(old))
        return;
    const OwnRealizations::Nodes holders = ownRealizations().holders(old);
    for (PointTreeWidgetItem *holder : holders) {
        setRealizationProperty(holder, idKey, now);
        holder->setText(0, now);
    }
}

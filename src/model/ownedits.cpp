// The manager's changes of the opened file's realization side.

#include "sourcedatamanager.h"
#include "subtree.h"

namespace {

const QString idKey = QStringLiteral("id");

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
    parent->insertIntoListOnly(index, node);
    node->takeRow();
    insertRow(parent, node, index);
}

bool SourceDataManager::moveRealization(PointTreeWidgetItem *node, PointTreeWidgetItem *parent, int index)
{
    if (!node || !parent || node->reaches(parent))
        return false;
    if (PointTreeWidgetItem *above = node->parentItem())
        above->detachChild(node);
    node->takeRow();
    parent->insertIntoListOnly(index, node);
    insertRow(parent, node, index);
    return true;
}

void SourceDataManager::setRealizationProperty(PointTreeWidgetItem *node, const QString &key, const QVariant &value)
{
    node->setProperty(key, value);
}

void SourceDataManager::renameRecord(PointTreeWidgetItem *record, const QString &id)
{
    const QString old = record->property(idKey).toString();
    const OwnRealizations::Nodes references
        = id.isEmpty() ? OwnRealizations::Nodes() : ownRealizations().references(old);
    for (PointTreeWidgetItem *reference : references)
        setRealizationProperty(reference, idKey, id);
    setRealizationProperty(record, idKey, id);
}

void SourceDataManager::destroyRealization(PointTreeWidgetItem *node)
{
    PointTreeWidgetItem::destroySubtree(node);
}

void SourceDataManager::retire(PointTreeWidgetItem *node)
{
    if (!node)
        return;
    if (PointTreeWidgetItem *above = node->parentItem())
        above->detachChild(node);
    node->takeRow();
    m_retired.append(node);
    forSubtree(node, [this](PointTreeWidgetItem *item) { m_indexes.forget(item); });
}

void SourceDataManager::followPointId(const QString &old, const QString &now)
{
    // Where somebody else has the one name or the other, nobody can say later whose the records were.
    if (old == now || old.isEmpty() || now.isEmpty() || definition(old)
        || m_indexes[NodeIndexes::Points].nodes(now).size() > 1 || !ownRealizations().holders(now).isEmpty())
        return;
    const OwnRealizations::Nodes holders = ownRealizations().holders(old);
    for (PointTreeWidgetItem *holder : holders)
        setRealizationProperty(holder, idKey, now);
}

#include "ownedits.h"

#include "model/keys.h"
#include "nodeindexes.h"
#include "pointtreewidgetitem.h"

namespace {

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

OwnEdits::OwnEdits(const NodeIndexes *indexes, PointTreeWidgetItem *root, const OwnRealizations &own)
    : m_indexes(indexes), m_root(root), m_own(own)
{ }

PointTreeWidgetItem *OwnEdits::ensureDataSet() const
{
    if (!m_root)
        return nullptr;
    for (PointObject *child : m_root->children()) {
        if (child->item()->isKind(QLatin1String("ExtDataSet")))
            return child->item();
    }
    auto *set = new PointTreeWidgetItem(QString());
    set->setKind(QStringLiteral("ExtDataSet"));
    insert(m_root, set);
    return set;
}

void OwnEdits::insert(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index)
{
    parent->insertIntoListOnly(index, node);
    node->takeRow();
    insertRow(parent, node, index);
}

bool OwnEdits::move(PointTreeWidgetItem *node, PointTreeWidgetItem *parent, int index)
{
    if (!node || !parent || node->reaches(parent))
        return false;
    if (PointTreeWidgetItem *above = node->parentItem())
        above->detachChild(node);
    insert(parent, node, index);
    return true;
}

void OwnEdits::renameRecord(PointTreeWidgetItem *record, const QString &id) const
{
    const QString old = record->property(idKey).toString();
    const OwnRealizations::Nodes references = id.isEmpty() ? OwnRealizations::Nodes() : m_own.references(old);
    for (PointTreeWidgetItem *reference : references)
        reference->setProperty(idKey, id);
    record->setProperty(idKey, id);
}

void OwnEdits::followPointId(const QString &old, const QString &now) const
{
    // Where somebody else has the one name or the other, nobody can say later whose the records were.
    if (!m_indexes || old == now || old.isEmpty() || now.isEmpty() || (*m_indexes)[NodeIndexes::Points].first(old)
        || (*m_indexes)[NodeIndexes::Points].nodes(now).size() > 1 || !m_own.holders(now).isEmpty())
        return;
    const OwnRealizations::Nodes holders = m_own.holders(old);
    for (PointTreeWidgetItem *holder : holders)
        holder->setProperty(idKey, now);
}

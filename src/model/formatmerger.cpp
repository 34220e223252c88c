#include "formatmerger.h"

#include "pointtreewidgetitem.h"

#include <QSet>

namespace {

const QString idKey = QStringLiteral("id");

QString folded(PointTreeWidgetItem *node, const QString &key)
{
    return node->property(key).toString().toLower();
}

QVector<PointTreeWidgetItem *> childItems(const PointTreeWidgetItem *node)
{
    QVector<PointTreeWidgetItem *> items;
    items.reserve(node->children().size());
    for (PointObject *child : node->children()) {
        if (PointTreeWidgetItem *item = child->item())
            items.append(item);
    }
    return items;
}

bool rowIsWithin(const QTreeWidgetItem *row, const QTreeWidgetItem *other)
{
    for (; row; row = row->parent()) {
        if (row == other)
            return true;
    }
    return false;
}

/// Nothing happens where the node would come to stand under itself, in the lists or in the rows: a node can stand in
/// two lists, so its parents alone do not tell.
void move(PointTreeWidgetItem *node, PointTreeWidgetItem *from, PointTreeWidgetItem *to)
{
    if (node->reaches(to) || rowIsWithin(to, node))
        return;
    if (node->QTreeWidgetItem::parent() == from)
        node->takeRow();
    from->detachChild(node);
    to->addChild(node, false);
    to->QTreeWidgetItem::addChild(node);
}

bool isBar(const PointTreeWidgetItem *node)
{
    return node->isKind(QLatin1String("ToolBars")) || node->isKind(QLatin1String("MenuBar"));
}

/// The search as it is defined, for the rare id that several nodes have.
class ParentSearch final
{
public:
    ParentSearch(PointTreeWidgetItem *node, const QString &parentId) : m_node(node), m_parentId(parentId) { }

    void run(PointTreeWidgetItem *searched)
    {
        // A node that stands in two lists is searched once.
        if (m_seen.contains(searched))
            return;
        m_seen.insert(searched);
        const QVector<PointTreeWidgetItem *> candidates = childItems(searched);
        for (PointTreeWidgetItem *candidate : candidates) {
            if (candidate == m_node)
                continue;
            if (folded(candidate, idKey) == m_parentId) {
                move(m_node, searched, candidate);
                return;
            }
            run(candidate);
        }
    }

private:
    PointTreeWidgetItem *m_node;
    QString m_parentId;
    QSet<PointTreeWidgetItem *> m_seen;
};

} // namespace

FormatMerger::FormatMerger() = default;

FormatMerger::~FormatMerger() = default;

void FormatMerger::merge(PointTreeWidgetItem *known, PointTreeWidgetItem *arrived)
{
    QVector<Node> newChildren;
    QVector<QString> newIds;
    if (!m_roots.contains(known)) {
        const QVector<PointTreeWidgetItem *> children = childItems(known);
        for (PointTreeWidgetItem *child : children) {
            newChildren.append(child);
            takeIn(m_roots[known], child, &newIds);
            if (isBar(child))
                m_roots[known].bars.append(child);
        }
    }
    Root &root = m_roots[known];

    bool moved = false;
    const QVector<PointTreeWidgetItem *> newcomers = childItems(arrived);
    for (PointTreeWidgetItem *child : newcomers) {
        if (isBar(child)) {
            for (const Node &bar : qAsConst(root.bars)) {
                if (!bar || bar->parent() != known || bar->kind().compare(child->kind(), Qt::CaseInsensitive) != 0)
                    continue;
                const QVector<PointTreeWidgetItem *> entries = childItems(child);
                for (PointTreeWidgetItem *entry : entries) {
                    move(entry, child, bar);
                    takeIn(root, entry, &newIds);
                    moved = true;
                }
            }
        }
        if (!moved) {
            move(child, arrived, known);
            takeIn(root, child, &newIds);
            newChildren.append(child);
            if (isBar(child))
                root.bars.append(child);
        }
        if (!child->property(idKey).isValid())
            child->setText(0, child->kind());
    }
    placeAll(known, root, newChildren, newIds);
}

void FormatMerger::clear()
{
    m_roots.clear();
}

void FormatMerger::takeIn(Root &root, PointTreeWidgetItem *node, QVector<QString> *newIds)
{
    const QString id = folded(node, idKey);
    if (!id.isEmpty()) {
        root.nodesOfId[id].append(node);
        newIds->append(id);
    }
    const QVector<PointTreeWidgetItem *> children = childItems(node);
    for (PointTreeWidgetItem *child : children)
        takeIn(root, child, newIds);
}

void FormatMerger::placeAll(
    PointTreeWidgetItem *known, Root &root, const QVector<Node> &newChildren, const QVector<QString> &newIds)
{
    // A child that was placed before stays as it is unless another node of the id that it names has come.
    QVector<Node> children;
    for (const QString &id : newIds)
        children += root.waiting.value(id);
    for (const Node &child : newChildren) {
        const QString parentId = folded(child, QStringLiteral("parent"));
        if (!parentId.isEmpty()) {
            root.waiting[parentId].append(child);
            children.append(child);
        }
    }
    QSet<PointTreeWidgetItem *> placed;
    for (const Node &child : qAsConst(children)) {
        if (!child || placed.contains(child) || !child->isHeldBy(known))
            continue;
        placed.insert(child);
        place(known, root, child);
    }
}

void FormatMerger::place(PointTreeWidgetItem *known, const Root &root, PointTreeWidgetItem *node)
{
    const QString parentId = folded(node, QStringLiteral("parent"));
    QVector<PointTreeWidgetItem *> candidates;
    for (const Node &candidate : root.nodesOfId.value(parentId)) {
        if (candidate && candidate != node)
            candidates.append(candidate);
    }
    if (candidates.isEmpty())
        return;
    if (candidates.size() > 1 || !candidates.first()->parent()) {
        ParentSearch(node, parentId).run(known);
        return;
    }
    PointTreeWidgetItem *match = candidates.first();
    move(node, match->isHeldBy(known) ? known : match->parentItem(), match);
}

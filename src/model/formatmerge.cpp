#include "formatmerge.h"

#include "pointtreewidgetitem.h"

#include <QSet>

namespace {

bool sameText(const QString &left, const QString &right) { return left.compare(right, Qt::CaseInsensitive) == 0; }

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

void move(PointTreeWidgetItem *node, PointTreeWidgetItem *from, PointTreeWidgetItem *to)
{
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

/// Looks for the node that @p node names as its parent, below @p searched. One branch may have an answer of its own
/// although another has given one: the search stops only on the level on which it has found something, and takes the
/// node out of the place that it searched, which deeper down is not the place where the node stands.
class ParentSearch final
{
public:
    ParentSearch(PointTreeWidgetItem *node, const QString &parentId)
        : m_node(node)
        , m_parentId(parentId)
    {
    }

    void run(PointTreeWidgetItem *searched)
    {
        // A node can stand in two lists after an earlier search.
        if (m_seen.contains(searched))
            return;
        m_seen.insert(searched);
        const QVector<PointTreeWidgetItem *> candidates = childItems(searched);
        for (PointTreeWidgetItem *candidate : candidates) {
            if (candidate == m_node)
                continue;
            if (sameText(candidate->property(QStringLiteral("id")).toString(), m_parentId)) {
                if (!candidate->isWithin(m_node))
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

void FormatMerge::merge(PointTreeWidgetItem *known, PointTreeWidgetItem *arrived)
{
    bool moved = false;
    const QVector<PointTreeWidgetItem *> newcomers = childItems(arrived);
    for (PointTreeWidgetItem *child : newcomers) {
        if (isBar(child)) {
            const QVector<PointTreeWidgetItem *> bars = childItems(known);
            for (PointTreeWidgetItem *bar : bars) {
                if (!sameText(bar->kind(), child->kind()))
                    continue;
                const QVector<PointTreeWidgetItem *> entries = childItems(child);
                for (PointTreeWidgetItem *entry : entries) {
                    move(entry, child, bar);
                    moved = true;
                }
            }
        }
        if (!moved)
            move(child, arrived, known);
        if (!child->property(QStringLiteral("id")).isValid())
            child->setText(0, child->kind());
    }
    placeUnderParents(known);
}

void FormatMerge::placeUnderParents(PointTreeWidgetItem *root)
{
    const QVector<PointTreeWidgetItem *> children = childItems(root);
    for (PointTreeWidgetItem *child : children) {
        const QString parentId = child->property(QStringLiteral("parent")).toString();
        if (!parentId.isEmpty())
            ParentSearch(child, parentId).run(root);
    }
}

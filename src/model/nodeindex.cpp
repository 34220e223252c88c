#include "nodeindex.h"

#include <algorithm>

void NodeIndex::add(const QString &key, PointTreeWidgetItem *node)
{
    m_nodes[key].append(node);
    ++m_size;
}

bool NodeIndex::remove(const QString &key, PointTreeWidgetItem *node)
{
    const auto found = m_nodes.find(key);
    if (found == m_nodes.end() || !found->removeOne(node))
        return false;
    if (found->isEmpty())
        m_nodes.erase(found);
    --m_size;
    return true;
}

int NodeIndex::removeEverywhere(PointTreeWidgetItem *node)
{
    int removed = 0;
    for (auto entry = m_nodes.begin(); entry != m_nodes.end();) {
        removed += entry->removeAll(node);
        if (entry->isEmpty())
            entry = m_nodes.erase(entry);
        else
            ++entry;
    }
    m_size -= removed;
    return removed;
}

PointTreeWidgetItem *NodeIndex::first(const QString &key) const
{
    const auto found = m_nodes.constFind(key);
    return found == m_nodes.constEnd() ? nullptr : found->constFirst();
}

bool NodeIndex::contains(const QString &key, const PointTreeWidgetItem *node) const
{
    const auto found = m_nodes.constFind(key);
    return found != m_nodes.constEnd() && found->contains(const_cast<PointTreeWidgetItem *>(node));
}

QStringList NodeIndex::sortedKeys() const
{
    QStringList keys = m_nodes.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

NodeIndex::Nodes NodeIndex::all() const
{
    Nodes all;
    all.reserve(m_size);
    const QStringList keys = sortedKeys();
    for (const QString &key : keys)
        all += m_nodes.value(key);
    return all;
}

void NodeIndex::clear()
{
    m_nodes.clear();
    m_size = 0;
}

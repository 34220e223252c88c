#include "nodeindex.h"

#include <algorithm>
#include <utility>

void NodeIndex::add(const QString &key, PointTreeWidgetItem *node)
{
    PointTreeWidgetItem *&first = m_first[key];
    if (!first)
        first = node;
    else
        m_further[key].append(node);
    ++m_size;
}

void NodeIndex::insertAt(const QString &key, int index, PointTreeWidgetItem *node)
{
    Nodes &further = m_further[key];
    if (index == 0)
        further.prepend(std::exchange(m_first[key], node));
    else
        further.insert(index - 1, node);
    ++m_size;
}

NodeIndex::Nodes NodeIndex::replace(const QString &key, PointTreeWidgetItem *node)
{
    PointTreeWidgetItem *&first = m_first[key];
    if (!first) {
        first = node;
        ++m_size;
        return {};
    }
    const Nodes before = Nodes { first } + m_further.take(key);
    first = node;
    m_size -= before.size() - 1;
    return before;
}

bool NodeIndex::remove(const QString &key, PointTreeWidgetItem *node)
{
    const auto first = m_first.find(key);
    if (first == m_first.end())
        return false;
    const auto further = m_further.find(key);
    const bool isFirst = *first == node;
    if (further == m_further.end()) {
        if (!isFirst)
            return false;
        m_first.erase(first);
    } else {
        if (isFirst)
            *first = further->takeFirst();
        else if (!further->removeOne(node))
            return false;
        if (further->isEmpty())
            m_further.erase(further);
    }
    --m_size;
    return true;
}

int NodeIndex::removeEverywhere(PointTreeWidgetItem *node)
{
    int removed = 0;
    const QStringList keys = m_first.keys();
    for (const QString &key : keys) {
        while (remove(key, node))
            ++removed;
    }
    return removed;
}

NodeIndex::Nodes NodeIndex::nodes(const QString &key) const
{
    PointTreeWidgetItem *node = first(key);
    return node ? Nodes { node } + m_further.value(key) : Nodes();
}

PointTreeWidgetItem *NodeIndex::first(const QString &key) const
{
    return m_first.value(key);
}

bool NodeIndex::contains(const QString &key, const PointTreeWidgetItem *node) const
{
    if (m_first.value(key) == node)
        return node != nullptr;
    const auto further = m_further.constFind(key);
    return further != m_further.constEnd() && further->contains(const_cast<PointTreeWidgetItem *>(node));
}

QStringList NodeIndex::sortedKeys() const
{
    QStringList keys = m_first.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

NodeIndex::Nodes NodeIndex::all() const
{
    Nodes all;
    all.reserve(m_size);
    const QStringList keys = sortedKeys();
    for (const QString &key : keys)
        all += nodes(key);
    return all;
}

void NodeIndex::clear()
{
    m_first.clear();
    m_further.clear();
    m_size = 0;
}

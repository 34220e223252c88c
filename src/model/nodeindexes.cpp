#include "nodeindexes.h"

#include "model/keys.h"
#include "pointtreewidgetitem.h"

NodeIndexes::~NodeIndexes()
{
    clear();
}

void NodeIndexes::add(Name name, const QString &key, PointTreeWidgetItem *node)
{
    signOn(node);
    m_indexes[name].add(key, node);
    if (name == Points)
        m_definitionParts.added(key, node);
}

void NodeIndexes::replace(Name name, const QString &key, PointTreeWidgetItem *node)
{
    signOn(node);
    const NodeIndex::Nodes before = m_indexes[name].replace(key, node);
    for (PointTreeWidgetItem *old : before)
        signOff(old);
    if (name == Points)
        m_definitionParts.reset();
}

bool NodeIndexes::remove(Name name, const QString &key, PointTreeWidgetItem *node)
{
    if (!m_indexes[name].remove(key, node))
        return false;
    if (name == Points)
        m_definitionParts.removed(key, node);
    signOff(node);
    return true;
}

bool NodeIndexes::knows(const PointTreeWidgetItem *node) const
{
    return node->m_indexes == this;
}

void NodeIndexes::forget(PointTreeWidgetItem *node)
{
    const PropertyHash &properties = node->properties();
    const QString id = properties.value(idKey).toString();
    const QString key = properties.value(QStringLiteral("key")).toString().toLower();
    const QString target = properties.value(targetKey).toString();
    const std::array<QStringList, NameCount> likely { QStringList { id, key }, { id }, { id }, { target, id },
        { id, node->kind() }, { QString() }, { target }, { node->pluginId() }, { target, id } };
    for (int name = 0; name < NameCount; ++name) {
        for (const QString &candidate : likely[size_t(name)]) {
            while (node->m_indexes && remove(Name(name), candidate, node)) { }
        }
    }
    if (!node->m_indexes)
        return;
    for (NodeIndex &index : m_indexes)
        index.removeEverywhere(node);
    m_definitionParts.reset();
    node->m_indexEntries = 0;
    node->m_indexes = nullptr;
}

void NodeIndexes::clear()
{
    for (int name = 0; name < NameCount; ++name)
        clear(Name(name));
}

void NodeIndexes::clear(Name name)
{
    m_indexes[name].forEach([this](PointTreeWidgetItem *node) { signOff(node); });
    m_indexes[name].clear();
    if (name == Points)
        m_definitionParts.reset();
}

void NodeIndexes::signOn(PointTreeWidgetItem *node)
{
    if (node->m_indexes && node->m_indexes != this)
        node->m_indexes->forget(node);
    node->m_indexes = this;
    ++node->m_indexEntries;
}

void NodeIndexes::signOff(PointTreeWidgetItem *node)
{
    if (--node->m_indexEntries == 0)
        node->m_indexes = nullptr;
}

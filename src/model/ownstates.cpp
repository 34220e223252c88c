#include "ownstates.h"

#include "ownedits.h"
#include "pointtreewidgetitem.h"
#include "rows.h"
#include "subtree.h"

#include <QSet>

namespace {

using Node = PointTreeWidgetItem;

constexpr int deadNodesKept = 1000;

qint64 sizeOf(const OwnState::Node &part)
{
    qint64 size = qint64(sizeof(OwnState::Node) + sizeof(OwnState::Identity))
        + qint64(part.children.size() * sizeof(OwnState::Part));
    for (const PropertyHash::Entry &entry : part.properties)
        size += qint64(sizeof entry) + 2 * (entry.key.size() + entry.value.toString().size());
    return size;
}

bool isSame(const OwnState::Node &part, const Node *node, const std::vector<OwnState::Part> &children)
{
    return part.kind == node->kind() && part.basePath == node->basePath() && part.children == children
        && part.properties.isIdenticalTo(node->properties());
}

/// One attribute after the other, so that whoever watches meets no change of two at once; then their order.
void setProperties(Node *node, const PropertyHash &wanted)
{
    if (node->properties().isIdenticalTo(wanted))
        return;
    const PropertyHash before = node->properties();
    for (const PropertyHash::Entry &entry : before) {
        if (wanted.contains(entry.key))
            continue;
        PropertyHash without = node->properties();
        without.remove(entry.key);
        node->setProperties(without);
    }
    for (const PropertyHash::Entry &entry : wanted) {
        if (PropertyHash::isSame(before.value(entry.key), entry.value))
            continue;
        PropertyHash with = node->properties();
        with.insert(entry.key, entry.value);
        node->setProperties(with);
    }
    node->setProperties(wanted);
}

/// As reading gives them: every point has its row under the root, every sub point under what it belongs to.
void setDefinitionRows(Node *root)
{
    QList<Node *> points;
    for (PointObject *set : root->children()) {
        forSubtree(set->item(), [&points](Node *node) {
            if (node->isKind(QLatin1String("ExtPoint")))
                points.append(node);
            QList<Node *> subPoints;
            for (PointObject *child : node->children()) {
                if (child->item()->isKind(QLatin1String("SubExtPoint")))
                    subPoints.append(child->item());
            }
            setRows(node, subPoints);
        });
    }
    setRows(root, points);
}

} // namespace

OwnStates::OwnStates(PointTreeWidgetItem *definitions, PointTreeWidgetItem *realizations)
    : m_definitions(definitions), m_realizations(realizations)
{ }

std::shared_ptr<const OwnState> OwnStates::take()
{
    const auto state = std::make_shared<OwnState>();
    if (!m_definitions || !m_realizations)
        return state;
    m_alive = 0;
    state->m_definitions = take(m_definitions, &state->m_size);
    state->m_realizations = take(m_realizations, &state->m_size);
    if (m_identities.size() > 2 * m_alive + deadNodesKept)
        forgetDead();
    return state;
}

OwnState::Part OwnStates::take(Node *node, qint64 *size)
{
    ++m_alive;
    std::shared_ptr<OwnState::Identity> identity = m_identities.value(node);
    // Another node may have got the place of a dead one.
    if (!identity || identity->node != node) {
        identity = std::make_shared<OwnState::Identity>();
        identity->node = node;
        m_identities.insert(node, identity);
    }
    std::vector<OwnState::Part> children;
    children.reserve(size_t(node->children().size()));
    for (PointObject *child : node->children())
        children.push_back(take(child->item(), size));
    if (OwnState::Part last = identity->last.lock(); last && isSame(*last, node, children))
        return last;
    const OwnState::Part part = std::make_shared<const OwnState::Node>(
        OwnState::Node { identity, node->kind(), node->basePath(), node->properties(), std::move(children) });
    identity->last = part;
    *size += sizeOf(*part);
    return part;
}

void OwnStates::forgetDead()
{
    for (auto it = m_identities.begin(); it != m_identities.end();)
        it = it.value()->node ? std::next(it) : m_identities.erase(it);
}

void OwnStates::restore(const OwnState &state)
{
    if (!m_definitions || !m_realizations || !state.m_definitions || !state.m_realizations)
        return;
    m_definitionSide = true;
    m_made.clear();
    restoreSide(m_definitions, state.m_definitions);
    setDefinitionRows(m_definitions);
    // As when the file was opened.
    for (PointTreeWidgetItem *node : qAsConst(m_made))
        node->setExpanded(true);
    m_definitionSide = false;
    restoreSide(m_realizations, state.m_realizations);
    m_made.clear();
}

void OwnStates::restoreSide(Node *root, const OwnState::Part &wanted)
{
    QSet<const Node *> stays { root };
    std::vector<const OwnState::Node *> open { wanted.get() };
    while (!open.empty()) {
        const OwnState::Node *above = open.back();
        open.pop_back();
        for (const OwnState::Part &part : above->children) {
            open.push_back(part.get());
            Node *node = part->identity->node;
            if (!node)
                continue;
            stays.insert(node);
            // What was moved leaves its place before anything is destroyed that it stands in.
            if (node->parentItem() && node->parentItem() != above->identity->node) {
                node->parentItem()->detachChild(node);
                node->takeRow();
            }
        }
    }
    QList<QPointer<Node>> leaves;
    forSubtree(root, [&](Node *node) {
        if (!stays.contains(node))
            leaves.append(node);
    });
    for (const QPointer<Node> &node : qAsConst(leaves))
        Node::destroySubtree(node);
    fill(root, wanted);
}

void OwnStates::fill(Node *node, const OwnState::Part &wanted)
{
    setProperties(node, wanted->properties);
    if (node->kind() != wanted->kind)
        node->setKind(wanted->kind);
    const QList<PointObject *> &present = node->children();
    for (int i = 0; i < int(wanted->children.size()); ++i) {
        const OwnState::Part &part = wanted->children[size_t(i)];
        Node *child = nodeOf(*part);
        // What comes from elsewhere is complete before anybody meets it here.
        fill(child, part);
        if (i < present.size() && present.at(i)->item() == child)
            continue;
        if (i + 1 < present.size() && present.at(i + 1)->item() == child) {
            // One that stood here goes further down.
            Node *moved = present.at(i)->item();
            node->detachChild(moved);
            moved->takeRow();
            continue;
        }
        if (child->isHeldBy(node))
            node->detachChild(child);
        if (m_definitionSide)
            node->insertIntoListOnly(i, child);
        else
            OwnEdits::insert(node, child, i);
    }
    wanted->identity->last = wanted;
}

PointTreeWidgetItem *OwnStates::nodeOf(const OwnState::Node &wanted)
{
    if (wanted.identity->node)
        return wanted.identity->node;
    auto *node = new Node(QString());
    node->setKind(wanted.kind);
    node->setBasePath(wanted.basePath);
    if (m_definitionSide)
        node->setDefinitionSide();
    wanted.identity->node = node;
    m_identities.insert(node, wanted.identity);
    m_made.append(node);
    return node;
}

#include "fuzzing.h"

#include "model/nodeindexes.h"
#include "model/pointtreewidgetitem.h"

#include <QPointer>
#include <QSet>
#include <QVector>

#include <algorithm>

namespace {

using Node = PointTreeWidgetItem;

/// Takes small numbers out of the input until there are no more.
class Source final
{
public:
    Source(const uint8_t *data, size_t size) : m_data(data), m_size(size) { }
    [[nodiscard]] bool atEnd() const { return m_at >= m_size; }
    [[nodiscard]] int below(int limit) { return atEnd() ? 0 : m_data[m_at++] % limit; }

private:
    const uint8_t *m_data;
    const size_t m_size;
    size_t m_at = 0;
};

/// A few nodes, on which the input works, and what must hold whatever it does.
class Crowd final
{
public:
    explicit Crowd(Source &source) : m_source(source) { }
    Crowd(const Crowd &) = delete;
    Crowd &operator=(const Crowd &) = delete;
    ~Crowd()
    {
        m_indexes.clear();
        while (!m_nodes.isEmpty()) {
            Node::destroySubtree(m_nodes.first());
            sweep();
        }
    }

    void step()
    {
        const int operation = m_source.below(20);
        if (operation < 2 || m_nodes.isEmpty()) {
            if (m_nodes.size() < maximumNodes)
                create();
            return;
        }
        work(operation, any(), any());
        gatherCopies();
        sweep();
    }

    void check() const
    {
        QSet<const PointObject *> alive;
        for (const auto &node : m_nodes)
            alive.insert(node.data());
        for (const auto &node : m_nodes)
            checkNode(node, alive);
        for (int name = 0; name < NodeIndexes::NameCount; ++name) {
            const auto indexed = m_indexes[NodeIndexes::Name(name)].all();
            Fuzzing::demand(indexed.size() == m_indexes[NodeIndexes::Name(name)].size(), "an index that counts wrong");
            for (const Node *node : indexed)
                Fuzzing::demand(alive.contains(node), "a dead node in an index");
        }
    }

private:
    static constexpr int maximumNodes = 40;

    void work(int operation, Node *node, Node *other)
    {
        switch (operation) {
        case 2:
            if (m_nodes.size() < maximumNodes)
                m_nodes.append(new Node(*node));
            break;
        case 3:
            if (m_nodes.size() < maximumNodes)
                node->addChild(other, m_source.below(2) == 1);
            break;
        case 4:
            if (m_nodes.size() < maximumNodes)
                node->insertChild(m_source.below(5) - 1, other);
            break;
        case 5:
            node->removeChild(other);
            break;
        case 6:
            node->detachChild(other);
            break;
        case 7:
            node->setLink(other);
            break;
        case 8:
            node->setProperty(key(), m_source.below(4));
            break;
        case 9:
            node->setProperties(other->properties());
            break;
        case 10:
            (void)node->property(key());
            break;
        case 11:
            node->setText(0, QString::number(m_source.below(4)));
            break;
        case 12:
            m_indexes.add(name(), key(), node);
            break;
        case 13:
            m_indexes.replace(name(), key(), node);
            break;
        case 14:
            m_indexes.remove(name(), key(), node);
            break;
        case 15:
            m_indexes.forget(node);
            break;
        case 16:
            // Rows must not form rings; the widget does not test that.
            if (other != node && !other->QTreeWidgetItem::parent() && other->childCount() == 0)
                node->QTreeWidgetItem::addChild(other);
            break;
        case 17:
            node->takeRow();
            break;
        case 18:
            node->unlink();
            break;
        case 19:
            Node::destroySubtree(node);
            break;
        }
    }

    void checkNode(Node *node, const QSet<const PointObject *> &alive) const
    {
        Fuzzing::demand(!node->parent() || alive.contains(node->parent()), "a dead parent");
        Fuzzing::demand(node->link() && alive.contains(node->link()), "a dead link");
        for (PointObject *child : node->children()) {
            Fuzzing::demand(alive.contains(child), "a dead child");
            Fuzzing::demand(node->children().count(child) == 1, "a child twice");
            Fuzzing::demand(child->isHeldBy(node), "a child that does not know who holds it");
        }
        for (const PointObject *copy : node->copies())
            Fuzzing::demand(alive.contains(copy), "a dead copy");
        int steps = 0;
        for (const PointObject *link = node; link->link() != link; link = link->link())
            Fuzzing::demand(++steps <= m_nodes.size(), "a ring of links");
        Fuzzing::demand(node->master()->link() == node->master(), "a master that mirrors");
        for (const PointObject *child : node->children())
            Fuzzing::demand(!child->reaches(node), "a node under itself");
        for (int i = 0; i < node->childCount(); ++i)
            Fuzzing::demand(alive.contains(Node::fromRow(node->child(i))), "a dead row");
    }

    QString key()
    {
        static const char *const keys[] = { "id", "ID", "key", "target", "Name", "name" };
        return QString::fromLatin1(keys[m_source.below(6)]);
    }
    NodeIndexes::Name name() { return NodeIndexes::Name(m_source.below(NodeIndexes::NameCount)); }
    Node *any() { return m_nodes.at(m_source.below(m_nodes.size())); }

    void create()
    {
        auto *node = new Node(QString());
        node->setKind(m_source.below(2) ? QStringLiteral("Kind") : QStringLiteral("ExtData"));
        node->setProperty(key(), m_source.below(3));
        m_nodes.append(node);
    }

    /// Some operations make copies of their own.
    void gatherCopies()
    {
        for (int i = 0; i < m_nodes.size(); ++i) {
            if (!m_nodes.at(i))
                continue;
            for (PointObject *copy : m_nodes.at(i)->copies()) {
                if (!m_nodes.contains(copy->item()))
                    m_nodes.append(copy->item());
            }
        }
    }

    void sweep()
    {
        m_nodes.erase(
            std::remove_if(m_nodes.begin(), m_nodes.end(), [](const auto &node) { return !node; }), m_nodes.end());
    }

    Source &m_source;
    QVector<QPointer<Node>> m_nodes;
    NodeIndexes m_indexes;
};

} // namespace

/// Whatever is done to nodes, in whatever order, nothing points to a dead one and nothing stands under itself.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::countWarnings();
    Source source(data, size);
    Crowd crowd(source);
    // What many steps break, a few do as well, and the fuzzer comes to try more of them.
    for (int step = 0; step < 300 && !source.atEnd(); ++step) {
        crowd.step();
        crowd.check();
    }
    return 0;
}

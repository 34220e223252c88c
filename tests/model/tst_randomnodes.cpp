#include "modeltesting.h"

#include "model/nodeindexes.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

#include <algorithm>

namespace {

using Node = PointTreeWidgetItem;

/// Applies random operations to a small crowd of nodes, and knows what must hold after each.
class Crowd final
{
public:
    explicit Crowd(quint32 seed) : m_random(seed) { }
    ~Crowd()
    {
        m_indexes.clear();
        while (!m_nodes.isEmpty())
            Node::destroySubtree(m_nodes.first().data()), sweep();
    }

    void step()
    {
        if (m_nodes.size() < 4) {
            create();
            return;
        }
        Node *node = any();
        Node *other = any();
        switch (m_random.bounded(14)) {
        case 0:
        case 1:
            create();
            break;
        case 2:
            adopt(new Node(*node));
            break;
        case 3:
        case 4:
            node->addChild(other, m_random.bounded(2) == 1);
            break;
        case 5:
            node->insertChild(m_random.bounded(4) - 1, other);
            break;
        case 6:
            node->removeChild(other);
            break;
        case 7:
            node->detachChild(other);
            break;
        case 8:
            node->setLink(other);
            break;
        case 9:
            node->setProperty(key(), m_random.bounded(3));
            node->setText(0, QStringLiteral("text"));
            break;
        case 10:
            (void)node->property(key());
            break;
        case 11:
            m_indexes.add(NodeIndexes::Name(m_random.bounded(int(NodeIndexes::NameCount))), key(), node);
            break;
        case 12:
            // Rows must not form rings either; the widget does not test that.
            if (other != node && !other->QTreeWidgetItem::parent() && other->childCount() == 0)
                node->QTreeWidgetItem::addChild(other);
            break;
        case 13:
            if (m_random.bounded(3) == 0)
                node->unlink();
            else if (m_nodes.size() > 30 || m_random.bounded(2) == 0)
                Node::destroySubtree(node);
            break;
        }
        gatherCopies();
        sweep();
    }

    /// Empty when everything holds.
    QString broken()
    {
        QSet<const PointObject *> alive;
        for (const auto &node : qAsConst(m_nodes))
            alive.insert(node.data());
        for (const auto &pointer : qAsConst(m_nodes)) {
            Node *node = pointer;
            if (node->parent() && !alive.contains(node->parent()))
                return QStringLiteral("a dead parent");
            if (node->link() && !alive.contains(node->link()))
                return QStringLiteral("a dead link");
            for (PointObject *child : node->children()) {
                if (!alive.contains(child))
                    return QStringLiteral("a dead child");
                if (node->children().count(child) != 1)
                    return QStringLiteral("a child twice");
            }
            for (PointObject *copy : node->copies()) {
                if (!alive.contains(copy))
                    return QStringLiteral("a dead copy");
            }
            int steps = 0;
            for (PointObject *link = node; link->link() && link->link() != link; link = link->link()) {
                if (++steps > m_nodes.size())
                    return QStringLiteral("a ring of links");
            }
            if (reaches(node, node))
                return QStringLiteral("a node under itself");
        }
        for (int name = 0; name < NodeIndexes::NameCount; ++name) {
            const NodeIndex::Nodes indexed = m_indexes[NodeIndexes::Name(name)].all();
            for (Node *node : indexed) {
                if (!alive.contains(node))
                    return QStringLiteral("a dead node in an index");
            }
            if (indexed.size() != m_indexes[NodeIndexes::Name(name)].size())
                return QStringLiteral("an index that counts wrong");
        }
        return {};
    }

private:
    bool reaches(const PointObject *from, const PointObject *sought)
    {
        QSet<const PointObject *> seen;
        QVector<const PointObject *> open { from };
        while (!open.isEmpty()) {
            for (const PointObject *child : open.takeLast()->children()) {
                if (child == sought)
                    return true;
                if (!seen.contains(child)) {
                    seen.insert(child);
                    open.append(child);
                }
            }
        }
        return false;
    }

    QString key()
    {
        static const char *const keys[] = { "id", "ID", "key", "target", "Name", "name" };
        return QString::fromLatin1(keys[m_random.bounded(6)]);
    }

    Node *any() { return m_nodes.at(m_random.bounded(m_nodes.size())); }
    void adopt(Node *node) { m_nodes.append(node); }
    void create() { adopt(ModelTesting::node(QStringLiteral("Kind"), { { key(), QStringLiteral("1") } })); }

    void gatherCopies()
    {
        for (int i = 0; i < m_nodes.size(); ++i) {
            if (!m_nodes.at(i))
                continue;
            for (PointObject *copy : m_nodes.at(i)->copies()) {
                if (!m_nodes.contains(copy->item()))
                    adopt(copy->item());
            }
        }
    }

    void sweep()
    {
        m_nodes.erase(
            std::remove_if(m_nodes.begin(), m_nodes.end(), [](const auto &node) { return !node; }), m_nodes.end());
    }

    QRandomGenerator m_random;
    QVector<QPointer<Node>> m_nodes;
    NodeIndexes m_indexes;
};

} // namespace

class TestRandomNodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invariantsHoldAfterEveryStep();
};

void TestRandomNodes::invariantsHoldAfterEveryStep()
{
    for (quint32 seed = 1; seed <= 3000; ++seed) {
        Crowd crowd(seed);
        for (int step = 0; step < 40; ++step) {
            crowd.step();
            const QString broken = crowd.broken();
            QVERIFY2(
                broken.isEmpty(), qPrintable(QStringLiteral("seed %1, step %2: %3").arg(seed).arg(step).arg(broken)));
        }
    }
}

int main(int argc, char **argv)
{
    // Refused rings are ordinary here.
    qputenv("QT_LOGGING_RULES", "extpoint.model.warning=false");
    QCoreApplication app(argc, argv);
    TestRandomNodes test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_randomnodes.moc"

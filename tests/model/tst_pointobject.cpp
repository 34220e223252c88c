#include "modeltesting.h"

#include <QPointer>
#include <QTest>
#include <QTreeWidget>

#include <memory>

using ModelTesting::node;

namespace {

using Node = PointTreeWidgetItem;

const QString id = QStringLiteral("id");

/// A master, its mirror and the mirror's mirror.
struct Chain
{
    Chain()
    {
        master.setKind(QStringLiteral("Format"));
        mirror->setKind(QStringLiteral("Format"));
    }
    ~Chain()
    {
        // A test may leave children behind; the three themselves go as members.
        for (Node *parent : { second.get(), mirror.get(), &master }) {
            const QList<PointObject *> children = parent->children();
            for (PointObject *child : children) {
                parent->detachChild(child);
                if (!child->parent())
                    Node::destroySubtree(child->item());
            }
        }
    }

    Node master { QStringLiteral("master") };
    std::unique_ptr<Node> mirror = std::make_unique<Node>(master);
    std::unique_ptr<Node> second = std::make_unique<Node>(*mirror);
    Node *at(int depth) { return depth == 0 ? &master : depth == 1 ? mirror.get() : second.get(); }
};

} // namespace

class TestPointObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyMirrorsItsSource();
    void propertyMovesLowerCaseKey_data();
    void propertyMovesLowerCaseKey();
    void addChild_data();
    void addChild();
    void insertChild_data();
    void insertChild();
    void removeChildTakesTheMastersFirstWithTheSameId();
    void unlinkDestroysTheMaster();
    void destructionLeavesNothingBehind_data();
    void destructionLeavesNothingBehind();
    void rowLeavesItsViewWhileWhole();
};

void TestPointObject::copyMirrorsItsSource()
{
    Node source(QStringLiteral("row"));
    source.setKind(QStringLiteral("ExtPoint"));
    source.setPointId(QStringLiteral("p"));
    source.setPluginId(QStringLiteral("plug"));
    source.setBasePath(QStringLiteral("/base/"));
    source.setHasFormat(true);
    source.setIsDroppedCopy(true);
    source.setName(QStringLiteral("n"));
    source.setProperty(id, QStringLiteral("a"));
    source.addChild(node(QStringLiteral("String")), false);

    const Node copy(source);
    QCOMPARE(copy.link(), static_cast<PointObject *>(&source));
    QCOMPARE(source.copies(), QList<PointObject *> { const_cast<Node *>(&copy) });
    QCOMPARE(copy.properties(), source.properties());
    QCOMPARE(copy.name(), QStringLiteral("n"));
    QCOMPARE(copy.text(0), QStringLiteral("row"));
    QCOMPARE(copy.kind() + copy.pointId() + copy.pluginId() + copy.basePath(), QStringLiteral("ExtPointpplug/base/"));
    QVERIFY(copy.hasFormat() && PointTreeWidgetItemTestAccess::isDroppedCopy(copy));
    QVERIFY(copy.children().isEmpty() && !copy.parent());
    Node::destroySubtree(source.children().first()->item());
}

void TestPointObject::propertyMovesLowerCaseKey_data()
{
    QTest::addColumn<PropertyHash>("before");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QStringList>("keysAfter");
    const QString text = QStringLiteral("v");
    QTest::newRow("exact") << PropertyHash { { QStringLiteral("Name"), text } } << QStringLiteral("Name")
                           << QVariant(text) << QStringList { QStringLiteral("Name") };
    QTest::newRow("lower moves, in its place")
        << PropertyHash { { QStringLiteral("name"), text }, { QStringLiteral("z"), text } } << QStringLiteral("Name")
        << QVariant(text) << QStringList { QStringLiteral("Name"), QStringLiteral("z") };
    QTest::newRow("upper is not found by lower")
        << PropertyHash { { QStringLiteral("Name"), text } } << QStringLiteral("name") << QVariant()
        << QStringList { QStringLiteral("Name") };
    const PropertyHash both { { QStringLiteral("childType"), QStringLiteral("exact") },
        { QStringLiteral("childtype"), text } };
    QTest::newRow("the exact one goes first")
        << both << QStringLiteral("childType") << QVariant(QStringLiteral("exact")) << both.keys();
    QTest::newRow("of a definition, the lower one")
        << both << QStringLiteral("childType") << QVariant(text) << QStringList { QStringLiteral("childType") };
    QTest::newRow("neither") << PropertyHash {} << QStringLiteral("Name") << QVariant() << QStringList {};
}

void TestPointObject::propertyMovesLowerCaseKey()
{
    QFETCH(const PropertyHash, before);
    QFETCH(const QString, asked);
    Node item((QString()));
    item.setProperties(before);
    if (QByteArray(QTest::currentDataTag()).startsWith("of a definition"))
        item.setDefinitionSide();
    QTEST(item.property(asked), "answer");
    QTEST(item.properties().keys(), "keysAfter");
    // What is written goes to the name that answers, and to no second one.
    item.setProperty(asked, QStringLiteral("new"));
    QCOMPARE(item.property(asked).toString(), QStringLiteral("new"));
    QStringList keys = item.properties().keys();
    keys.removeAll(asked);
    QVERIFY(!keys.contains(asked.toLower()) || before.contains(asked));
}

void TestPointObject::addChild_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<QList<int>>("children"); // of master, mirror, second
    QTest::newRow("master") << 0 << false << QList<int> { 1, 0, 0 };
    QTest::newRow("master never copies") << 0 << true << QList<int> { 1, 0, 0 };
    QTest::newRow("mirror alone") << 1 << false << QList<int> { 0, 1, 0 };
    QTest::newRow("mirror with its master") << 1 << true << QList<int> { 1, 1, 0 };
    QTest::newRow("second reaches one node up") << 2 << true << QList<int> { 0, 1, 1 };
}

void TestPointObject::addChild()
{
    QFETCH(const int, target);
    QFETCH(const bool, mirror);
    QFETCH(const QList<int>, children);
    Chain chain;
    Node *child = node(QStringLiteral("Menu"), { { id, QStringLiteral("m") } });
    chain.at(target)->addChild(child, mirror);
    for (int depth = 0; depth < 3; ++depth)
        QCOMPARE(chain.at(depth)->children().size(), children.at(depth));
    QCOMPARE(child->parent(), static_cast<PointObject *>(chain.at(target)));
    const bool copied = children.at(0) + children.at(1) + children.at(2) == 2;
    QCOMPARE(child->link() == child, !copied);
    if (copied) {
        PointObject *copy = chain.at(target - 1)->children().first();
        QCOMPARE(child->link(), copy);
        QCOMPARE(copy->link(), copy);
        QCOMPARE(copy->properties(), child->properties());
        child->setProperty(id, QStringLiteral("renamed"));
        QCOMPARE(copy->property(id).toString(), QStringLiteral("renamed"));
    }
    chain.at(target)->addChild(child, false);
    QCOMPARE(chain.at(target)->children().size(), 1);
}

void TestPointObject::insertChild_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<QList<int>>("lists"); // which of the three hold the child
    QTest::addColumn<int>("parent");
    QTest::newRow("master") << 0 << QList<int> { 1, 0, 0 } << 0;
    QTest::newRow("mirror: the child itself enters both lists") << 1 << QList<int> { 1, 1, 0 } << 0;
    QTest::newRow("chain of three") << 2 << QList<int> { 1, 1, 1 } << 0;
}

void TestPointObject::insertChild()
{
    QFETCH(const int, target);
    QFETCH(const QList<int>, lists);
    QFETCH(const int, parent);
    Chain chain;
    for (int depth = 0; depth < 3; ++depth)
        chain.at(depth)->addChild(node(QStringLiteral("Old")), false);
    Node *child = node(QStringLiteral("Menu"));
    chain.at(target)->insertChild(0, child);
    for (int depth = 0; depth < 3; ++depth)
        QCOMPARE(chain.at(depth)->children().indexOf(child), lists.at(depth) ? 0 : -1);
    QCOMPARE(child->parent(), static_cast<PointObject *>(chain.at(parent)));
    QCOMPARE(child->link() == child, target == 0);
    if (target > 0) {
        QCOMPARE(child->link()->link(), child->link());
        QVERIFY(!child->link()->parent());
    }
    chain.at(target)->insertChild(1, child);
    QCOMPARE(chain.at(target)->children().count(child), 1);
    delete child;
    for (int depth = 0; depth < 3; ++depth)
        QCOMPARE(chain.at(depth)->children().size(), 1);
}

void TestPointObject::removeChildTakesTheMastersFirstWithTheSameId()
{
    Chain chain;
    Node *first = node(QStringLiteral("A"), { { id, QStringLiteral("same") } });
    Node *second = node(QStringLiteral("B"), { { id, QStringLiteral("same") } });
    chain.master.addChild(first, false);
    chain.master.addChild(second, false);
    std::unique_ptr<Node> shown(node(QStringLiteral("B"), { { id, QStringLiteral("same") } }));
    chain.mirror->addChild(shown.get(), false);

    chain.mirror->removeChild(shown.get());
    QVERIFY(chain.mirror->children().isEmpty());
    QCOMPARE(chain.master.children(), QList<PointObject *> { second });
    QVERIFY(!shown->parent() && !first->parent());
    delete first;
}

void TestPointObject::unlinkDestroysTheMaster()
{
    Node root(QStringLiteral("root"));
    QPointer<Node> master = node(QStringLiteral("ExtPoint"));
    root.addChild(master, false);
    root.QTreeWidgetItem::addChild(master);
    QPointer<Node> below = node(QStringLiteral("SubExtPoint"));
    master->addChild(below, false);
    master->QTreeWidgetItem::addChild(below);
    Node definition(QStringLiteral("definition"));
    definition.setLink(master);

    definition.unlink();
    QVERIFY(!master && !below);
    QCOMPARE(definition.link(), static_cast<PointObject *>(&definition));
    QCOMPARE(root.childCount(), 0);
    QVERIFY(root.children().isEmpty());
    definition.unlink();
    QCOMPARE(definition.link(), static_cast<PointObject *>(&definition));
}

void TestPointObject::destructionLeavesNothingBehind_data()
{
    QTest::addColumn<int>("dying");
    QTest::newRow("master") << 0;
    QTest::newRow("mirror") << 1;
    QTest::newRow("last") << 2;
    QTest::newRow("parent") << 3;
    QTest::newRow("child") << 4;
}

void TestPointObject::destructionLeavesNothingBehind()
{
    QFETCH(const int, dying);
    Node *nodes[5] = {};
    nodes[0] = node(QStringLiteral("master"));
    nodes[1] = new Node(*nodes[0]);
    nodes[2] = new Node(*nodes[1]);
    nodes[3] = node(QStringLiteral("parent"));
    nodes[4] = node(QStringLiteral("child"));
    nodes[3]->addChild(nodes[1], false);
    nodes[1]->addChild(nodes[4], false);
    PointObject *dead = nodes[dying];
    delete nodes[dying];
    for (int i = 0; i < 5; ++i) {
        if (i == dying)
            continue;
        QVERIFY(nodes[i]->link() != dead);
        QVERIFY(nodes[i]->parent() != dead);
        QVERIFY(!nodes[i]->children().contains(dead));
        QVERIFY(!nodes[i]->copies().contains(dead));
        nodes[i]->setProperty(id, i);
        nodes[i]->setText(0, QStringLiteral("t"));
    }
    for (int i = 0; i < 5; ++i) {
        if (i != dying)
            delete nodes[i];
    }
}

void TestPointObject::rowLeavesItsViewWhileWhole()
{
    QTreeWidget tree;
    auto *first = new Node(QStringLiteral("first"));
    auto *second = new Node(QStringLiteral("second"));
    second->setKind(QStringLiteral("ExtPoint"));
    tree.addTopLevelItem(first);
    first->QTreeWidgetItem::addChild(second);
    tree.setCurrentItem(second);
    QString kindOfPrevious;
    connect(&tree, &QTreeWidget::currentItemChanged, this, [&](QTreeWidgetItem *, QTreeWidgetItem *previous) {
        if (Node *item = Node::fromRow(previous))
            kindOfPrevious = item->kind();
    });
    Node::destroySubtree(second);
    QCOMPARE(kindOfPrevious, QStringLiteral("ExtPoint"));
    // A neighbour that became current by itself would be taken for one that somebody has gone to.
    QVERIFY(!tree.currentItem());
}

QTEST_MAIN(TestPointObject)
#include "tst_pointobject.moc"

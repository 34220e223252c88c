#include "modeltesting.h"

#include <QPointer>
#include <QTest>
#include <QTreeWidget>

#include <memory>

using ModelTesting::node;
using ModelTesting::s;

namespace {

using Node = PointTreeWidgetItem;

const QString id = QStringLiteral("id");

/// A master, its mirror and the mirror's mirror.
struct Chain
{
    Chain()
    {
        master.setKind(s("Format"));
        mirror->setKind(s("Format"));
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

    Node master { s("master") };
    std::unique_ptr<Node> mirror = std::make_unique<Node>(master);
    std::unique_ptr<Node> second = std::make_unique<Node>(*mirror);
    Node *at(int depth) { return depth == 0 ? &master : depth == 1 ? mirror.get() : second.get(); }
    QList<int> sizes() { return { at(0)->children().size(), at(1)->children().size(), at(2)->children().size() }; }
};

} // namespace

class TestPointObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyMirrorsItsSource();
    void propertyMovesLowerCaseKey();
    void addChild();
    void insertChild();
    void removeChildTakesTheMastersFirstWithTheSameId();
    void unlinkDestroysTheMaster();
    void rowLeavesItsViewWhileWhole();
};

void TestPointObject::copyMirrorsItsSource()
{
    Node source(s("row"));
    source.setKind(s("ExtPoint"));
    source.setPointId(s("p"));
    source.setPluginId(s("plug"));
    source.setBasePath(s("/base/"));
    source.setHasFormat(true);
    source.setIsDroppedCopy(true);
    source.setName(s("n"));
    source.setProperty(id, s("a"));
    source.addChild(node(s("String")), false);

    const Node copy(source);
    QCOMPARE(copy.link(), static_cast<PointObject *>(&source));
    QCOMPARE(source.copies(), QList<PointObject *> { const_cast<Node *>(&copy) });
    QCOMPARE(copy.properties(), source.properties());
    QCOMPARE(copy.name(), s("n"));
    QCOMPARE(copy.text(0), s("row"));
    QCOMPARE(copy.kind() + copy.pointId() + copy.pluginId() + copy.basePath(), s("ExtPointpplug/base/"));
    QVERIFY(copy.hasFormat() && PointTreeWidgetItemTestAccess::isDroppedCopy(copy));
    QVERIFY(copy.children().isEmpty() && !copy.parent());
    Node::destroySubtree(source.children().first()->item());
}

/// Answered for the name or its lower form, of a definition for the lower one first; what is found goes on under the
/// name that was asked for, where it stood. What is written goes to the name that answers, and to no second one.
void TestPointObject::propertyMovesLowerCaseKey()
{
    const QString lower = s("childtype");
    const QString exact = s("childType");
    const auto check = [&](const QStringList &keys, const QString &asked, bool isDefinition, const QString &answering,
                           const QStringList &keysAfter) {
        Node item((QString()));
        PropertyHash before;
        for (const QString &key : keys)
            before.insert(key, QString(key + s("'s")));
        item.setProperties(before);
        if (isDefinition)
            item.setDefinitionSide();
        QCOMPARE(item.property(asked), answering.isEmpty() ? QVariant() : QVariant(answering + s("'s")));
        QCOMPARE(item.properties().keys(), keysAfter);
        item.setProperty(asked, s("new"));
        QCOMPARE(item.property(asked).toString(), s("new"));
        QCOMPARE(item.properties().keys(), keysAfter.contains(asked) ? keysAfter : keysAfter + QStringList { asked });
    };
    check({ exact, s("z") }, exact, false, exact, { exact, s("z") });
    check({ lower, s("z") }, exact, false, lower, { exact, s("z") });
    check({ exact }, lower, false, {}, { exact });
    check({ exact, lower }, exact, false, exact, { exact, lower });
    check({ exact, lower }, exact, true, lower, { exact });
    check({}, exact, false, {}, {});
}

/// To a mirror with its master: the master gets a copy, which the child mirrors. It reaches one node up.
void TestPointObject::addChild()
{
    const auto check = [](int target, bool mirror, const QList<int> &sizes) {
        Chain chain;
        Node *child = node(s("Menu"), { { id, s("m") } });
        chain.at(target)->addChild(child, mirror);
        QCOMPARE(chain.sizes(), sizes);
        QCOMPARE(child->parent(), static_cast<PointObject *>(chain.at(target)));
        if (target > 0 && mirror) {
            PointObject *copy = chain.at(target - 1)->children().first();
            QCOMPARE(child->link(), copy);
            QCOMPARE(copy->link(), copy);
            child->setProperty(id, s("renamed"));
            QCOMPARE(copy->property(id).toString(), s("renamed"));
        } else {
            QCOMPARE(child->link(), static_cast<PointObject *>(child));
        }
        chain.at(target)->addChild(child, false);
        QCOMPARE(chain.sizes(), sizes);
    };
    check(0, false, { 1, 0, 0 });
    check(0, true, { 1, 0, 0 });
    check(1, false, { 0, 1, 0 });
    check(1, true, { 1, 1, 0 });
    check(2, true, { 0, 1, 1 });
}

/// The child itself enters all lists up to the master's, whose child it is.
void TestPointObject::insertChild()
{
    for (int target = 0; target < 3; ++target) {
        Chain chain;
        for (int depth = 0; depth < 3; ++depth)
            chain.at(depth)->addChild(node(s("Old")), false);
        Node *child = node(s("Menu"));
        chain.at(target)->insertChild(0, child);
        for (int depth = 0; depth < 3; ++depth)
            QCOMPARE(chain.at(depth)->children().indexOf(child), depth <= target ? 0 : -1);
        QCOMPARE(child->parent(), static_cast<PointObject *>(&chain.master));
        QCOMPARE(child->link() == child, target == 0);
        if (target > 0) {
            QCOMPARE(child->link()->link(), child->link());
            QVERIFY(!child->link()->parent());
        }
        chain.at(target)->insertChild(1, child);
        QCOMPARE(chain.at(target)->children().count(child), 1);
        delete child;
        QCOMPARE(chain.sizes(), (QList<int> { 1, 1, 1 }));
    }
}

void TestPointObject::removeChildTakesTheMastersFirstWithTheSameId()
{
    Chain chain;
    Node *first = node(s("A"), { { id, s("same") } });
    Node *second = node(s("B"), { { id, s("same") } });
    chain.master.addChild(first, false);
    chain.master.addChild(second, false);
    std::unique_ptr<Node> shown(node(s("B"), { { id, s("same") } }));
    chain.mirror->addChild(shown.get(), false);

    chain.mirror->removeChild(shown.get());
    QVERIFY(chain.mirror->children().isEmpty());
    QCOMPARE(chain.master.children(), QList<PointObject *> { second });
    QVERIFY(!shown->parent() && !first->parent());
    delete first;
}

void TestPointObject::unlinkDestroysTheMaster()
{
    Node root(s("root"));
    QPointer<Node> master = node(s("ExtPoint"));
    root.addChild(master, false);
    root.QTreeWidgetItem::addChild(master);
    QPointer<Node> below = node(s("SubExtPoint"));
    master->addChild(below, false);
    master->QTreeWidgetItem::addChild(below);
    Node definition(s("definition"));
    definition.setLink(master);

    definition.unlink();
    QVERIFY(!master && !below);
    QCOMPARE(definition.link(), static_cast<PointObject *>(&definition));
    QCOMPARE(root.childCount(), 0);
    QVERIFY(root.children().isEmpty());
    definition.unlink();
    QCOMPARE(definition.link(), static_cast<PointObject *>(&definition));
}

void TestPointObject::rowLeavesItsViewWhileWhole()
{
    QTreeWidget tree;
    auto *first = new Node(s("first"));
    auto *second = new Node(s("second"));
    second->setKind(s("ExtPoint"));
    tree.addTopLevelItem(first);
    first->QTreeWidgetItem::addChild(second);
    tree.setCurrentItem(second);
    QString kindOfPrevious;
    connect(&tree, &QTreeWidget::currentItemChanged, this, [&](QTreeWidgetItem *, QTreeWidgetItem *previous) {
        if (Node *item = Node::fromRow(previous))
            kindOfPrevious = item->kind();
    });
    Node::destroySubtree(second);
    QCOMPARE(kindOfPrevious, s("ExtPoint"));
    // A neighbour that became current by itself would be taken for one that somebody has gone to.
    QVERIFY(!tree.currentItem());
}

QTEST_MAIN(TestPointObject)
#include "tst_pointobject.moc"

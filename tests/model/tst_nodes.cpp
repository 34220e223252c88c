#include "modeltesting.h"

#include "model/controller.h"
#include "model/mainwidgetinterface.h"

#include <QTest>
#include <QTreeWidget>
#include <QWidget>

#include <memory>

using ModelTesting::node;
using ModelTesting::Product;
using ModelTesting::s;

namespace {

using Node = PointTreeWidgetItem;

class RecordingWidget final : public QWidget, public MainWidgetInterface
{
public:
    void addLayout(Node *layout) override { lines.append(s("layout ") + layout->text(0)); }
    void addFormatRoot(Node *item) override { lines.append(s("format ") + item->property(s("target")).toString()); }
    QStringList lines;
};

const QString id = QStringLiteral("id");

/// A master, its mirror and the mirror's mirror.
struct Chain
{
    ~Chain()
    {
        for (int depth : { 2, 1, 0 })
            Node::destroySubtree(at(depth));
    }

    Node *const master = new Node(s("master"));
    Node *const mirror = new Node(*master);
    Node *const second = new Node(*mirror);
    Node *at(int depth) { return depth == 0 ? master : depth == 1 ? mirror : second; }
    QList<int> sizes() { return { at(0)->children().size(), at(1)->children().size(), at(2)->children().size() }; }
};

} // namespace

class TestNodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatRoots();
    void childTypes();
    void attributeDefinitions();
    void destroyedNodesLeaveTheIndexes();
    void treesMayDieFirst();
    void copyMirrorsItsSource();
    void propertyMovesLowerCaseKey();
    void addChild();
    void insertChild();
    void removeChildTakesTheMastersFirstWithTheSameId();
    void unlinkDestroysTheMaster();
    void rowLeavesItsViewWhileWhole();
};

/// The first format of a target is announced and gets what the later ones bring; one without a target stays alone.
void TestNodes::formatRoots()
{
    SourceDataManager manager;
    RecordingWidget widget;
    Controller::instance()->setSourceDataManager(&manager);
    Controller::instance()->setMainWidget(&widget);
    const auto format = [&](const char *plugin, const QVariant &target, const char *child) {
        Node *item = node(s("Format"));
        item->setPluginId(s(plugin));
        if (target.isValid())
            item->setProperty(s("target"), target);
        item->addChild(node(s(child)), false);
        manager.addObjChild(manager.allDataRoot(), item);
        return item;
    };
    Node *first = format("one", s("t"), "A");
    Node *second = format("two", s("t"), "B");
    Node *other = format("two", s("u"), "C");
    Node *nameless = format("one", {}, "X");
    Node *nameless2 = format("two", {}, "Y");
    for (Node *item : { first, second, other, first, nameless, nameless2, second })
        manager.allFormatRoot(item);
    manager.layoutRelization(other);
    manager.allFormatRoot(nullptr);
    manager.layoutRelization(nullptr);
    QCOMPARE(widget.lines, (QStringList { s("format t"), s("format u"), s("format "), s("format "), s("layout ") }));
    QCOMPARE(ModelTesting::tree(first), (QStringList { s("A"), s("B") }));
    QCOMPARE(ModelTesting::tree(nameless), QStringList { s("X") });
    QCOMPARE(manager.indexes()[NodeIndexes::FormatTargets].first(s("t")), first);
    QCOMPARE(manager.indexes()[NodeIndexes::Formats].nodes(s("two")), (NodeIndex::Nodes { second, other, nameless2 }));
}

void TestNodes::childTypes()
{
    SourceDataManager manager;
    const auto define = [&](const char *key, const char *point, const PropertyHash &properties) {
        Node *item = node(s("SubExtPoint"), properties);
        item->setPointId(s(point));
        manager.addTopChild(manager.availablePointsRoot(), item);
        manager.onDefinData(s(key), item);
    };
    define("menu", "q", { { s("childType"), s("c") } });
    define("menu", "p", { { s("childtype"), s("a||b") } });
    define("menu", "p", { { s("childType"), s("later") } });
    define("p", "p", { { s("childType"), s("x") } });
    define("leaf", "p", {});
    // "+" or "-" tells whether the property is there, nothing that no node was found.
    const auto types = [&](const char *key, const char *point) {
        bool exists[2] = { false, true };
        const Definitions known = manager.definitions();
        const QString whole = known.childTypes(s(key), s(point), &exists[0]);
        const QString again = known.childTypes(s(key), s(point), &exists[1]);
        const QString split = known.childTypes(s(key), s(point)).join(QLatin1Char('|'));
        const char *const sign = exists[0] ? "+" : exists[1] ? "" : "-";
        return whole == split && again == split ? s(sign) + whole : s("differently split");
    };
    QCOMPARE(types("menu", "p"), s("+a||b"));
    QCOMPARE(types("menu", "Q"), s("+c"));
    // A kind that nothing defines does not take the point's.
    QCOMPARE(types("shape", "p"), QString());
    QCOMPARE(types("leaf", "p"), s("-"));
    QCOMPARE(types("menu", "r"), QString());
}

void TestNodes::attributeDefinitions()
{
    const Product product;
    const QString path = product.add(s("g"),
        "<P id='g'><ExtPointSet><ExtPoint id='p'><SubExtPoint key='Leaf'><Bool key='b' value='true'/></SubExtPoint>"
        "<Enum key='e' value='x'><Data key='1' text='x'/><Data key='2' text='y'/></Enum><String key='s'/>"
        "</ExtPoint></ExtPointSet></P>");
    SourceDataManager manager;
    manager.startScan(path);
    manager.completeScan();
    const auto ask = [&](const char *kind, const char *pointId) {
        Definitions::Attributes attributes;
        if (!manager.definitions().attributes(s(kind), s(pointId), &attributes))
            return s("none");
        QString text;
        for (const QString &key : qAsConst(attributes.keys))
            text += s("%1/%2/%3/%4 ")
                        .arg(key, attributes.types.value(key), attributes.defaults.value(key).toString(),
                            attributes.options.value(key).join(QLatin1Char('+')));
        return text;
    };
    QCOMPARE(ask("LEAF", "P"), s("b/Bool/true/ "));
    QCOMPARE(ask("Shape", "p"), s("e/Enum/x/x+y s/String// "));
    QCOMPARE(ask("leaf", "other"), s("none"));
}

/// What is retired goes with the manager.
void TestNodes::destroyedNodesLeaveTheIndexes()
{
    auto manager = std::make_unique<SourceDataManager>();
    QPointer<Node> items[2];
    for (auto &item : items) {
        item = node(s("format"), { { s("id"), s("i") }, { s("target"), s("t") } });
        manager->addObjChild(manager->allDataRoot(), item);
        manager->onDefinData(s("some key"), item);
        item->addChild(node(s("Meta")), false);
        for (Node *entered : { item.data(), item.data(), item->children().first()->item() })
            manager->addRealization(entered);
        // Entered under what it is no longer called.
        item->setProperty(s("id"), s("renamed"));
        item->setProperty(s("target"), s("renamed"));
    }
    manager->retire(items[1]);
    manager->retire(nullptr);
    Node::destroySubtree(items[0]);
    for (int name = 0; name < NodeIndexes::NameCount; ++name)
        QCOMPARE(manager->indexes()[NodeIndexes::Name(name)].size(), 0);
    QVERIFY(items[1]);
    manager.reset();
    QVERIFY(!items[1]);
}

void TestNodes::treesMayDieFirst()
{
    const Product product;
    const QString path = product.add(s("own"), "<P><ExtPointSet><ExtPoint id='p'><Int/></ExtPoint></ExtPointSet></P>");
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    // What has no row is not the tree's to destroy.
    const QPointer<Node> set = manager.definitionRoot()->children().first()->item();
    const QPointer<Node> attribute = set->children().first()->children().first()->item();
    {
        QTreeWidget tree;
        tree.addTopLevelItem(manager.definitionRoot());
    }
    QVERIFY(!manager.definitionRoot());
    QVERIFY(set->children().isEmpty() && !attribute->parent());
    Node::destroySubtree(set);
    Node::destroySubtree(attribute);
    QVERIFY(!manager.save());
    QVERIFY(Product::read(path).contains("<ExtPoint id"));
}

void TestNodes::copyMirrorsItsSource()
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
void TestNodes::propertyMovesLowerCaseKey()
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
void TestNodes::addChild()
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
void TestNodes::insertChild()
{
    for (int target = 0; target < 3; ++target) {
        Chain chain;
        for (int depth = 0; depth < 3; ++depth)
            chain.at(depth)->addChild(node(s("Old")), false);
        Node *child = node(s("Menu"));
        chain.at(target)->insertChild(0, child);
        for (int depth = 0; depth < 3; ++depth)
            QCOMPARE(chain.at(depth)->children().indexOf(child), depth <= target ? 0 : -1);
        QCOMPARE(child->parent(), static_cast<PointObject *>(chain.master));
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

void TestNodes::removeChildTakesTheMastersFirstWithTheSameId()
{
    Chain chain;
    Node *first = node(s("A"), { { id, s("same") } });
    Node *second = node(s("B"), { { id, s("same") } });
    chain.master->addChild(first, false);
    chain.master->addChild(second, false);
    std::unique_ptr<Node> shown(node(s("B"), { { id, s("same") } }));
    chain.mirror->addChild(shown.get(), false);

    chain.mirror->removeChild(shown.get());
    QVERIFY(chain.mirror->children().isEmpty());
    QCOMPARE(chain.master->children(), QList<PointObject *> { second });
    QVERIFY(!shown->parent() && !first->parent());
    delete first;
}

void TestNodes::unlinkDestroysTheMaster()
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

void TestNodes::rowLeavesItsViewWhileWhole()
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

QTEST_MAIN(TestNodes)
#include "tst_nodes.moc"

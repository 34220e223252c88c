#include "modeltesting.h"

#include "model/controller.h"
#include "model/mainwidgetinterface.h"

#include <QTest>
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

} // namespace

class TestManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatRoots();
    void childTypes();
    void attributeDefinitions();
    void destroyedNodesLeaveTheIndexes();
    void retiredNodesLeaveTheIndexesAndLive();
    void treesMayDieFirst();
};

/// The first format of a target is announced and gets what the later ones bring; one without a target stays alone.
void TestManager::formatRoots()
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

void TestManager::childTypes()
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

void TestManager::attributeDefinitions()
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

void TestManager::destroyedNodesLeaveTheIndexes()
{
    SourceDataManager manager;
    Node *item = node(s("format"), { { s("id"), s("i") }, { s("target"), s("t") } });
    manager.addObjChild(manager.allDataRoot(), item);
    manager.onDefinData(s("some key"), item);
    manager.addRealization(item);
    manager.addRealization(item);
    // Entered under what it is no longer called.
    item->setProperty(s("id"), s("renamed"));
    item->setProperty(s("target"), s("renamed"));
    Node::destroySubtree(item);
    for (int name = 0; name < NodeIndexes::NameCount; ++name)
        QCOMPARE(manager.indexes()[NodeIndexes::Name(name)].size(), 0);
}

void TestManager::retiredNodesLeaveTheIndexesAndLive()
{
    auto manager = std::make_unique<SourceDataManager>();
    QPointer<Node> item = node(s("Item"), { { s("id"), s("i") } });
    manager->addRealization(item);
    Node *meta = node(s("Meta"));
    item->addChild(meta, false);
    manager->addRealization(meta);
    manager->retire(item);
    manager->retire(nullptr);
    QVERIFY(manager->ownRealizations().all().isEmpty());
    QVERIFY(item);
    manager.reset();
    QVERIFY(!item);
}

void TestManager::treesMayDieFirst()
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

QTEST_MAIN(TestManager)
#include "tst_manager.moc"

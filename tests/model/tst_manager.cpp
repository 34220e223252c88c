#include "modeltesting.h"

#include "model/controller.h"
#include "model/mainwidgetinterface.h"
#include "model/sourcedatamanager.h"

#include <QTest>
#include <QWidget>

#include <memory>

using ModelTesting::node;
using ModelTesting::Product;

namespace {

using Node = PointTreeWidgetItem;

class RecordingWidget final : public QWidget, public MainWidgetInterface
{
public:
    void addLayout(Node *layout) override { lines.append(QStringLiteral("layout ") + layout->text(0)); }
    void addFormatRoot(Node *item) override
    {
        lines.append(QStringLiteral("format ") + item->property(QStringLiteral("target")).toString());
    }
    QStringList lines;
};

/// "Kind#id<parent" with the children in brackets: one line for a whole format.
Node *build(const QString &text, int *at)
{
    const auto word = [&] {
        const int start = *at;
        while (*at < text.size() && text.at(*at).isLetterOrNumber())
            ++*at;
        return text.mid(start, *at - start);
    };
    Node *item = node(word());
    for (QChar mark = text.at(*at); mark == QLatin1Char('#') || mark == QLatin1Char('<'); mark = text.at(*at)) {
        ++*at;
        item->setProperty(mark == QLatin1Char('#') ? QStringLiteral("id") : QStringLiteral("parent"), word());
    }
    item->setText(0, item->property(QStringLiteral("id")).toString());
    if (text.at(*at) == QLatin1Char('(')) {
        ++*at;
        while (text.at(*at) != QLatin1Char(')')) {
            item->addChild(build(text, at), false);
            if (text.at(*at) == QLatin1Char(' '))
                ++*at;
        }
        ++*at;
    }
    return item;
}

Node *build(const char *text)
{
    int at = 0;
    return build(QString::fromLatin1(text) + QLatin1Char(' '), &at);
}

QString print(const PointObject *object)
{
    QString text = const_cast<PointObject *>(object)->item()->kind();
    const QString id = object->properties().value(QStringLiteral("id")).toString();
    if (!id.isEmpty())
        text += QLatin1Char('#') + id;
    QStringList children;
    for (PointObject *child : object->children())
        children.append(print(child));
    return children.isEmpty() ? text : text + QLatin1Char('(') + children.join(QLatin1Char(' ')) + QLatin1Char(')');
}

} // namespace

class TestManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rootsAndTables();
    void formatRoots();
    void childTypes_data();
    void childTypes();
    void attributeDefinitions();
    void destroyedNodesLeaveTheIndexes();
    void retiredNodesLeaveTheIndexesAndLive();
    void treesMayDieFirst();
};

void TestManager::rootsAndTables()
{
    const SourceDataManager manager;
    QCOMPARE(manager.definitionRoot()->text(0), QStringLiteral("Defintion"));
    QCOMPARE(manager.availablePointsRoot()->text(0), QStringLiteral("Realization"));
    for (Node *root : { manager.allDataRoot(), manager.fourthRoot(), manager.realizationRoot() })
        QCOMPARE(root->text(0), QString());
    QCOMPARE(manager.attributeTypes().join(QLatin1Char(' ')), QStringLiteral("String Enum Bool Int File ShortCut"));
    const QMap<QString, QStringList> fields = manager.attributeFields();
    QCOMPARE(fields.value(QStringLiteral("string")).join(QLatin1Char(' ')),
        QStringLiteral("key name value regexp tips trans"));
    QCOMPARE(fields.value(QStringLiteral("enum")).join(QLatin1Char(' ')), QStringLiteral("key name value mode"));
    QCOMPARE(fields.value(QStringLiteral("int")).join(QLatin1Char(' ')), QStringLiteral("key name value min max"));
    QCOMPARE(fields.value(QStringLiteral("file")).join(QLatin1Char(' ')),
        QStringLiteral("key name value filter title method"));
    QCOMPARE(fields.value(QStringLiteral("bool")), fields.value(QStringLiteral("ShortCut")));
    QVERIFY2(!fields.contains(QStringLiteral("shortcut")),
        "a look-up by lowered name finds the one key that must not be found");
}

void TestManager::formatRoots()
{
    SourceDataManager manager;
    RecordingWidget widget;
    Controller::instance()->setSourceDataManager(&manager);
    Controller::instance()->setMainWidget(&widget);
    const auto format = [&](const char *plugin, const char *target, const char *children) {
        Node *item = build(children);
        item->setPluginId(QString::fromLatin1(plugin));
        if (*target)
            item->setProperty(QStringLiteral("target"), QString::fromLatin1(target));
        manager.addObjChild(manager.allDataRoot(), item);
        return item;
    };
    Node *first = format("one", "t", "Format(A#a)");
    Node *second = format("two", "t", "Format(B#b<a)");
    Node *other = format("two", "u", "format");
    Node *nameless = format("one", "", "Format(X)");
    Node *nameless2 = format("two", "", "Format(Y)");
    for (Node *item : { first, second, other, first, nameless, nameless2, second })
        manager.allFormatRoot(item);
    manager.layoutRelization(other);
    manager.allFormatRoot(nullptr);
    manager.layoutRelization(nullptr);
    QCOMPARE(widget.lines,
        (QStringList { QStringLiteral("format t"), QStringLiteral("format u"), QStringLiteral("format "),
            QStringLiteral("format "), QStringLiteral("layout ") }));
    QCOMPARE(print(first), QStringLiteral("Format(A#a(B#b))"));
    QCOMPARE(print(nameless), QStringLiteral("Format(X)"));
    QCOMPARE(manager.indexes()[NodeIndexes::FormatTargets].first(QStringLiteral("t")), first);
    QCOMPARE(manager.indexes()[NodeIndexes::Formats].nodes(QStringLiteral("two")),
        (NodeIndex::Nodes { second, other, nameless2 }));
}

void TestManager::childTypes_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("pointId");
    QTest::addColumn<QStringList>("types");
    QTest::addColumn<int>("exists"); // -1: untouched
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    QTest::newRow("sub point") << s("menu") << s("p") << QStringList { s("a"), s(""), s("b") } << 1;
    QTest::newRow("another point's sub point of the same key") << s("menu") << s("Q") << QStringList { s("c") } << 1;
    QTest::newRow("a kind that nothing defines does not take the point's")
        << s("shape") << s("p") << QStringList {} << -1;
    QTest::newRow("no such property") << s("leaf") << s("p") << QStringList { QString() } << 0;
    QTest::newRow("nothing matches") << s("menu") << s("r") << QStringList {} << -1;
}

void TestManager::childTypes()
{
    QFETCH(const QString, key);
    QFETCH(const QString, pointId);
    QFETCH(const QStringList, types);
    QFETCH(const int, exists);
    SourceDataManager manager;
    const auto define = [&](const char *indexKey, const char *point, const PropertyHash &properties) {
        Node *item = node(QStringLiteral("SubExtPoint"), properties);
        item->setPointId(QString::fromLatin1(point));
        manager.addTopChild(manager.availablePointsRoot(), item);
        manager.onDefinData(QString::fromLatin1(indexKey), item);
    };
    define("menu", "q", { { QStringLiteral("childType"), QStringLiteral("c") } });
    define("menu", "p", { { QStringLiteral("childtype"), QStringLiteral("a||b") } });
    define("menu", "p", { { QStringLiteral("childType"), QStringLiteral("later") } });
    define("p", "p", { { QStringLiteral("childType"), QStringLiteral("x") } });
    define("leaf", "p", {});
    QCOMPARE(manager.definitions().childTypes(key, pointId), types);
    bool flags[2] = { false, true };
    for (bool &flag : flags)
        QCOMPARE(manager.definitions().childTypes(key, pointId, &flag), types.join(QLatin1Char('|')));
    QCOMPARE(flags[0], exists == 1);
    QCOMPARE(flags[1], exists != 0);
}

void TestManager::attributeDefinitions()
{
    const Product product;
    const QString path = product.add(QStringLiteral("g"),
        "<P id=\"g\"><ExtPointSet><ExtPoint id=\"p\"><SubExtPoint key=\"Leaf\"><Bool key=\"b\" "
        "value=\"true\"/></SubExtPoint>"
        "<Enum key=\"e\" value=\"x\"><Data key=\"1\" text=\"x\"/><Data key=\"2\" text=\"y\"/></Enum><String "
        "key=\"s\"/></ExtPoint></ExtPointSet></P>");
    SourceDataManager manager;
    manager.startScan(path);
    manager.completeScan();
    const auto ask = [&](const char *kind, const char *pointId) {
        Node item { QString() };
        item.setKind(QString::fromLatin1(kind));
        item.setPointId(QString::fromLatin1(pointId));
        Definitions::Attributes attributes;
        if (!manager.definitions().attributes(item.kind(), item.pointId(), &attributes))
            return QStringLiteral("none");
        QStringList words;
        for (const QString &key : qAsConst(attributes.keys))
            words.append(QStringList { key, attributes.types.value(key), attributes.defaults.value(key).toString(),
                attributes.options.value(key).join(QLatin1Char('+')) }
                             .join(QLatin1Char('/')));
        return words.join(QLatin1Char(' '));
    };
    QCOMPARE(ask("LEAF", "P"), QStringLiteral("b/Bool/true/"));
    QCOMPARE(ask("Shape", "p"), QStringLiteral("e/Enum/x/x+y s/String//"));
    QCOMPARE(ask("leaf", "other"), QStringLiteral("none"));
    Definitions::Attributes attributes;
}

void TestManager::destroyedNodesLeaveTheIndexes()
{
    SourceDataManager manager;
    Node *item = node(QStringLiteral("format"),
        { { QStringLiteral("id"), QStringLiteral("i") }, { QStringLiteral("target"), QStringLiteral("t") } });
    manager.addObjChild(manager.allDataRoot(), item);
    manager.onDefinData(QStringLiteral("some key"), item);
    manager.addRealization(item);
    manager.addRealization(item);
    // Entered under what it is no longer called.
    item->setProperty(QStringLiteral("id"), QStringLiteral("renamed"));
    item->setProperty(QStringLiteral("target"), QStringLiteral("renamed"));
    Node::destroySubtree(item);
    for (int name = 0; name < NodeIndexes::NameCount; ++name)
        QCOMPARE(manager.indexes()[NodeIndexes::Name(name)].size(), 0);
}

void TestManager::retiredNodesLeaveTheIndexesAndLive()
{
    auto manager = std::make_unique<SourceDataManager>();
    QPointer<Node> item = node(QStringLiteral("Item"), { { QStringLiteral("id"), QStringLiteral("i") } });
    manager->addRealization(item);
    Node *meta = node(QStringLiteral("Meta"));
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
    const QString path = product.add(
        QStringLiteral("own"), "<P id=\"own\"><ExtPointSet><ExtPoint id=\"p\"><Int/></ExtPoint></ExtPointSet></P>");
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

// The opened file in the eyes of the realization page: its points on offer, its records, formats and references, and
// the changes that keep the indexes true.

#include "model/controller.h"
#include "model/generatedid.h"
#include "model/sourcedatamanager.h"
#include "modeltesting.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <unistd.h>

using ModelTesting::Product;
using Node = PointTreeWidgetItem;

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

const char ownFile[] = R"(<P id="own"><ExtPointSet>
<ExtPoint id="own.p" name="Point" displaylabel="text" hasformat="true"><String key="text" value="Hello" trans="true"/>
<Enum key="mode" value="a"><Data key="1" text="a"/></Enum>
<SubExtPoint key="Menu" name="Sub" childtype="menu|action"><Int key="n" value="7"/></SubExtPoint></ExtPoint>
</ExtPointSet><ExtDataSet>
<ExtData id="own.p"><p id="r1"/><Menu id="m1"/><Format target="t"><action id="r1" parent="x"/><action id="x1"/></Format></ExtData>
<ExtData id="q"><thing id="r1"/><Layout id="lay"><area id="r1"/></Layout><format id="byid"/></ExtData>
</ExtDataSet><ExtDataSet><ExtData id="own.p"><p id="r2"/><format target="t"/></ExtData></ExtDataSet></P>)";

class Model final
{
public:
    explicit Model(const QByteArray &own, const QVector<QPair<QString, QByteArray>> &siblings = {}, bool scan = true)
    {
        for (const auto &sibling : siblings)
            m_product.add(sibling.first, sibling.second);
        Controller::instance()->setSourceDataManager(&manager);
        path = m_product.add(s("own"), own);
        if (!manager.load(path))
            qFatal("not loaded");
        if (scan) {
            manager.startScan(path);
            manager.completeScan();
        }
    }

    [[nodiscard]] Node *offered(const QString &key) const { return manager.definitions().first(key); }
    [[nodiscard]] OwnRealizations own() const { return manager.ownRealizations(); }
    [[nodiscard]] Node *at(std::initializer_list<int> indexes) const
    {
        PointObject *node = manager.realizationRoot();
        for (const int index : indexes)
            node = node->children().at(index);
        return node->item();
    }

    SourceDataManager manager;
    QString path;

private:
    Product m_product;
};

/// A file with points wherever an element can stand, and attributes that say the same in several ways.
class RandomFile final
{
public:
    explicit RandomFile(QRandomGenerator *random) : m_random(random) { }

    QByteArray bytes()
    {
        QByteArray sets;
        for (int i = 1 + int(m_random->bounded(2)); i > 0; --i)
            sets += "<ExtPointSet" + attributes() + ">" + elements(0) + "</ExtPointSet>";
        return "<Plugin id='plug'" + QByteArray(m_random->bounded(3) ? "" : " filename='f'") + ">" + sets + "</Plugin>";
    }

    static QString tag(QRandomGenerator *random)
    {
        static const char *const tags[]
            = { "ExtPoint", "SubExtPoint", "extpoint", "subExtPoint", "String", "x", "Data" };
        return s(tags[random->bounded(7)]);
    }
    static QString text(QRandomGenerator *random)
    {
        static const char *const texts[] = { "", "a", "A", "b.c", "true", "false", "0", "a|b" };
        return s(texts[random->bounded(8)]);
    }

private:
    QByteArray attributes()
    {
        QByteArray written;
        for (const char *name : { "id", "key", "name", "hasformat", "childtype", "trans" }) {
            if (m_random->bounded(3) == 0)
                written += QByteArray(" ") + name + "='" + text(m_random).toUtf8() + "'";
        }
        return written;
    }
    QByteArray elements(int depth)
    {
        QByteArray written;
        for (int i = int(m_random->bounded(depth == 0 ? 5 : 3)); i > 0 && depth < 5; --i) {
            const QByteArray name = tag(m_random).toUtf8();
            written += "<" + name + attributes() + ">" + elements(depth + 1) + "</" + name + ">";
        }
        return written;
    }

    QRandomGenerator *m_random;
};

void collect(Node *node, QVector<Node *> *nodes)
{
    nodes->append(node);
    for (PointObject *child : node->children())
        collect(child->item(), nodes);
}

void describe(const Node *node, int depth, QStringList *lines)
{
    QStringList properties;
    for (const PropertyHash::Entry &entry : node->properties())
        properties.append(entry.key + QLatin1Char('=') + entry.value.toString());
    properties.sort();
    lines->append(QString(depth, QLatin1Char(' '))
        + QStringList { node->kind(), node->text(0), node->pluginId(), node->pointId(), node->basePath(),
            node->hasFormat() ? s("formats") : QString(), properties.join(QLatin1Char(';')) }
              .join(QLatin1Char('|')));
    for (PointObject *child : node->children())
        describe(child->item(), depth + 1, lines);
}

/// All that the realization page has for the points of one plug-in: nodes, rows, and what the point index answers.
QStringList offeredBy(const Model &model, const QByteArray &plugin)
{
    QStringList lines;
    for (PointObject *set : model.manager.availablePointsRoot()->children()) {
        if (set->property(s("id")).toString() != QString::fromUtf8(plugin))
            continue;
        describe(set->item(), 0, &lines);
        lines += ModelTesting::rows(set->item());
    }
    const NodeIndex &index = model.manager.indexes()[NodeIndexes::Points];
    const QStringList keys = index.sortedKeys();
    for (const QString &key : keys) {
        lines.append(s("under ") + key);
        for (Node *node : index.nodes(key)) {
            describe(node, 1, &lines);
            lines.append(model.manager.definitions().childTypes(key, node->pointId()).join(QLatin1Char(',')));
            lines.append(model.manager.definitions().hasFormat(node->pointId()) ? s("has formats") : s("has none"));
        }
    }
    return lines;
}

/// Empty when there is none.
QString firstDifference(const QStringList &left, const QStringList &right)
{
    for (int i = 0; i < qMax(left.size(), right.size()); ++i) {
        if (left.value(i) != right.value(i))
            return s("%1\n< %2\n> %3").arg(left.value(i - 1), left.value(i, s("(end)")), right.value(i, s("(end)")));
    }
    return {};
}

} // namespace

class TestOwnSide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownEqualsSibling();
    void changedOwnEqualsSibling();
    void linkedDirectoryIsNobodyElse();
    void ownPluginKeepsItsPlaceInTheListing();
    void realizedKind_data();
    void realizedKind();
    void moveRefusesRings();
    void generatedIds();
};

void TestOwnSide::ownEqualsSibling()
{
    QRandomGenerator random(11);
    for (int round = 0; round < 400; ++round) {
        const QByteArray file = RandomFile(&random).bytes();
        // The first reading of the opened file lowers the names of attributes, and of "type" nothing is written back.
        const Model opened(file, {}, round % 2 == 0);
        const Model beside("<P id='nobody'/>", { { s("sibling"), file } });
        const QString differs = firstDifference(offeredBy(opened, "plug"), offeredBy(beside, "plug"));
        QVERIFY2(differs.isEmpty(), qPrintable(differs + QLatin1Char('\n') + QString::fromUtf8(file)));
    }
}

/// After random changes of the definition side, what is offered is what a sibling with the same file would offer.
void TestOwnSide::changedOwnEqualsSibling()
{
    QRandomGenerator random(12);
    const QStringList keys { s("id"), s("key"), s("name"), s("hasformat"), s("childtype"), s("value") };
    for (int round = 0; round < 200; ++round) {
        Model opened(RandomFile(&random).bytes(), {}, round % 2 == 0);
        PointTreeWidgetItem *root = opened.manager.definitionRoot();
        for (int step = 0; step < 12; ++step) {
            QVector<Node *> nodes;
            collect(root, &nodes);
            Node *node = nodes.at(int(random.bounded(nodes.size())));
            switch (random.bounded(node == root ? 1 : 6)) {
            case 0:
            case 1:
                node->setProperty(keys.at(int(random.bounded(keys.size()))), RandomFile::text(&random));
                break;
            case 2:
                if (node->parentItem() != root)
                    Node::destroySubtree(node);
                break;
            case 3:
                // The type of an attribute; a point stays a point.
                if (node->parentItem() != root && !node->kind().contains(s("Point"), Qt::CaseInsensitive))
                    node->setKind(random.bounded(2) ? s("String") : s("Int"));
                break;
            default:
                node->addChild(ModelTesting::node(RandomFile::tag(&random),
                                   { { s("key"), RandomFile::text(&random) }, { s("id"), RandomFile::text(&random) } }),
                    random.bounded(2) == 0);
            }
        }
        const QByteArray bytes = ModelTesting::written(opened.manager);
        const QByteArray plugin = root->property(s("id")).toString().toUtf8();
        const Model beside("<P id='nobody'/>", { { s("sibling"), bytes } });
        const QString differs = firstDifference(offeredBy(opened, plugin), offeredBy(beside, plugin));
        QVERIFY2(differs.isEmpty(), qPrintable(s("round %1: ").arg(round) + differs));
    }
}

void TestOwnSide::linkedDirectoryIsNobodyElse()
{
    Model model(ownFile, {}, false);
    const QDir plugins = QFileInfo(model.path).dir().filePath(s(".."));
    // Opened through a link, the directory itself is read as well; and a hard link is the same file, too.
    QVERIFY(QFile::link(QFileInfo(model.path).path(), plugins.filePath(s("link"))));
    QVERIFY(plugins.mkdir(s("hard")));
    QCOMPARE(::link(QFile::encodeName(model.path), QFile::encodeName(plugins.filePath(s("hard/extension.xml")))), 0);
    const QString path = plugins.filePath(s("link/extension.xml"));
    QVERIFY(model.manager.load(path));
    model.manager.startScan(path);
    model.manager.completeScan();
    QCOMPARE(ModelTesting::rows(model.manager.availablePointsRoot()),
        (QStringList { s("own"), s("  Point"), s("    Sub") }));
    QVERIFY(model.manager.allDataRoot()->children().isEmpty());
}

void TestOwnSide::ownPluginKeepsItsPlaceInTheListing()
{
    const QByteArray set = "<ExtPointSet/>";
    const auto file
        = [](const char *id, const QByteArray &sets) { return QByteArray("<P id=\"") + id + "\">" + sets + "</P>"; };
    Model model(file("own", set + set), { { s("aaa"), file("a", set) }, { s("zzz"), file("z", set) } }, false);
    QCOMPARE(ModelTesting::rows(model.manager.availablePointsRoot()), (QStringList { s("own"), s("own") }));
    for (int round = 0; round < 2; ++round) {
        model.manager.startScan(model.path);
        model.manager.completeScan();
        QCOMPARE(ModelTesting::rows(model.manager.availablePointsRoot()),
            (QStringList { s("a"), s("own"), s("own"), s("z") }));
    }
    QCOMPARE(model.manager.availablePointsRoot()->children().size(), 4);
}

void TestOwnSide::realizedKind_data()
{
    QTest::addColumn<PropertyHash>("properties");
    QTest::addColumn<QString>("declared");
    QTest::addColumn<QString>("kind");
    QTest::newRow("the key") << PropertyHash { { s("key"), s("Menu") }, { s("id"), s("a.b") } } << s("x") << s("Menu");
    QTest::newRow("the declared key") << PropertyHash { { s("id"), s("a.b") } } << s("x") << s("x");
    QTest::newRow("the last segment") << PropertyHash { { s("id"), s("a.b.command") } } << QString() << s("command");
    QTest::newRow("a point at the end") << PropertyHash { { s("id"), s("a.b.") } } << QString() << s("b");
    QTest::newRow("what begins with a digit") << PropertyHash { { s("id"), s("a.2nd") } } << QString() << s("_2nd");
    QTest::newRow("a number") << PropertyHash { { s("id"), s("1795325224") } } << QString() << s("_1795325224");
    QTest::newRow("no letters of a name") << PropertyHash { { s("key"), s("my key/<") } } << QString() << s("my_key__");
    QTest::newRow("nothing at all") << PropertyHash {} << QString() << s("_");
}

void TestOwnSide::realizedKind()
{
    QFETCH(const PropertyHash, properties);
    QFETCH(const QString, declared);
    Node *definition = ModelTesting::node(s("ExtPoint"), properties);
    if (!declared.isEmpty())
        definition->addChild(
            ModelTesting::node(s("String"), { { s("key"), s("Key") }, { s("value"), declared } }), false);
    QTEST(Definitions::realizedKind(definition), "kind");
    Node::destroySubtree(definition);
}

void TestOwnSide::moveRefusesRings()
{
    Model model(ownFile);
    const QStringList before = ModelTesting::tree(model.manager.realizationRoot());
    QVERIFY(!OwnEdits::move(model.at({ 0, 0 }), model.at({ 0, 0, 2 })));
    QVERIFY(!OwnEdits::move(model.at({ 0, 0 }), model.at({ 0, 0 })));
    QVERIFY(!OwnEdits::move(nullptr, model.at({ 0, 0 })));
    QCOMPARE(ModelTesting::tree(model.manager.realizationRoot()), before);
}

void TestOwnSide::generatedIds()
{
    QString first;
    QString second;
    // The second may pass between the two.
    for (int attempt = 0; attempt < 3 && (first.isEmpty() || first != second); ++attempt) {
        first = GeneratedId::make(s("own"), s("menu."));
        second = GeneratedId::make(s("own"), s("menu."));
    }
    QCOMPARE(first, second);
    QVERIFY(QRegularExpression(s("^own\\.menu\\.(0|[1-9][0-9]{0,3})$")).match(first).hasMatch());
}

QTEST_MAIN(TestOwnSide)
#include "tst_ownside.moc"

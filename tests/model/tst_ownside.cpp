// The opened file in the eyes of the realization page: its points on offer, and the changes that keep them true.

#include "model/controller.h"
#include "model/generatedid.h"
#include "model/subtree.h"
#include "modeltesting.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <unistd.h>

using ModelTesting::s;
using Node = PointTreeWidgetItem;

namespace {

class Model final
{
public:
    explicit Model(const QByteArray &own, const QByteArray &sibling = {}, bool scan = true)
    {
        if (!sibling.isEmpty())
            m_product.add(s("sibling"), sibling);
        Controller::instance()->setSourceDataManager(&manager);
        path = m_product.add(s("own"), own);
        if (!manager.load(path))
            qFatal("not loaded");
        if (scan)
            this->scan();
    }

    void scan()
    {
        manager.startScan(path);
        manager.completeScan();
    }
    QStringList rows() const { return ModelTesting::rows(manager.availablePointsRoot()); }

    SourceDataManager manager;
    QString path;

private:
    ModelTesting::Product m_product;
};

/// One of the words; "-" is an empty one.
QString any(QRandomGenerator &random, const char *words)
{
    const QStringList list = s(words).split(QLatin1Char(' '));
    return QString(list.at(random.bounded(list.size()))).remove(QLatin1Char('-'));
}

const char *const tags = "ExtPoint SubExtPoint extpoint subExtPoint String x Data";
const char *const texts = "- a A b.c true false 0 a|b";

QByteArray randomAttributes(QRandomGenerator &random)
{
    QByteArray written;
    for (const char *name : { "id", "key", "name", "hasformat", "childtype", "trans" }) {
        if (random.bounded(3) == 0)
            written += QByteArray(" ") + name + "='" + any(random, texts).toUtf8() + "'";
    }
    return written;
}

/// Points wherever an element can stand, and attributes that say the same in several ways.
QByteArray randomElements(QRandomGenerator &random, int depth)
{
    QByteArray written;
    for (int i = random.bounded(depth == 0 ? 5 : 3); i > 0 && depth < 5; --i) {
        const QByteArray name = any(random, tags).toUtf8();
        written += "<" + name + randomAttributes(random) + ">" + randomElements(random, depth + 1) + "</" + name + ">";
    }
    return written;
}

QByteArray randomFile(QRandomGenerator &random)
{
    QByteArray sets;
    for (int i = 1 + random.bounded(2); i > 0; --i)
        sets += "<ExtPointSet" + randomAttributes(random) + ">" + randomElements(random, 0) + "</ExtPointSet>";
    return "<Plugin id='plug'" + QByteArray(random.bounded(3) ? "" : " filename='f'") + ">" + sets + "</Plugin>";
}

/// Anything that the definition page does to any node.
void change(QRandomGenerator &random, Node *root)
{
    QVector<Node *> nodes;
    forSubtree(root, [&nodes](Node *node) { nodes.append(node); });
    Node *node = nodes.at(random.bounded(nodes.size()));
    switch (random.bounded(node == root ? 1 : 6)) {
    case 0:
    case 1:
        node->setProperty(any(random, "id key name hasformat childtype value"), any(random, texts));
        break;
    case 2:
        if (node->parentItem() != root)
            Node::destroySubtree(node);
        break;
    case 3:
        // The type of an attribute; a point stays a point.
        if (node->parentItem() != root && !node->kind().contains(s("Point"), Qt::CaseInsensitive))
            node->setKind(any(random, "String Int"));
        break;
    default:
        node->addChild(ModelTesting::node(
                           any(random, tags), { { s("key"), any(random, texts) }, { s("id"), any(random, texts) } }),
            random.bounded(2) == 0);
    }
}

QStringList described(const Node *node, int depth = 0)
{
    QStringList properties;
    for (const PropertyHash::Entry &entry : node->properties())
        properties.append(entry.key + QLatin1Char('=') + entry.value.toString());
    properties.sort();
    QStringList lines { QString(depth, QLatin1Char(' '))
        + QStringList { node->kind(), node->text(0), node->pluginId(), node->pointId(), node->basePath(),
            node->hasFormat() ? s("formats") : QString(), properties.join(QLatin1Char(';')) }
              .join(QLatin1Char('|')) };
    for (PointObject *child : node->children())
        lines += described(child->item(), depth + 1);
    return lines;
}

/// All that the realization page has for the points of one plug-in: nodes, rows, and what the point index answers.
QStringList offeredBy(const SourceDataManager &manager, const QString &plugin)
{
    QStringList lines;
    for (PointObject *set : manager.availablePointsRoot()->children()) {
        if (set->property(s("id")).toString() != plugin)
            continue;
        lines << described(set->item()) << ModelTesting::rows(set->item());
    }
    const NodeIndex &index = manager.indexes()[NodeIndexes::Points];
    const QStringList keys = index.sortedKeys();
    for (const QString &key : keys) {
        lines.append(s("under ") + key);
        for (Node *node : index.nodes(key)) {
            lines << described(node, 1) << manager.definitions().childTypes(key, node->pointId()).join(QLatin1Char(','))
                  << (manager.definitions().hasFormat(node->pointId()) ? s("has formats") : s("has none"));
        }
    }
    return lines;
}

} // namespace

class TestOwnSide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownEqualsSibling();
    void linkedDirectoryIsNobodyElse();
    void ownPluginKeepsItsPlaceInTheListing();
    void realizedKind();
    void generatedIds();
};

/// What is offered of the opened file, as it was read and after random changes of its definition side, is what a
/// sibling with the same file would offer.
void TestOwnSide::ownEqualsSibling()
{
    QRandomGenerator random(11);
    for (int round = 0; round < 600; ++round) {
        QByteArray file = randomFile(random);
        Model opened(file, {}, round % 2 == 0);
        Node *root = opened.manager.definitionRoot();
        if (round % 3 == 0) {
            for (int step = 0; step < 12; ++step)
                change(random, root);
            file = ModelTesting::written(opened.manager);
        }
        const QString plugin = root->property(s("id")).toString();
        const Model beside("<P id='nobody'/>", file);
        const QStringList left = offeredBy(opened.manager, plugin);
        const QStringList right = offeredBy(beside.manager, plugin);
        for (int i = 0; i < qMax(left.size(), right.size()); ++i) {
            if (left.value(i) != right.value(i) || i >= left.size() || i >= right.size())
                QFAIL(qPrintable(s("round %1: %2\n< %3\n> %4\n%5")
                                     .arg(round)
                                     .arg(left.value(i - 1), left.value(i), right.value(i), QString::fromUtf8(file))));
        }
    }
}

void TestOwnSide::linkedDirectoryIsNobodyElse()
{
    Model model("<P id='own'><ExtPointSet><ExtPoint id='p' name='Point'/></ExtPointSet><ExtDataSet><p "
                "id='r'/></ExtDataSet></P>",
        {}, false);
    const QDir plugins = QFileInfo(model.path).dir().filePath(s(".."));
    // Opened through a link, the directory itself is read as well; and a hard link is the same file, too.
    QVERIFY(QFile::link(QFileInfo(model.path).path(), plugins.filePath(s("link"))));
    QVERIFY(plugins.mkdir(s("hard")));
    QCOMPARE(::link(QFile::encodeName(model.path), QFile::encodeName(plugins.filePath(s("hard/extension.xml")))), 0);
    model.path = plugins.filePath(s("link/extension.xml"));
    QVERIFY(model.manager.load(model.path));
    model.scan();
    QCOMPARE(model.rows(), (QStringList { s("own"), s("  Point") }));
    QVERIFY(model.manager.allDataRoot()->children().isEmpty());
}

void TestOwnSide::ownPluginKeepsItsPlaceInTheListing()
{
    Model model("<P id='own'><ExtPointSet/><ExtPointSet/></P>", "<P id='sib'><ExtPointSet/></P>", false);
    const QString first = QFileInfo(model.path).dir().filePath(s("../first"));
    QVERIFY(QDir().mkpath(first) && QFile::copy(first + s("/../sibling/extension.xml"), first + s("/extension.xml")));
    QCOMPARE(model.rows(), (QStringList { s("own"), s("own") }));
    for (int round = 0; round < 2; ++round) {
        model.scan();
        QCOMPARE(model.rows(), (QStringList { s("sib"), s("own"), s("own"), s("sib") }));
    }
    QCOMPARE(model.manager.availablePointsRoot()->children().size(), 4);
}

/// The key, the declared key, the last segment of the id: whichever is there first, as a name.
void TestOwnSide::realizedKind()
{
    const auto kind = [](const char *key, const char *declared, const char *id) {
        Node definition((QString()));
        definition.setProperties({ { s("key"), s(key) }, { s("id"), s(id) } });
        Node declaration(s("String"));
        declaration.setProperties({ { s("key"), s("Key") }, { s("value"), s(declared) } });
        definition.addChild(&declaration, false);
        return Definitions::realizedKind(&definition);
    };
    QCOMPARE(kind("Menu", "x", "a.b"), s("Menu"));
    QCOMPARE(kind("", "x", "a.b"), s("x"));
    QCOMPARE(kind("", "", "a.b.command"), s("command"));
    QCOMPARE(kind("", "", "a.b."), s("b"));
    QCOMPARE(kind("", "", "a.2nd"), s("_2nd"));
    QCOMPARE(kind("my key/<", "", ""), s("my_key__"));
    QCOMPARE(kind("", "", ""), s("_"));
}

void TestOwnSide::generatedIds()
{
    const auto make = [] { return GeneratedId::make(s("own"), s("menu.")); };
    QVERIFY(QRegularExpression(s("^own\\.menu\\.(0|[1-9][0-9]{0,3})$")).match(make()).hasMatch());
    // One number for each second, which may pass between the two.
    QTRY_COMPARE(make(), make());
}

QTEST_MAIN(TestOwnSide)
#include "tst_ownside.moc"

#include "definitionpage.h"

#include "definition/childtypemask.h"

#include <QDateTime>
#include <QSignalSpy>
#include <QToolButton>

using namespace DefinitionTesting;

namespace {

const QByteArray twoPoints = "<ExtPointSet><ExtPoint id=\"p\" name=\"Point\"><String key=\"text\" name=\"Text\"/><File "
                             "key=\"icon\" name=\"Icon\"/><String key=\"tip\" name=\"Tip\"/>"
                             "<SubExtPoint key=\"a\" name=\"A\"/><SubExtPoint key=\"b\" name=\"B\"/><SubExtPoint "
                             "key=\"c\" name=\"C\" childtype=\"a|c\"/></ExtPoint>"
                             "<ExtPoint id=\"q\" name=\"Other\"/></ExtPointSet>";

} // namespace

class TestDefinitionTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void menu_data();
    void menu();
    void createPoint();
    void createSubPoint();
    void deletion_data();
    void deletion();
    void keys();
    void pointSheet_data();
    void pointSheet();
    void options_data();
    void options();
    void childTypeMask_data();
    void childTypeMask();
    void childTypeEdits_data();
    void childTypeEdits();
    void addProperty();
};

void TestDefinitionTree::menu_data()
{
    QTest::addColumn<QList<int>>("row");
    QTest::addColumn<QStringList>("offered");
    QTest::newRow("plug-in") << QList<int> {} << QStringList { s("Create Point") };
    QTest::newRow("point") << QList<int> { 0 } << QStringList { s("Create Sub Point"), s("Delete Point") };
    QTest::newRow("sub point") << QList<int> { 0, 0 } << QStringList { s("Delete Point") };
    QTest::newRow("empty space") << QList<int> { -1 } << QStringList {};
}

void TestDefinitionTree::menu()
{
    QFETCH(const QList<int>, row);
    const Page page(twoPoints);
    if (row.contains(-1)) {
        QTEST(page.menu(QPoint(20, page.tree()->viewport()->height() - 3)), "offered");
        return;
    }
    QTreeWidgetItem *item = page.tree()->topLevelItem(0);
    for (const int number : row)
        item = item->child(number);
    QTEST(page.menu(item), "offered");
    QCOMPARE(page.modified, 0);
}

void TestDefinitionTree::createPoint()
{
    Page page(twoPoints);
    QSignalSpy defined(page.widget->defintionPageBuilder(), &DefintionPageBuilder::addDefine);
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    page.menu(page.row({}), s("Create Point"));
    PointTreeWidgetItem *point = page.row({ 2 });
    const qint64 id = point->property(s("id")).toLongLong();
    QVERIFY(id >= before && id <= QDateTime::currentSecsSinceEpoch());
    QCOMPARE(point->kind() + point->text(0) + point->property(s("name")).toString(), s("ExtPointPiontPiont"));
    QCOMPARE(point->pluginId() + point->pointId(), s("own") + QString::number(id));
    QCOMPARE(point->parent(), page.manager.definitionRoot()->children().first());
    QCOMPARE(page.tree()->currentItem(), static_cast<QTreeWidgetItem *>(point));
    QCOMPARE(Page::records(page.basicInfo()), (QStringList { s("id:5=") + QString::number(id), s("name:5=Piont") }));
    QCOMPARE(defined.count(), 1);
    QCOMPARE(defined.first().at(0).toString(), s("own"));
    QCOMPARE(defined.first().at(2).value<PointTreeWidgetItem *>(), nullptr);
    QCOMPARE(page.modified, 1);
    page.press("pushButton_add_extpoint");
    QCOMPARE(page.row({})->childCount(), 4);
}

void TestDefinitionTree::createSubPoint()
{
    Page page(twoPoints);
    QSignalSpy defined(page.widget->defintionPageBuilder(), &DefintionPageBuilder::addDefine);
    for (int count = 1; count <= 2; ++count) {
        page.menu(page.row({ 1 }), s("Create Sub Point"));
        PointTreeWidgetItem *subPoint = page.row({ 1, count - 1 });
        QCOMPARE(subPoint->kind() + subPoint->text(0), s("SubExtPointSubPoint"));
        QCOMPARE(subPoint->properties().keys(), (QStringList { s("key"), s("name") }));
        QCOMPARE(subPoint->property(s("key")).toString(), s("SubPoint"));
        QCOMPARE(subPoint->pointId() + subPoint->pluginId(), s("qown"));
        QCOMPARE(page.tree()->currentItem(), static_cast<QTreeWidgetItem *>(subPoint));
        QCOMPARE(defined.count(), count);
        QCOMPARE(defined.last().at(0).toString(), s("own"));
        QCOMPARE(defined.last().at(2).value<PointTreeWidgetItem *>(), subPoint);
        QCOMPARE(page.modified, count);
    }
    QCOMPARE(Page::records(page.basicInfo()), (QStringList { s("key:5=SubPoint"), s("name:5=SubPoint") }));
}

void TestDefinitionTree::deletion_data()
{
    QTest::addColumn<QList<int>>("shown");
    QTest::addColumn<QList<int>>("deleted");
    QTest::newRow("the one shown") << QList<int> { 0 } << QList<int> { 0 };
    QTest::newRow("the one above the one shown") << QList<int> { 0, 1 } << QList<int> { 0 };
    QTest::newRow("another one") << QList<int> { 1 } << QList<int> { 0 };
    QTest::newRow("a sub point") << QList<int> { 0, 2 } << QList<int> { 0, 0 };
    QTest::newRow("the last one") << QList<int> { 1 } << QList<int> { 1 };
}

void TestDefinitionTree::deletion()
{
    QFETCH(const QList<int>, shown);
    QFETCH(const QList<int>, deleted);
    Page page(twoPoints);
    const auto at = [&](const QList<int> &rows) {
        QTreeWidgetItem *item = page.tree()->topLevelItem(0);
        for (const int number : rows)
            item = item->child(number);
        return PointTreeWidgetItem::fromRow(item);
    };
    page.click(at(shown));
    const QPointer<PointTreeWidgetItem> victim = at(deleted);
    PointObject *parent = victim->parent();
    bool wholeWhenTold = false;
    connect(
        page.widget->defintionPageBuilder(), &DefintionPageBuilder::delDefine, this, [&](PointTreeWidgetItem *item) {
            wholeWhenTold = item == victim && !item->parent() && !item->kind().isEmpty();
        });
    page.menu(victim, s("Delete Point"));
    QVERIFY(wholeWhenTold && !victim);
    QCOMPARE(parent->children().size(), deleted.size() == 2 ? 5 : 1);
    QCOMPARE(page.modified, 1);
    // What the page shows now is there, and can be worked on.
    Q_EMIT page.basicInfo()->propertyChanged(s("description"), s("x"));
    page.press("pushButton_add_attr");
    QVERIFY(page.manager.save());
}

void TestDefinitionTree::keys()
{
    Page page(twoPoints);
    page.click(page.row({}));
    page.tree()->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(page.widget.get()));
    QTest::keyClick(page.tree(), Qt::Key_Delete);
    QVERIFY2(page.tree()->topLevelItemCount() == 1, "the plug-in was deleted");
    QTest::keyClick(page.tree(), Qt::Key_Insert);
    QCOMPARE(page.row({})->childCount(), 3);
    QTest::keyClick(page.tree(), Qt::Key_Insert);
    QTest::keyClick(page.tree(), Qt::Key_Insert);
    QCOMPARE(page.row({ 2 })->childCount(), 2);
    QTest::keyClick(page.tree(), Qt::Key_Delete);
    QCOMPARE(page.row({ 2 })->childCount(), 1);
    QTest::keyClick(page.tree(), Qt::Key_F2);
    QVERIFY(page.basicInfo()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), s("Typed"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(page.tree()->currentItem()->text(0), s("Typed"));
}

void TestDefinitionTree::pointSheet_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("records");
    const auto row = [](const char *name, const char *element, const char *records) {
        QTest::newRow(name) << QByteArray(element) << s(records);
    };
    row("point: id first, description last, the others in file order",
        "<ExtPoint description=\"d\" name=\"n\" other=\"o\" hasformat=\"true\" id=\"i\" displayicon=\"x\" "
        "displaylabel=\"y\"/>",
        "id:5=i name:5=n other:0=o hasformat:2=true displayicon:7=x displaylabel:7=y description:6=d");
    row("sub point: key first",
        "<ExtPoint id=\"i\"><SubExtPoint other=\"o\" description=\"d\" name=\"n\" key=\"k\" "
        "childtype=\"k\"/></ExtPoint>",
        "key:5=k other:0=o name:5=n childtype:8=1 description:6=d");
    row("a point without id has no sheet", "<ExtPoint name=\"n\"/>", "");
    row("a sub point with id has the sub point's sheet",
        "<ExtPoint id=\"i\"><SubExtPoint id=\"x\" key=\"k\"/></ExtPoint>", "key:5=k id:0=x");
}

void TestDefinitionTree::pointSheet()
{
    QFETCH(const QByteArray, element);
    const Page page("<ExtPointSet>" + element + "</ExtPointSet>");
    page.click(page.row({ 0 })->childCount() > 0 ? page.row({ 0, 0 }) : page.row({ 0 }));
    QTEST(Page::records(page.basicInfo()).join(QLatin1Char(' ')), "records");
}

void TestDefinitionTree::options_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("icon");
    const QByteArray both = "<String key=\"a\" name=\"A\"/><File key=\"f\" name=\"F\"/><Int key=\"i\" "
                            "name=\"I\"/><String key=\"b\" name=\"B\"/><File key=\"g\" name=\"G\"/><string key=\"z\"/>";
    QTest::newRow("the current one first")
        << QByteArray("displaylabel=\"b\" displayicon=\"g\"") << both << s("b/B/ a/A/") << s("g/G/ f/F/");
    QTest::newRow("none is current") << QByteArray("displaylabel=\"x\" displayicon=\"\"") << both << s("a/A/ b/B/")
                                     << s("f/F/ g/G/");
    QTest::newRow("without attributes the value alone") << QByteArray("displaylabel=\"x\" displayicon=\"y\"")
                                                        << QByteArray("<Int key=\"i\"/>") << s("x/x/") << s("y/y/");
    QTest::newRow("only strings") << QByteArray("displaylabel=\"\" displayicon=\"y\"")
                                  << QByteArray("<String key=\"a\" name=\"A\"/>") << s("a/A/") << s("y/y/");
}

void TestDefinitionTree::options()
{
    QFETCH(const QByteArray, properties);
    QFETCH(const QByteArray, attributes);
    for (const bool subPoint : { false, true }) {
        const QByteArray point = "<ExtPoint id=\"p\" " + properties + '>' + attributes + "</ExtPoint>";
        const QByteArray sub = "<ExtPoint id=\"p\"><SubExtPoint key=\"k\" " + properties + '>' + attributes
            + "</SubExtPoint></ExtPoint>";
        const Page page("<ExtPointSet>" + (subPoint ? sub : point) + "</ExtPointSet>");
        page.click(subPoint ? page.row({ 0, 0 }) : page.row({ 0 }));
        QTEST(Page::options(Page::record(page.basicInfo(), "displaylabel")), "label");
        QTEST(Page::options(Page::record(page.basicInfo(), "displayicon")), "icon");
    }
}

void TestDefinitionTree::childTypeMask_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("mask");
    QTest::addColumn<QVariant>("chosen");
    QTest::addColumn<QString>("back");
    const auto row = [](const char *name, const QString &stored, int mask, const QVariant &chosen, const char *back) {
        QTest::newRow(name) << stored << mask << chosen << s(back);
    };
    row("none", QString(), 0, 0, "");
    row("a and c", s("a|c"), 5, 5, "a|c");
    row("in bit order", s("c|b"), 6, 6, "b|c");
    row("a dead key counts nothing and goes", s("gone|b"), 2, 2, "b");
    row("letter case matters", s("A|c"), 4, 4, "c");
    row("empty parts and repetitions", s("|a||a|"), 1, 1, "a");
    row("another bit, the last of the mask", s("a"), 1, 1 << 30, "k30");
    row("what has no bit stays", s("k33|a|k31|gone"), 1, 6, "b|c|k31|k33");
    row("as a text", s("a"), 1, s("k33|c|gone|k31||a"), "a|c|k31|k33");
    row("as a text, none", s("a|k31"), 1, s(""), "");
    row("nothing", s("a|k31"), 1, QVariant(), "");
}

void TestDefinitionTree::childTypeMask()
{
    QFETCH(const QString, stored);
    PointTreeWidgetItem point { QString() };
    std::vector<std::unique_ptr<PointTreeWidgetItem>> children;
    QStringList kinds { s("String:x"), s("SubExtPoint:a"), s("subextpoint:b"), s("Int:y"), s("SubExtPoint:c") };
    for (int i = 3; i < 34; ++i)
        kinds.append(s("SubExtPoint:k%1").arg(i));
    for (const QString &kind : qAsConst(kinds)) {
        children.push_back(std::make_unique<PointTreeWidgetItem>(QString()));
        children.back()->setKind(kind.section(QLatin1Char(':'), 0, 0));
        children.back()->setProperty(s("key"), kind.section(QLatin1Char(':'), 1));
        point.addChild(children.back().get(), false);
    }
    const ChildTypeMask types(&point);
    QCOMPARE(types.names().size(), 34);
    QTEST(types.maskOf(stored), "mask");
    QFETCH(const QVariant, chosen);
    const QString text = types.textOf(chosen, stored);
    QTEST(text, "back");
    QVERIFY2(!text.isNull(), "the property would be gone");
    QVERIFY(ChildTypeMask(nullptr).names().isEmpty());
}

void TestDefinitionTree::childTypeEdits_data()
{
    QTest::addColumn<int>("subPoints");
    QTest::addColumn<QVariant>("shown");
    QTest::addColumn<QVariant>("chosen");
    QTest::addColumn<QString>("stored");
    QTest::newRow("a mask") << 31 << QVariant((1 << 0) + (1 << 30)) << QVariant(6) << s("k1|k2");
    QTest::newRow("a mask, none") << 31 << QVariant((1 << 0) + (1 << 30)) << QVariant(0) << s("");
    QTest::newRow("too many for a mask") << 34 << QVariant(s("k0|k30|gone")) << QVariant(s("k0|k30|k33"))
                                         << s("k0|k30|k33");
    QTest::newRow("too many, none") << 34 << QVariant(s("k0|k30|gone")) << QVariant(s("")) << s("");
}

void TestDefinitionTree::childTypeEdits()
{
    QFETCH(const int, subPoints);
    QFETCH(const QVariant, chosen);
    QByteArray file = "<ExtPointSet><ExtPoint id=\"p\" name=\"Point\">";
    QString options;
    for (int i = 0; i < subPoints; ++i) {
        file += "<SubExtPoint key=\"k" + QByteArray::number(i) + "\" childtype=\"k0|k30|gone\"/>";
        options += s("k%1/k%1/ ").arg(i);
    }
    Page page(file + "</ExtPoint></ExtPointSet>");
    page.click(page.row({ 0, 2 }));
    const PropertyItem record = Page::record(page.basicInfo(), "childtype");
    QTEST(record.value(), "shown");
    QCOMPARE(Page::options(record), options.trimmed());
    Q_EMIT page.basicInfo()->propertyChanged(s("childtype"), chosen);
    QTEST(page.row({ 0, 2 })->property(s("childtype")).toString(), "stored");
    QVERIFY(!page.row({ 0, 2 })->property(s("childtype")).isNull());
    QCOMPARE(page.modified, 1);
}

void TestDefinitionTree::addProperty()
{
    Page page(twoPoints);
    auto *button = page.find<QToolButton>("addPropertyButton");
    QVERIFY2(!button->isEnabled(), "a plug-in has no table of properties");
    const auto offered = [&] {
        QStringList texts;
        Q_EMIT button->menu()->aboutToShow();
        for (QAction *action : button->menu()->actions())
            texts.append(action->text());
        return texts.join(QLatin1Char(' '));
    };
    page.click(page.row({ 0 }));
    QCOMPARE(offered(), s("displaylabel displayicon hasformat description"));
    button->menu()->actions().at(2)->trigger();
    QCOMPARE(page.row({ 0 })->property(s("hasformat")), QVariant(QString()));
    QCOMPARE(Page::records(page.basicInfo()).last(), s("hasformat:2="));
    QCOMPARE(page.modified, 1);
    QCOMPARE(offered(), s("displaylabel displayicon description"));
    page.click(page.row({ 0, 0 }));
    QCOMPARE(offered(), s("displaylabel displayicon childtype description"));
    page.row({ 0, 0 })->setProperty(s("childType"), s("a"));
    QCOMPARE(offered(), s("displaylabel displayicon description"));
}

QTEST_MAIN(TestDefinitionTree)
#include "tst_definitiontree.moc"

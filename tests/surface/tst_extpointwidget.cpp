#include "definition/defintionpagebuilder.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/propertyitem.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

#include <QDir>
#include <QGroupBox>
#include <QLayout>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <memory>

namespace {

const QString sample = QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins/chartdesk/extension.xml");

/// An editor without a host: what the document does when it opens a file.
struct Editor
{
    Editor() { Controller::instance()->setSourceDataManager(&manager); }
    ~Editor() { widget.reset(); }

    bool open(const QString &path)
    {
        widget = std::make_unique<ExtPointWidget>();
        if (!manager.load(path))
            return false;
        widget->reloadPages();
        return true;
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return widget->findChild<Widget *>(QString::fromLatin1(name));
    }

    SourceDataManager manager;
    std::unique_ptr<ExtPointWidget> widget;
};

QStringList tabs(const QTabWidget *widget)
{
    QStringList lines;
    for (int i = 0; i < widget->count(); ++i)
        lines.append(widget->widget(i)->objectName() + QLatin1Char('=') + widget->tabText(i));
    return lines;
}

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class TestExtPointWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void containment_data();
    void containment();
    void texts_data();
    void texts();
    void sizesAndStates();
    void metaObjects();
    void selectsWhenSeen_data();
    void selectsWhenSeen();
    void modifiedIsForwarded();
    void emptyModelLeavesTheTreesEmpty();
    void treesShowTheModel();
    void buildersOutliveTheWidget();
    void widgetMayDieAfterTheModel();
    void definePropagates();
    void sheetEditReachesModelAndRow();
    void subPointSheet();
    void keyboardShowsWhatAClickShows();
    void tabsOfTheOpenedFile();
    void tabsOfSiblings();
    void attributeTypesAreCopied();
};

void TestExtPointWidget::containment_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("container");
    const auto row = [](const char *name, const char *type, const char *container) {
        QTest::newRow(name) << s(name) << s(type) << s(container);
    };
    row("tabWidget", "QTabWidget", "ExtPointWidget");
    row("splitter_3", "QSplitter", "tab");
    row("layoutWidget", "QWidget", "splitter_3");
    row("defintionTree", "QTreeWidget", "layoutWidget");
    row("pushButton_add_extpoint", "QPushButton", "layoutWidget");
    row("splitter_2", "QSplitter", "splitter_3");
    row("groupBox_2", "QGroupBox", "splitter_2");
    row("scrollArea", "QScrollArea", "groupBox_2");
    row("basicInfo", "GroupPropertyBrowser", "scrollAreaWidgetContents");
    row("groupBox_3", "QGroupBox", "splitter_2");
    row("defintionTable", "QTableWidget", "groupBox_3");
    row("pushButton_add_attr", "QPushButton", "groupBox_3");
    row("pushButton_del_attr", "QPushButton", "groupBox_3");
    row("splitter", "QSplitter", "splitter_3");
    row("editInfoWidget", "TreePropertyBrowser", "splitter");
    row("enumGroup", "QGroupBox", "splitter");
    row("enumTable", "QTableWidget", "enumGroup");
    row("pushButton_add_enum", "QPushButton", "enumGroup");
    row("pushButton_delete_enmu", "QPushButton", "enumGroup");
    row("splitter_5", "QSplitter", "tab_2");
    row("realizationTree", "RealizationTreeWidget", "splitter_5");
    row("splitter_4", "QSplitter", "splitter_5");
    row("formatTab", "QTabWidget", "splitter_4");
    row("pushButton_add_format_tree", "QPushButton", "splitter_4");
    row("realizTable", "RealizationTableWidget", "splitter_4");
    row("propertyGroupBox", "QGroupBox", "splitter_5");
    row("propertyRealization", "TreePropertyBrowser", "propertyGroupBox");
}

void TestExtPointWidget::containment()
{
    QFETCH(const QString, name);
    QFETCH(const QString, type);
    const ExtPointWidget widget;
    const QWidget *found = widget.findChild<QWidget *>(name);
    QVERIFY(found);
    QCOMPARE(QString::fromLatin1(found->metaObject()->className()), type);
    QTEST(found->parentWidget()->objectName(), "container");
}

void TestExtPointWidget::texts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *property, const char *text) {
        QTest::newRow(name) << s(name) << QByteArray(property) << s(text);
    };
    row("pushButton_add_extpoint", "text", "&Add");
    row("groupBox_2", "title", "Basic Information");
    row("groupBox_3", "title", "Extension Information");
    row("pushButton_add_attr", "text", "Add");
    row("pushButton_del_attr", "text", "D&elete");
    row("enumGroup", "title", "Enum Editor");
    row("pushButton_add_enum", "text", "Add");
    row("pushButton_delete_enmu", "text", "D&elete");
    row("pushButton_add_format_tree", "text", "Add Format Tree");
    row("propertyGroupBox", "title", "");
}

void TestExtPointWidget::texts()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, property);
    const ExtPointWidget widget;
    QTEST(widget.findChild<QWidget *>(name)->property(property).toString(), "text");
}

void TestExtPointWidget::sizesAndStates()
{
    const ExtPointWidget widget;
    QCOMPARE(widget.objectName(), s("ExtPointWidget"));
    QCOMPARE(widget.windowTitle(), s("Form"));
    QCOMPARE(widget.size(), QSize(878, 603));
    const auto *pages = widget.findChild<QTabWidget *>(s("tabWidget"));
    QCOMPARE(tabs(pages), (QStringList { s("tab=ExtPointEdit"), s("tab_2=RealizationExit") }));
    QCOMPARE(pages->currentIndex(), 1);
    QCOMPARE(widget.findChild<QTabWidget *>(s("formatTab"))->currentIndex(), -1);
    QCOMPARE(widget.findChild<QTreeWidget *>(s("defintionTree"))->maximumWidth(), 250);
    QCOMPARE(widget.findChild<QTreeWidget *>(s("defintionTree"))->headerItem()->text(0), s("Extension Point Tree"));
    QCOMPARE(widget.findChild<QTreeWidget *>(s("realizationTree"))->headerItem()->text(0), s("Realization Tree"));
    QCOMPARE(widget.findChild<QPushButton *>(s("pushButton_add_extpoint"))->maximumWidth(), 50);
    QCOMPARE(widget.findChild<QPushButton *>(s("pushButton_add_format_tree"))->maximumWidth(), 100);
    QVERIFY(widget.findChild<QPushButton *>(s("pushButton_add_format_tree"))->isHidden());
    QCOMPARE(widget.findChild<QGroupBox *>(s("groupBox_3"))->minimumHeight(), 200);
    for (const char *name : { "splitter_3", "splitter_5" })
        QCOMPARE(widget.findChild<QSplitter *>(s(name))->orientation(), Qt::Horizontal);
    for (const char *name : { "splitter", "splitter_2", "splitter_4" })
        QCOMPARE(widget.findChild<QSplitter *>(s(name))->orientation(), Qt::Vertical);
    for (const char *name : { "horizontalLayout", "horizontalLayout_4" }) {
        auto *layout = widget.findChild<QLayout *>(s(name));
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->contentsMargins().top(), 0);
    }
}

void TestExtPointWidget::metaObjects()
{
    const QMetaObject &meta = ExtPointWidget::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("modified(bool)"));
    ExtPointWidget widget;
    for (QObject *builder : { static_cast<QObject *>(widget.defintionPageBuilder()),
             static_cast<QObject *>(widget.realizationPageBuilder()) }) {
        QVERIFY(!builder->parent());
        QVERIFY(builder->qt_metacast("ExtPointWidgetBuilder"));
    }
}

void TestExtPointWidget::modifiedIsForwarded()
{
    ExtPointWidget widget;
    QSignalSpy spy(&widget, &ExtPointWidget::modified);
    Q_EMIT widget.defintionPageBuilder()->modified(true);
    Q_EMIT widget.realizationPageBuilder()->modified(false);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
}

void TestExtPointWidget::emptyModelLeavesTheTreesEmpty()
{
    QVERIFY(!Controller::instance()->sourceDataManager());
    const ExtPointWidget widget;
    QCOMPARE(widget.findChild<QTreeWidget *>(s("defintionTree"))->topLevelItemCount(), 0);
    QCOMPARE(widget.findChild<QTreeWidget *>(s("realizationTree"))->topLevelItemCount(), 0);
    QCOMPARE(Controller::instance()->mainWidget(), static_cast<const QWidget *>(&widget));
}

void TestExtPointWidget::treesShowTheModel()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    auto *definitions = editor.find<QTreeWidget>("defintionTree");
    auto *points = editor.find<QTreeWidget>("realizationTree");
    QCOMPARE(definitions->topLevelItem(0), static_cast<QTreeWidgetItem *>(editor.manager.definitionRoot()));
    QCOMPARE(points->topLevelItem(0), static_cast<QTreeWidgetItem *>(editor.manager.availablePointsRoot()));
    QCOMPARE(definitions->topLevelItem(0)->childCount(), 4);
    QVERIFY(definitions->topLevelItem(0)->isExpanded() && definitions->topLevelItem(0)->child(0)->isExpanded());
    editor.manager.startScan(sample);
    editor.manager.completeScan();
    QCOMPARE(points->topLevelItem(0)->childCount(), 12);
    QVERIFY(points->topLevelItem(0)->isExpanded());
}

void TestExtPointWidget::buildersOutliveTheWidget()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    const QPointer<DefintionPageBuilder> definition = editor.widget->defintionPageBuilder();
    const QPointer<RealizationPageBuilder> realization = editor.widget->realizationPageBuilder();
    editor.widget.reset();
    QVERIFY(definition && realization);
    QVERIFY(editor.manager.definitionRoot() && editor.manager.availablePointsRoot());
    // Late callers find a builder without a form.
    definition->onDefineTreeItemClicked(editor.manager.definitionRoot()->child(0), 0);
    definition->loadTree();
    realization->loadTree();
    realization->addPluginFormats();
    QCOMPARE(editor.manager.definitionRoot()->childCount(), 4);
}

void TestExtPointWidget::widgetMayDieAfterTheModel()
{
    auto manager = std::make_unique<SourceDataManager>();
    Controller::instance()->setSourceDataManager(manager.get());
    ExtPointWidget widget;
    QVERIFY(manager->load(sample));
    widget.reloadPages();
    auto *tree = widget.findChild<QTreeWidget *>(s("defintionTree"));
    tree->setCurrentItem(tree->topLevelItem(0)->child(1));
    manager.reset();
    QCOMPARE(tree->topLevelItemCount(), 0);
    widget.defintionPageBuilder()->onBasicInfoDataChange(s("name"), s("late"));
}

void TestExtPointWidget::selectsWhenSeen_data()
{
    QTest::addColumn<bool>("seenAtOnce");
    QTest::addColumn<bool>("selectedBefore");
    QTest::newRow("the page in sight") << true << false;
    QTest::newRow("the other page") << false << false;
    QTest::newRow("the other page, where something was selected meanwhile") << false << true;
}

void TestExtPointWidget::selectsWhenSeen()
{
    QFETCH(bool, seenAtOnce);
    QFETCH(bool, selectedBefore);
    Editor editor;
    QVERIFY(editor.open(sample));
    auto *pages = editor.find<QTabWidget>("tabWidget");
    auto *tree = editor.find<QTreeWidget>("defintionTree");
    const auto *sheet = editor.find<GroupPropertyBrowser>("basicInfo");
    if (seenAtOnce)
        pages->setCurrentIndex(0);
    editor.widget->show();
    QCOMPARE(tree->currentItem() != nullptr, seenAtOnce);
    QTreeWidgetItem *expected = tree->topLevelItem(0);
    if (selectedBefore) {
        expected = expected->child(1);
        tree->setCurrentItem(expected);
    }
    pages->setCurrentIndex(0);
    QCOMPARE(tree->currentItem(), expected);
    const QWidget *editorOfName = sheet->editorFor(s("name"));
    QVERIFY(editorOfName);
    const auto *name = editorOfName->findChild<QLineEdit *>();
    QVERIFY(name);
    QCOMPARE(name->text(), PointTreeWidgetItem::fromRow(expected)->property(s("name")).toString());
    // Only the first time: what a person has left is left.
    tree->setCurrentItem(nullptr);
    pages->setCurrentIndex(1);
    pages->setCurrentIndex(0);
    QVERIFY(!tree->currentItem());
}

void TestExtPointWidget::definePropagates()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    PointTreeWidgetItem point(s("New"));
    point.setKind(s("ExtPoint"));
    point.setProperty(s("id"), s("new.point"));
    PointTreeWidgetItem subPoint(s("Sub"));
    subPoint.setKind(s("SubExtPoint"));
    DefintionPageBuilder *page = editor.widget->defintionPageBuilder();
    PointTreeWidgetItem *root = editor.manager.availablePointsRoot();

    Q_EMIT page->addDefine(s("plug"), &point, nullptr);
    QCOMPARE(root->childCount(), 2);
    auto *plugin = PointTreeWidgetItem::fromRow(root->child(1));
    QCOMPARE(plugin->text(0) + plugin->property(s("id")).toString() + plugin->property(s("filename")).toString(),
        s("plugplugplug"));
    auto *copy = PointTreeWidgetItem::fromRow(plugin->child(0));
    QCOMPARE(point.link(), static_cast<PointObject *>(copy));
    QCOMPARE(copy->link(), static_cast<PointObject *>(copy));
    Q_EMIT page->addDefine(s("plug"), &point, &subPoint);
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(plugin->childCount(), 1);
    QCOMPARE(subPoint.link(), copy->children().first());
    point.setProperty(s("name"), s("Renamed"));
    point.setText(0, s("Renamed"));
    QCOMPARE(copy->property(s("name")).toString() + copy->text(0), s("RenamedRenamed"));

    Q_EMIT page->delDefine(&point);
    QCOMPARE(plugin->childCount(), 0);
    QCOMPARE(point.link(), static_cast<PointObject *>(&point));
    QCOMPARE(subPoint.link(), static_cast<PointObject *>(&subPoint));
    // A sub point of a point that the other page has never seen brings its point.
    Q_EMIT page->addDefine(s("other"), &point, &subPoint);
    QCOMPARE(root->child(2)->child(0)->childCount(), 1);
}

void TestExtPointWidget::sheetEditReachesModelAndRow()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    QSignalSpy modified(editor.widget.get(), &ExtPointWidget::modified);
    auto *tree = editor.find<QTreeWidget>("defintionTree");
    auto *point = PointTreeWidgetItem::fromRow(tree->topLevelItem(0)->child(0));
    editor.widget->defintionPageBuilder()->onDefineTreeItemClicked(point, 0);
    auto *sheet = editor.find<GroupPropertyBrowser>("basicInfo");
    QStringList names;
    for (const PropertyItem &record : sheet->properties())
        names.append(record.name() + QString::number(int(record.type())));
    QCOMPARE(names,
        (QStringList {
            s("id5"), s("name5"), s("displaylabel7"), s("displayicon7"), s("hasformat2"), s("description6") }));
    QCOMPARE(editor.find<QTableWidget>("defintionTable")->rowCount(), 9);
    QVERIFY(editor.find<QGroupBox>("groupBox_3")->isEnabled());

    Q_EMIT sheet->propertyChanged(s("name"), s("Renamed"));
    QCOMPARE(point->property(s("name")).toString() + point->text(0), s("RenamedRenamed"));
    QCOMPARE(modified.count(), 1);
    Q_EMIT sheet->propertyChanged(s("description"), s("d"));
    QCOMPARE(point->text(0), s("Renamed"));
    QCOMPARE(modified.count(), 2);
}

void TestExtPointWidget::subPointSheet()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    auto *tree = editor.find<QTreeWidget>("defintionTree");
    auto *subPoint = PointTreeWidgetItem::fromRow(tree->topLevelItem(0)->child(0)->child(0));
    subPoint->setProperties({ { s("name"), s("n") }, { s("description"), s("d") }, { s("childtype"), s("unknown|") },
        { s("key"), s("k") }, { s("other"), s("o") } });
    QStringList siblings;
    for (PointObject *child : subPoint->parent()->children()) {
        if (child->item()->kind() == s("SubExtPoint"))
            siblings.append(child->property(s("key")).toString());
    }
    DefintionPageBuilder *page = editor.widget->defintionPageBuilder();
    page->onDefineTreeItemClicked(subPoint, 0);
    const QList<PropertyItem> records = editor.find<GroupPropertyBrowser>("basicInfo")->properties();
    QStringList names;
    for (const PropertyItem &record : records)
        names.append(record.name() + QString::number(int(record.type())));
    QCOMPARE(names, (QStringList { s("key5"), s("name5"), s("childtype8"), s("other0"), s("description6") }));
    QCOMPARE(records.at(2).value().toInt(), 0);
    QCOMPARE(records.at(2).options().size(), siblings.size());
    page->onBasicInfoDataChange(s("childtype"), 6);
    QCOMPARE(subPoint->property(s("childtype")).toString(), siblings.at(1) + s("|") + siblings.at(2));
    page->onBasicInfoDataChange(s("childtype"), 0);
    QVERIFY(!subPoint->property(s("childtype")).isNull() && subPoint->property(s("childtype")).toString().isEmpty());
}

void TestExtPointWidget::keyboardShowsWhatAClickShows()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    auto *tree = editor.find<QTreeWidget>("defintionTree");
    tree->setCurrentItem(tree->topLevelItem(0));
    QVERIFY(!editor.find<QGroupBox>("groupBox_3")->isEnabled());
    QTest::keyClick(tree, Qt::Key_Down);
    QCOMPARE(tree->currentItem(), tree->topLevelItem(0)->child(0));
    QCOMPARE(editor.find<GroupPropertyBrowser>("basicInfo")->properties().first().value().toString(),
        s("saltmere.chart.layers"));
}

void TestExtPointWidget::tabsOfTheOpenedFile()
{
    QTemporaryDir directory;
    QDir(directory.path()).mkpath(s("plugins/own"));
    const QString path = directory.path() + s("/plugins/own/extension.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<P id=\"own\"><ExtDataSet>"
               "<format target=\"z\" title=\"Last\"/><format target=\"b\" id=\"fb\"/><format/>"
               "<Layout id=\"l2\" toolTip=\"Tip\"/><Layout id=\"l1\" title=\"Title\" toolTip=\"Tip\"/><Layout "
               "target=\"t\"/><Layout/><Layout id=\"l1\" title=\"again\"/>"
               "</ExtDataSet></P>");
    file.close();
    Editor editor;
    QVERIFY(editor.open(path));
    QCOMPARE(tabs(editor.find<QTabWidget>("formatTab")),
        (QStringList { s("l2=Tip"), s("l1=Title"), s("t=t"), s("fb=fb"), s("z=Last") }));
}

void TestExtPointWidget::tabsOfSiblings()
{
    Editor editor;
    editor.widget = std::make_unique<ExtPointWidget>();
    const auto node = [](const char *kind, const PropertyHash &properties) {
        auto item = std::make_unique<PointTreeWidgetItem>(QString());
        item->setKind(s(kind));
        item->setProperties(properties);
        return item;
    };
    const auto first = node("Layout", { { s("id"), s("l") }, { s("title"), s("Title") } });
    const auto second
        = node("Layout", { { s("id"), s("l") }, { s("title"), s("Other") }, { s("toolTip"), s("Replaced") } });
    const auto third = node("Layout", { { s("id"), s("l") }, { s("toolTip"), s("") } });
    const auto format = node("Format", { { s("target"), s("t") }, { s("id"), s("i") } });
    const auto same = node("Format", { { s("target"), s("l") } });
    const auto unnamed = node("Format", {});
    auto *formatTab = editor.find<QTabWidget>("formatTab");
    Controller *controller = Controller::instance();
    controller->addLayout(first.get());
    QCOMPARE(tabs(formatTab), QStringList { s("l=Title") });
    controller->addLayout(second.get());
    QCOMPARE(tabs(formatTab), QStringList { s("l=Replaced") });
    controller->addLayout(third.get());
    controller->addFormatRoot(format.get());
    controller->addFormatRoot(same.get());
    controller->addFormatRoot(unnamed.get());
    controller->addFormatRoot(nullptr);
    QCOMPARE(tabs(formatTab), (QStringList { s("l=Replaced"), s("t=t") }));
}

void TestExtPointWidget::attributeTypesAreCopied()
{
    Editor editor;
    QVERIFY(editor.open(sample));
    QCOMPARE(editor.widget->defintionPageBuilder()->attributeTypes(), editor.manager.attributeTypes());
}

QTEST_MAIN(TestExtPointWidget)
#include "tst_extpointwidget.moc"

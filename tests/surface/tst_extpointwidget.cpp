#include "definition/defintionpagebuilder.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/propertyitem.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
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
    void selectsWhenSeen_data();
    void selectsWhenSeen();
    void treesShowTheModel();
    void buildersOutliveTheWidget();
    void widgetMayDieAfterTheModel();
    void definePropagates();
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

QTEST_MAIN(TestExtPointWidget)
#include "tst_extpointwidget.moc"

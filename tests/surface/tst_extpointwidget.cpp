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
    void buildersOutliveTheWidget();
    void widgetMayDieAfterTheModel();
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

QTEST_MAIN(TestExtPointWidget)
#include "tst_extpointwidget.moc"

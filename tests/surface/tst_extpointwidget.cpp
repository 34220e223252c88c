#include "definition/defintionpagebuilder.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <memory>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// An editor without a host, with what the document does when it opens a file.
struct Editor
{
    Editor()
    {
        Controller::instance()->setSourceDataManager(manager.get());
        widget = std::make_unique<ExtPointWidget>();
        if (!manager->load(s(EXTPOINT_SOURCE_DIR "/samples/product/plugins/chartdesk/extension.xml")))
            qFatal("not loaded");
        widget->reloadPages();
    }

    std::unique_ptr<SourceDataManager> manager = std::make_unique<SourceDataManager>();
    std::unique_ptr<ExtPointWidget> widget;
};

} // namespace

class TestExtPointWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void containment();
    void buildersOutliveTheWidget();
    void widgetMayDieAfterTheModel();
};

/// Hosts and their styles find the widgets by name, kind and container.
void TestExtPointWidget::containment()
{
    const ExtPointWidget widget;
    const QString all = s(
        "tabWidget:QTabWidget:ExtPointWidget splitter_3:QSplitter:tab layoutWidget:QWidget:splitter_3 "
        "defintionTree:QTreeWidget:layoutWidget pushButton_add_extpoint:QPushButton:layoutWidget "
        "splitter_2:QSplitter:splitter_3 groupBox_2:QGroupBox:splitter_2 scrollArea:QScrollArea:groupBox_2 "
        "basicInfo:GroupPropertyBrowser:scrollAreaWidgetContents groupBox_3:QGroupBox:splitter_2 "
        "defintionTable:QTableWidget:groupBox_3 pushButton_add_attr:QPushButton:groupBox_3 "
        "pushButton_del_attr:QPushButton:groupBox_3 splitter:QSplitter:splitter_3 "
        "editInfoWidget:TreePropertyBrowser:splitter enumGroup:QGroupBox:splitter enumTable:QTableWidget:enumGroup "
        "pushButton_add_enum:QPushButton:enumGroup pushButton_delete_enmu:QPushButton:enumGroup "
        "splitter_5:QSplitter:tab_2 realizationTree:RealizationTreeWidget:splitter_5 splitter_4:QSplitter:splitter_5 "
        "formatTab:QTabWidget:splitter_4 pushButton_add_format_tree:QPushButton:splitter_4 "
        "realizTable:RealizationTableWidget:splitter_4 propertyGroupBox:QGroupBox:splitter_5 "
        "propertyRealization:TreePropertyBrowser:propertyGroupBox");
    const QStringList entries = all.split(QLatin1Char(' '));
    for (const QString &entry : entries) {
        const auto *found = widget.findChild<QWidget *>(entry.section(QLatin1Char(':'), 0, 0));
        QVERIFY2(found, qPrintable(entry));
        QCOMPARE(
            s("%1:%2:%3")
                .arg(found->objectName(), s(found->metaObject()->className()), found->parentWidget()->objectName()),
            entry);
    }
}

void TestExtPointWidget::buildersOutliveTheWidget()
{
    Editor editor;
    const QPointer<DefintionPageBuilder> definition = editor.widget->defintionPageBuilder();
    const QPointer<RealizationPageBuilder> realization = editor.widget->realizationPageBuilder();
    editor.widget.reset();
    QVERIFY(definition && realization);
    QVERIFY(editor.manager->definitionRoot() && editor.manager->availablePointsRoot());
    // Late callers find a builder without a form.
    definition->onDefineTreeItemClicked(editor.manager->definitionRoot()->child(0), 0);
    definition->loadTree();
    realization->loadTree();
    realization->addPluginFormats();
    QCOMPARE(editor.manager->definitionRoot()->childCount(), 4);
}

void TestExtPointWidget::widgetMayDieAfterTheModel()
{
    Editor editor;
    auto *tree = editor.widget->findChild<QTreeWidget *>(s("defintionTree"));
    tree->setCurrentItem(tree->topLevelItem(0)->child(1));
    editor.manager.reset();
    QCOMPARE(tree->topLevelItemCount(), 0);
    editor.widget->defintionPageBuilder()->onBasicInfoDataChange(s("name"), s("late"));
}

QTEST_MAIN(TestExtPointWidget)
#include "tst_extpointwidget.moc"

#include "definition/defintionpagebuilder.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

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
    void buildersOutliveTheWidget();
    void widgetMayDieAfterTheModel();
};

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

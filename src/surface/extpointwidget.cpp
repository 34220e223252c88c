#include "extpointwidget.h"

#include "definition/defintionpagebuilder.h"
#include "findactions.h"
#include "form/extpointwidgetform.h"
#include "gotonode.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "realization/realizationpagebuilder.h"

#include <QFocusEvent>

namespace {

/// A tree destroys the rows that stand in it, and these belong to the model.
void giveRowsBack(QTreeWidget *tree)
{
    while (tree->topLevelItemCount() > 0)
        tree->takeTopLevelItem(tree->topLevelItemCount() - 1);
}

/// The builders outlive their widget, and nothing else would still name them then.
void keepForEver(QObject *builder)
{
    static auto *builders = new QObjectList;
    builders->append(builder);
}

} // namespace

ExtPointWidget::ExtPointWidget(QWidget *parent)
    : QWidget(parent), ui(new Ui::ExtPointWidget), controller(Controller::instance())
{
    ui->setupUi(this);
    ui->tabWidget->setAccessibleName(tr("Pages"));
    controller->setMainWidget(this);
    defintionBuilder = new DefintionPageBuilder(ui, nullptr);
    realizationBuilder = new RealizationPageBuilder(ui, nullptr);
    keepForEver(defintionBuilder);
    keepForEver(realizationBuilder);
    defintionBuilder->build(ui);
    realizationBuilder->build(ui);

    finding = new FindActions(*ui, this);

    // What is typed on one page may be what the other one is about to show.
    connect(ui->tabWidget, &QTabWidget::currentChanged, this, &ExtPointWidget::commitEditors);
    connect(defintionBuilder, &DefintionPageBuilder::modified, this, &ExtPointWidget::modified);
    connect(realizationBuilder, &RealizationPageBuilder::modified, this, &ExtPointWidget::modified);
    connect(defintionBuilder, &DefintionPageBuilder::addDefine, realizationBuilder, &RealizationPageBuilder::addDefine);
    connect(defintionBuilder, &DefintionPageBuilder::delDefine, realizationBuilder, &RealizationPageBuilder::delDefine);
}

ExtPointWidget::~ExtPointWidget()
{
    delete finding;
    giveRowsBack(ui->defintionTree);
    giveRowsBack(ui->realizationTree);
    delete ui;
}

void ExtPointWidget::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    // A proxy would have a place in the order of Tab.
    if (ui->tabWidget->currentWidget() == ui->tab)
        ui->defintionTree->setFocus(event->reason());
    else
        ui->realizationTree->setFocus(event->reason());
}

void ExtPointWidget::keepPointCurrent()
{
    if (!ui->defintionTree->currentItem())
        ui->defintionTree->setCurrentItem(ui->defintionTree->topLevelItem(0));
}

void ExtPointWidget::reloadPages()
{
    realizationBuilder->addPluginFormats();
    defintionBuilder->refreshAttributeTypes();
    defintionBuilder->showLoaded();
}

void ExtPointWidget::showAllFormats()
{
    realizationBuilder->showAllFormats();
}

void ExtPointWidget::commitEditors()
{
    ui->basicInfo->commitEditor();
    ui->editInfoWidget->commitEditor();
    ui->propertyRealization->commitEditor();
}

bool ExtPointWidget::goTo(PointTreeWidgetItem *node, const QString &key)
{
    const QPointer<PointTreeWidgetItem> meant(node);
    commitEditors();
    showAllFormats();
    return meant && GoToNode { *ui, *defintionBuilder, *realizationBuilder }.show(meant, key);
}

void ExtPointWidget::addFormatRoot(PointTreeWidgetItem *item)
{
    realizationBuilder->addFormatRoot(item);
}

void ExtPointWidget::addLayout(PointTreeWidgetItem *layout)
{
    realizationBuilder->addLayout(layout);
}

#include "defintionpagebuilder.h"

#include "attributetable.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "surface/extpointwidgetform.h"

#include <QHeaderView>

DefintionPageBuilder::DefintionPageBuilder(Ui::ExtPointWidget *ui, QObject *parent)
    : QObject(parent)
    , m_ui(ui)
    , m_pointPropertyTypes(PointSheet::pointTypes())
    , m_subPointPropertyTypes(PointSheet::subPointTypes())
{
}

DefintionPageBuilder::~DefintionPageBuilder() = default;

void DefintionPageBuilder::initWidgets(Ui::ExtPointWidget *ui)
{
    m_ui = ui;
    connect(ui->tabWidget, &QObject::destroyed, this, [this] { m_ui = nullptr; });

    // The sheet and the attributes share what the tree and the attribute's own sheet leave.
    ui->splitter_3->setStretchFactor(0, 0);
    ui->splitter_3->setStretchFactor(1, 3);
    ui->splitter_3->setStretchFactor(2, 2);
    ui->splitter_3->setSizes({ 230, 560, 380 });
    ui->splitter_2->setStretchFactor(0, 3);
    ui->splitter_2->setStretchFactor(1, 2);
    ui->splitter_3->setChildrenCollapsible(false);
    ui->splitter_2->setChildrenCollapsible(false);

    ui->defintionTree->setAccessibleName(tr("Extension points of this plug-in"));
    ui->defintionTable->setAccessibleName(tr("Attributes of the selected point"));
    ui->defintionTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    ui->defintionTable->setSelectionMode(QAbstractItemView::SingleSelection);
    ui->defintionTable->verticalHeader()->hide();
    ui->defintionTable->horizontalHeader()->setStretchLastSection(true);
    AttributeTable::fill(ui->defintionTable, nullptr);

    for (QPushButton *button : { ui->pushButton_add_extpoint, ui->pushButton_add_attr, ui->pushButton_del_attr })
        button->setEnabled(false);
    ui->editInfoWidget->hide();
    ui->enumGroup->hide();
}

void DefintionPageBuilder::loadTree()
{
    PointTreeWidgetItem *root = Controller::instance()->definitionRoot();
    if (!root || !m_ui)
        return;
    m_ui->defintionTree->addTopLevelItem(root);
    m_ui->defintionTree->expandAll();
}

void DefintionPageBuilder::createConnections()
{
    if (!m_ui)
        return;
    connect(m_ui->defintionTree, &QTreeWidget::itemClicked, this, &DefintionPageBuilder::onDefineTreeItemClicked);
    connect(m_ui->defintionTree, &QTreeWidget::currentItemChanged, this,
        [this](QTreeWidgetItem *current) { onDefineTreeItemClicked(current, 0); });
    connect(
        m_ui->basicInfo, &GroupPropertyBrowser::propertyChanged, this, &DefintionPageBuilder::onBasicInfoDataChange);
}

void DefintionPageBuilder::refreshAttributeTypes()
{
    const QStringList types = Controller::instance()->attributeTypes();
    if (types != m_attributeTypes)
        m_attributeTypes = types;
}

void DefintionPageBuilder::showLoaded()
{
    if (!m_ui)
        return;
    // The tree was filled before there was anything to expand or to select.
    m_ui->defintionTree->expandAll();
    m_ui->defintionTree->setCurrentItem(m_ui->defintionTree->topLevelItem(0));
}

void DefintionPageBuilder::onDefineTreeItemClicked(QTreeWidgetItem *item, int)
{
    if (!m_ui)
        return;
    m_ui->editInfoWidget->hide();
    m_ui->enumGroup->hide();
    PointTreeWidgetItem *node = PointTreeWidgetItem::fromRow(item);
    if (!node)
        return;
    m_currentPoint = node;
    const bool isSubPoint = node->isKind(QLatin1String("SubExtPoint"));
    if (!node->property(QStringLiteral("id")).isNull())
        showPointSheet();
    else if (!isSubPoint)
        m_ui->basicInfo->showProperties({});
    if (isSubPoint)
        showSubPointSheet();

    // The children of a plug-in are its sets, which are no attributes of anything.
    const bool isPoint = isSubPoint || node->isKind(QLatin1String("ExtPoint"));
    m_ui->groupBox_3->setEnabled(isPoint);
    AttributeTable::fill(m_ui->defintionTable, isPoint ? node : nullptr);
    m_ui->defintionTable->resizeColumnsToContents();
}

void DefintionPageBuilder::onBasicInfoDataChange(const QString &name, const QVariant &value)
{
    if (!m_currentPoint)
        return;
    const bool isChildType = name == QLatin1String("childtype");
    m_currentPoint->setProperty(name, isChildType ? QVariant(m_childTypes.textOf(value.toInt())) : value);
    if (name == QLatin1String("name"))
        m_currentPoint->setText(0, value.toString());
    Q_EMIT modified(true);
}

void DefintionPageBuilder::showPointSheet()
{
    m_ui->basicInfo->showProperties(PointSheet::ofPoint(m_currentPoint, m_pointPropertyTypes));
}

void DefintionPageBuilder::showSubPointSheet()
{
    m_childTypes = ChildTypeMask(m_currentPoint->parent());
    m_ui->basicInfo->showProperties(
        PointSheet::ofSubPoint(m_currentPoint, m_subPointPropertyTypes, m_pointPropertyTypes, m_childTypes));
}

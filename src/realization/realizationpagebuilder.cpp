#include "realizationpagebuilder.h"

#include "formattabs.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "surface/extpointwidgetform.h"

#include <QHeaderView>

namespace {

const QString idKey = QStringLiteral("id");

PointTreeWidgetItem *childWithId(PointTreeWidgetItem *parent, const QString &id)
{
    if (id.isEmpty())
        return nullptr;
    for (PointObject *child : parent->children()) {
        if (child->property(idKey).toString() == id)
            return child->item();
    }
    return nullptr;
}

} // namespace

RealizationPageBuilder::RealizationPageBuilder(Ui::ExtPointWidget *ui, QObject *parent) : QObject(parent), m_ui(ui) { }

RealizationPageBuilder::~RealizationPageBuilder() = default;

void RealizationPageBuilder::initWidgets(Ui::ExtPointWidget *ui)
{
    m_ui = ui;
    m_formatTabs = new FormatTabs(ui->formatTab, this);
    connect(ui->tabWidget, &QObject::destroyed, this, [this] { m_ui = nullptr; });

    ui->splitter_5->setStretchFactor(0, 0);
    ui->splitter_5->setStretchFactor(1, 3);
    ui->splitter_5->setStretchFactor(2, 2);
    ui->splitter_5->setSizes({ 260, 600, 320 });
    ui->splitter_5->setChildrenCollapsible(false);
    ui->splitter_4->setChildrenCollapsible(false);
    ui->splitter_4->setStretchFactor(0, 1);
    ui->splitter_4->setStretchFactor(2, 1);
    ui->splitter_4->setSizes({ 300, 0, 300 });

    ui->realizationTree->setAccessibleName(tr("Extension points of all plug-ins"));
    ui->formatTab->setAccessibleName(tr("Formats"));
    ui->realizTable->setAccessibleName(tr("Records of the selected point"));
    ui->realizTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    ui->realizTable->setSelectionMode(QAbstractItemView::SingleSelection);
    ui->realizTable->horizontalHeader()->setStretchLastSection(true);
    ui->realizTable->verticalHeader()->hide();
    const QStringList columns { idKey, QStringLiteral("displayLabel"), QStringLiteral("displayIcon") };
    ui->realizTable->setColumnCount(columns.size());
    ui->realizTable->setHorizontalHeaderLabels(columns);
    ui->pushButton_add_format_tree->hide();
}

void RealizationPageBuilder::loadTree()
{
    m_realizationRoot = Controller::instance()->availablePointsRoot();
    if (!m_realizationRoot || !m_ui)
        return;
    m_ui->realizationTree->addTopLevelItem(m_realizationRoot);
    m_ui->realizationTree->expandAll();
}

void RealizationPageBuilder::createConnections() { }

void RealizationPageBuilder::addPluginFormats()
{
    const Controller *controller = Controller::instance();
    m_formatTabs->addPluginFormats(controller->layouts() + controller->targetFormats());
}

void RealizationPageBuilder::addLayout(PointTreeWidgetItem *layout)
{
    m_formatTabs->addLayout(layout);
}

void RealizationPageBuilder::addFormatRoot(PointTreeWidgetItem *item)
{
    if (item)
        m_formatTabs->addFormatRoot(item);
}

void RealizationPageBuilder::addDefine(QString plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint)
{
    if (!m_realizationRoot)
        return;
    bool created = false;
    PointTreeWidgetItem *owner = pluginNode(plugin, &created);
    if (!subPoint) {
        addMaster(owner, point);
        return;
    }
    PointTreeWidgetItem *pointNode
        = created ? addMaster(owner, point) : childWithId(owner, point->property(idKey).toString());
    if (!pointNode)
        pointNode = addMaster(owner, point);
    addMaster(pointNode, subPoint);
}

void RealizationPageBuilder::delDefine(PointTreeWidgetItem *item)
{
    if (m_realizationRoot)
        item->unlink();
}

PointTreeWidgetItem *RealizationPageBuilder::pluginNode(const QString &plugin, bool *created)
{
    PointTreeWidgetItem *node = childWithId(m_realizationRoot, plugin);
    *created = !node;
    if (node)
        return node;
    node = new PointTreeWidgetItem(plugin);
    node->setProperty(idKey, plugin);
    node->setProperty(QStringLiteral("filename"), plugin);
    m_realizationRoot->addChild(node, false);
    m_realizationRoot->QTreeWidgetItem::addChild(node);
    return node;
}

PointTreeWidgetItem *RealizationPageBuilder::addMaster(PointTreeWidgetItem *parent, PointTreeWidgetItem *definition)
{
    auto *copy = new PointTreeWidgetItem(*definition);
    copy->setLink(copy);
    definition->setLink(copy);
    parent->QTreeWidgetItem::addChild(copy);
    parent->addChild(copy, false);
    Controller::instance()->registerDefinition(copy);
    return copy;
}

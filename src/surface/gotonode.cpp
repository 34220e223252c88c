#include "gotonode.h"

#include "form/extpointwidgetform.h"
#include "form/filterline.h"
#include "model/controller.h"
#include "model/definitions.h"
#include "model/keys.h"
#include "model/modelsearch.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "realization/formattabs.h"
#include "realization/formattree.h"

#include <QTreeWidgetItemIterator>

namespace {

enum Page { DefinitionPage, RealizationPage };

using Nodes = QVector<PointTreeWidgetItem *>;

PointTreeWidgetItem *nearestWithRow(PointTreeWidgetItem *node, const QTreeWidget *tree)
{
    while (node && node->treeWidget() != tree)
        node = node->parentItem();
    return node;
}

bool goToRow(QTreeWidget *tree, QTreeWidgetItem *row)
{
    if (!row)
        return false;
    tree->setFocus(Qt::OtherFocusReason);
    tree->setCurrentItem(row);
    FilterLine::showCurrent(tree);
    return true;
}

void goToCell(QTableWidget *table, int row)
{
    if (row < 0 || row >= table->rowCount())
        return;
    table->setFocus(Qt::OtherFocusReason);
    table->setCurrentCell(row, 0);
    FilterLine::showCurrent(table);
}

bool showDefinition(
    const Ui::ExtPointWidget &ui, PointTreeWidgetItem *node, const GoToNode::ShowAttribute &showAttribute)
{
    ui.tabWidget->setCurrentIndex(DefinitionPage);
    PointTreeWidgetItem *point = nearestWithRow(node, ui.defintionTree);
    const QPointer<PointTreeWidgetItem> meant(node);
    if (!goToRow(ui.defintionTree, point) || !meant || node == point)
        return meant != nullptr;
    PointTreeWidgetItem *attribute = node;
    PointTreeWidgetItem *choice = nullptr;
    while (attribute->parentItem() && attribute->parentItem() != point) {
        choice = attribute;
        attribute = attribute->parentItem();
    }
    goToCell(ui.defintionTable, Definitions::declarations(point).indexOf(attribute));
    showAttribute(attribute);
    if (!choice || ui.enumGroup->isHidden())
        return true;
    Nodes choices;
    for (PointObject *child : attribute->children()) {
        if (child->item()->isKind(QLatin1String("Data")))
            choices.append(child->item());
    }
    goToCell(ui.enumTable, choices.indexOf(choice));
    return true;
}

bool showPoint(const Ui::ExtPointWidget &ui, PointTreeWidgetItem *node)
{
    ui.tabWidget->setCurrentIndex(RealizationPage);
    return goToRow(ui.realizationTree, nearestWithRow(node, ui.realizationTree));
}

bool showRecord(const Ui::ExtPointWidget &ui, PointTreeWidgetItem *record)
{
    const Controller *controller = Controller::instance();
    const PointTreeWidgetItem *holder = record->parentItem();
    PointTreeWidgetItem *point = controller->definitions().first(holder->properties().text(idKey));
    const QPointer<PointTreeWidgetItem> meant(record);
    if (!point || !showPoint(ui, point))
        return false;
    if (meant && controller->ownRealizations().isOwn(record))
        goToCell(ui.realizTable, controller->ownRealizations().recordsOf(point).indexOf(record));
    return true;
}

/// The tab of the format that holds @p entry, from the nearest format outwards.
QWidget *pageOf(const Ui::ExtPointWidget &ui, PointTreeWidgetItem *entry)
{
    const bool own = Controller::instance()->ownRealizations().isOwn(entry);
    for (PointTreeWidgetItem *root = entry; root; root = root->parentItem()) {
        const QString name = !OwnRealizations::isRoot(root) ? QString()
            : own                                           ? FormatTabs::nameOf(root)
                                                            : OwnRealizations::tabName(root);
        for (int i = 0; !name.isEmpty() && i < ui.formatTab->count(); ++i) {
            if (ui.formatTab->widget(i)->objectName() == name)
                return ui.formatTab->widget(i);
        }
    }
    return nullptr;
}

/// The format tree is seen only while the selected point has formats.
void selectPointWithFormats(const Ui::ExtPointWidget &ui, const PointTreeWidgetItem *entry)
{
    const Definitions definitions = Controller::instance()->definitions();
    const PointTreeWidgetItem *current = PointTreeWidgetItem::fromRow(ui.realizationTree->currentItem());
    if (current && definitions.hasFormat(current->pointId()))
        return;
    if (definitions.hasFormat(entry->pointId())) {
        (void)goToRow(ui.realizationTree, nearestWithRow(definitions.first(entry->pointId()), ui.realizationTree));
        return;
    }
    for (QTreeWidgetItemIterator it(ui.realizationTree); *it; ++it) {
        const PointTreeWidgetItem *point = PointTreeWidgetItem::fromRow(*it);
        if (point && point->isKind(QLatin1String("ExtPoint")) && definitions.hasFormat(point->pointId())) {
            (void)goToRow(ui.realizationTree, *it);
            return;
        }
    }
}

bool showEntry(const Ui::ExtPointWidget &ui, PointTreeWidgetItem *entry)
{
    ui.tabWidget->setCurrentIndex(RealizationPage);
    QWidget *page = pageOf(ui, entry);
    if (!page)
        return false;
    const QPointer<PointTreeWidgetItem> meant(entry);
    selectPointWithFormats(ui, entry);
    ui.formatTab->setCurrentWidget(page);
    auto *tree = ui.formatTab->findChild<RealizationTreeWidget *>(QStringLiteral("formatTree"));
    if (!tree || !meant)
        return true;
    const QString id = entry->properties().text(idKey);
    QTreeWidgetItem *namesake = nullptr;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(*it);
        const PointTreeWidgetItem *source = FormatTree::sourceOf(row);
        if (source == entry || (row && row->master() == entry))
            return goToRow(tree, row);
        // An own entry stands for those of others that have its id.
        if (row && !namesake && !id.isEmpty() && row->properties().text(idKey) == id)
            namesake = row;
    }
    if (namesake)
        (void)goToRow(tree, namesake);
    return true;
}

} // namespace

bool GoToNode::show(const Ui::ExtPointWidget &ui, PointTreeWidgetItem *node, const ShowAttribute &showAttribute)
{
    const SourceDataManager *manager = Controller::instance()->sourceDataManager();
    if (!node || !manager)
        return false;
    switch (ModelSearch::sortOf(node)) {
    case NodeSort::Record:
        return showRecord(ui, node);
    case NodeSort::Format:
    case NodeSort::Entry:
        return showEntry(ui, node);
    case NodeSort::Plugin:
    case NodeSort::Point:
    case NodeSort::SubPoint:
    case NodeSort::Attribute:
    case NodeSort::Choice:
    case NodeSort::Other:
        break;
    }
    const PointTreeWidgetItem *top = node;
    while (top->parentItem())
        top = top->parentItem();
    return top == manager->definitionRoot() ? showDefinition(ui, node, showAttribute) : showPoint(ui, node);
}

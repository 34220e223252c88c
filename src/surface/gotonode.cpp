#include "gotonode.h"

#include "definition/defintionpagebuilder.h"
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
#include "realization/realizationpagebuilder.h"

#include <QTreeWidgetItemIterator>

namespace {

using Nodes = QVector<PointTreeWidgetItem *>;

PointTreeWidgetItem *nearestWithRow(PointTreeWidgetItem *node, const QTreeWidget *tree)
{
    while (node && node->treeWidget() != tree)
        node = node->parentItem();
    return node;
}

/// The tab of the format that holds @p entry, from the nearest format outwards.
QWidget *pageOf(const QTabWidget &tabs, PointTreeWidgetItem *entry)
{
    const bool own = Controller::instance()->ownRealizations().isOwn(entry);
    for (PointTreeWidgetItem *root = entry; root; root = root->parentItem()) {
        const QString name = !OwnRealizations::isRoot(root) ? QString()
            : own                                           ? FormatTabs::nameOf(root)
                                                            : OwnRealizations::tabName(root);
        for (int i = 0; !name.isEmpty() && i < tabs.count(); ++i) {
            if (tabs.widget(i)->objectName() == name)
                return tabs.widget(i);
        }
    }
    return nullptr;
}

/// The own node whose sheet is shown whether or not it has a row.
bool hasOwnSheet(PointTreeWidgetItem *node)
{
    return Controller::instance()->ownRealizations().isOwn(node)
        && (node->isKind(QLatin1String("ExtData")) || OwnRealizations::isRecord(node) || OwnRealizations::isRoot(node)
            || OwnRealizations::isEntry(node));
}

} // namespace

bool GoToNode::show(PointTreeWidgetItem *node, const QString &key) const
{
    const SourceDataManager *manager = Controller::instance()->sourceDataManager();
    if (!node || !manager)
        return false;
    const PointTreeWidgetItem *top = node;
    while (top->parentItem())
        top = top->parentItem();
    const QPointer<PointTreeWidgetItem> meant(node);
    if (top == manager->definitionRoot()) {
        ui.tabWidget->setCurrentWidget(ui.tab);
        if (!showDefinition(node))
            return false;
        if (!key.isEmpty())
            definitionPage.openField(key);
        return true;
    }
    ui.tabWidget->setCurrentWidget(ui.tab_2);
    bool found = showRealization(node);
    if (meant && hasOwnSheet(meant)) {
        realizationPage.showSheetOf(meant);
        found = true;
    }
    if (found && !key.isEmpty())
        realizationPage.openField(key);
    return found;
}

bool GoToNode::showDefinition(PointTreeWidgetItem *node) const
{
    PointTreeWidgetItem *point = nearestWithRow(node, ui.defintionTree);
    if (!point)
        return false;
    const QPointer<PointTreeWidgetItem> meant(node);
    definitionPage.showPoint(point);
    ui.defintionTree->setFocus(Qt::OtherFocusReason);
    if (!meant || node == point)
        return meant != nullptr;
    PointTreeWidgetItem *attribute = node;
    PointTreeWidgetItem *choice = nullptr;
    while (attribute->parentItem() && attribute->parentItem() != point) {
        choice = attribute;
        attribute = attribute->parentItem();
    }
    definitionPage.showDeclaration(attribute);
    ui.defintionTable->setFocus(Qt::OtherFocusReason);
    if (!choice || ui.enumGroup->isHidden())
        return true;
    Nodes choices;
    for (PointObject *child : attribute->children()) {
        if (child->item()->isKind(QLatin1String("Data")))
            choices.append(child->item());
    }
    const int row = choices.indexOf(choice);
    if (row < 0 || row >= ui.enumTable->rowCount())
        return true;
    ui.enumTable->setCurrentCell(row, 0);
    FilterLine::showCurrent(ui.enumTable);
    ui.enumTable->setFocus(Qt::OtherFocusReason);
    return true;
}

bool GoToNode::showRealization(PointTreeWidgetItem *node) const
{
    if (node->isKind(QLatin1String("ExtData")))
        return showPoint(Controller::instance()->definitions().first(node->properties().text(idKey)));
    switch (ModelSearch::sortOf(node)) {
    case NodeSort::Record:
        return showRecord(node);
    case NodeSort::Format:
    case NodeSort::Entry:
        return showEntry(node);
    case NodeSort::Plugin:
    case NodeSort::Point:
    case NodeSort::SubPoint:
    case NodeSort::Attribute:
    case NodeSort::Choice:
    case NodeSort::Other:
        break;
    }
    return showPoint(node);
}

bool GoToNode::showPoint(PointTreeWidgetItem *point) const
{
    PointTreeWidgetItem *row = nearestWithRow(point, ui.realizationTree);
    if (!row)
        return false;
    realizationPage.showPoint(row);
    ui.realizationTree->setFocus(Qt::OtherFocusReason);
    return true;
}

bool GoToNode::showRecord(PointTreeWidgetItem *record) const
{
    const PointTreeWidgetItem *holder = record->parentItem();
    const QPointer<PointTreeWidgetItem> meant(record);
    if (!showPoint(Controller::instance()->definitions().first(holder->properties().text(idKey))))
        return false;
    if (meant && realizationPage.showRecord(meant))
        ui.realizTable->setFocus(Qt::OtherFocusReason);
    return true;
}

void GoToNode::selectPointWithFormats(const PointTreeWidgetItem *entry) const
{
    const Definitions definitions = Controller::instance()->definitions();
    const PointTreeWidgetItem *current = PointTreeWidgetItem::fromRow(ui.realizationTree->currentItem());
    if (current && definitions.hasFormat(current->pointId()))
        return;
    if (definitions.hasFormat(entry->pointId())) {
        (void)showPoint(definitions.first(entry->pointId()));
        return;
    }
    for (QTreeWidgetItemIterator it(ui.realizationTree); *it; ++it) {
        PointTreeWidgetItem *point = PointTreeWidgetItem::fromRow(*it);
        if (point && point->isKind(QLatin1String("ExtPoint")) && definitions.hasFormat(point->pointId())) {
            (void)showPoint(point);
            return;
        }
    }
}

bool GoToNode::showEntry(PointTreeWidgetItem *entry) const
{
    QWidget *page = pageOf(*ui.formatTab, entry);
    if (!page)
        return false;
    const QPointer<PointTreeWidgetItem> meant(entry);
    selectPointWithFormats(entry);
    ui.formatTab->setCurrentWidget(page);
    auto *tree = ui.formatTab->findChild<RealizationTreeWidget *>(QStringLiteral("formatTree"));
    if (!tree || !meant)
        return true;
    const QString id = entry->properties().text(idKey);
    PointTreeWidgetItem *row = nullptr;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        PointTreeWidgetItem *candidate = PointTreeWidgetItem::fromRow(*it);
        if (!candidate)
            continue;
        if (FormatTree::sourceOf(candidate) == entry || candidate->master() == entry) {
            row = candidate;
            break;
        }
        // An own entry stands for those of others that have its id.
        if (!row && !id.isEmpty() && candidate->properties().text(idKey) == id)
            row = candidate;
    }
    if (row) {
        realizationPage.showEntry(row);
        tree->setFocus(Qt::OtherFocusReason);
    }
    return true;
}

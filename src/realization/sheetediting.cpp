// The half of the realization page's slots that is about the table of records and the sheet.

#include "definition/metadialog.h"
#include "formatfilling.h"
#include "formatsheet.h"
#include "formattabs.h"
#include "formattree.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "realizationpagebuilder.h"
#include "recordsheet.h"
#include "recordtable.h"
#include "surface/extpointwidgetform.h"

namespace {

const QString idKey = QStringLiteral("id");
const QString targetKey = QStringLiteral("target");

bool fillsTab(const PointTreeWidgetItem *node)
{
    return node->isKind(QLatin1String("format")) || node->isKind(QLatin1String("layout"));
}

} // namespace

void RealizationPageBuilder::onTableItemClicked(QTableWidgetItem *item)
{
    if (!m_ui || !item || !m_ui->realizTable->item(item->row(), 0))
        return;
    m_ui->propertyRealization->commitEditor();
    const QString id = m_ui->realizTable->item(item->row(), 0)->text();
    // Two records can have one id, since generated ones are not unique: the row knows which one it shows.
    PointTreeWidgetItem *record = m_records->record(item->row());
    if (!record || record->property(idKey).toString() != id)
        record = Controller::instance()->ownRealizations().record(id);
    if (!record) {
        disableSheet();
        return;
    }
    m_propertyMode = Record;
    m_formatTree->select(m_formatTree->rowsWithId(id));
    showRecordSheet(record);
}

void RealizationPageBuilder::showRecordSheet(PointTreeWidgetItem *record)
{
    // The defaults are stored, but that is no change of the person's: the document is not marked.
    RecordSheet::storeDefaults(record);
    m_records->refreshRow(record);
    showSheet(record, RecordSheet::of(record));
}

void RealizationPageBuilder::showHolderSheet(PointTreeWidgetItem *holder)
{
    RecordSheet::storeDefaults(holder);
    showSheet(holder, RecordSheet::withoutChildTypes(holder));
}

void RealizationPageBuilder::showSheet(PointTreeWidgetItem *node, const QList<PropertyItem> &records)
{
    m_currentItem = node;
    m_ui->propertyRealization->setEnabled(true);
    m_ui->propertyRealization->showProperties(records);
}

void RealizationPageBuilder::onFormatTreeItemClicked(QTreeWidgetItem *item, int)
{
    if (!m_ui)
        return;
    m_ui->propertyRealization->commitEditor();
    PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(item);
    if (!row || Controller::instance()->ownRealizations().isForeign(row)) {
        disableSheet();
        return;
    }
    m_propertyMode = FormatItem;
    showSheet(row, FormatSheet::of(row));
}

void RealizationPageBuilder::disableSheet()
{
    m_ui->propertyRealization->setEnabled(false);
}

void RealizationPageBuilder::clearSheetOfDead()
{
    if (m_ui && !m_currentItem) {
        m_ui->propertyRealization->clear();
        disableSheet();
    }
}

void RealizationPageBuilder::onPropertyRealization(const QString &property, const QVariant &variant)
{
    if (!m_ui || !m_currentItem)
        return;
    // What the tree shows may be made anew when a tab is renamed; what is saved stays.
    const QPointer<PointTreeWidgetItem> saved = m_currentItem->master()->item();
    const bool isRoot = fillsTab(saved);
    const QStringList oldNames = isRoot ? FormatTabs::namesOf(saved) : QStringList();
    if (isRoot && wouldLoseItsName(saved, property, variant)) {
        // Nothing would ever show it again.
        showAfresh();
        return;
    }
    if (m_propertyMode == FormatItem)
        editFormatItem(property, variant);
    else
        editRecord(property, variant);
    if (isRoot && saved) {
        if (FormatTabs::namesOf(saved) != oldNames)
            followRoot(oldNames, saved);
        else
            m_formatTabs->relabel(saved);
    }
    Q_EMIT modified(true);
}

void RealizationPageBuilder::editFormatItem(const QString &key, const QVariant &value)
{
    const QString oldId = m_currentItem->property(idKey).toString();
    Controller::instance()->setRealizationProperty(m_currentItem, key, value);
    if (!m_formatTree->contains(m_currentItem))
        return;
    if (key == idKey)
        m_formatTree->rename(m_currentItem, oldId);
    FormatFilling::label(m_currentItem);
    afterFormatsChanged();
    if (key == idKey)
        followParents({ m_currentItem->master()->item() }, oldId, value.toString());
    // Where an entry stands among those of other files is a matter of both.
    if (m_formatTree->isMerged() && (key == idKey || key == QLatin1String("parent")))
        requestRefill();
}

void RealizationPageBuilder::followParents(
    const QVector<PointTreeWidgetItem *> &renamed, const QString &oldId, const QString &newId)
{
    if (oldId.isEmpty() || newId.isEmpty())
        return;
    const QString parentKey = QStringLiteral("parent");
    Controller *controller = Controller::instance();
    for (PointTreeWidgetItem *entry : renamed) {
        PointTreeWidgetItem *root = entry;
        while (root->parentItem() && !fillsTab(root))
            root = root->parentItem();
        const QStringList names = FormatTabs::namesOf(root);
        for (const QString &name : names) {
            const OwnRealizations::Nodes formats = controller->ownRealizations().formats(name);
            for (const PointTreeWidgetItem *format : formats) {
                for (PointObject *child : format->children()) {
                    if (child->property(parentKey).toString().compare(oldId, Qt::CaseInsensitive) == 0)
                        child->setProperty(parentKey, newId);
                }
            }
        }
    }
}

bool RealizationPageBuilder::wouldLoseItsName(
    PointTreeWidgetItem *root, const QString &key, const QVariant &value) const
{
    if (!value.toString().isEmpty() || (key != idKey && key != targetKey))
        return false;
    const QStringList names = FormatTabs::namesOf(root);
    return names.size() == 1 && names.first() == root->property(key).toString();
}

void RealizationPageBuilder::editRecord(const QString &key, const QVariant &value)
{
    Controller *controller = Controller::instance();
    const QString oldId = m_currentItem->property(idKey).toString();
    const FormatTree::Nodes rows = m_formatTree->rowsWithId(oldId);
    const PointTreeWidgetItem *holder = m_currentItem->parentItem();
    const bool isRecord = holder && holder->isKind(QLatin1String("ExtData"));
    QVector<PointTreeWidgetItem *> renamed;
    // An emptied id would leave the references without a way back to their record.
    if (key == idKey && isRecord && m_propertyMode == Record && !value.toString().isEmpty()) {
        // The references follow; another record that happens to have the same id does not.
        const OwnRealizations realizations = controller->ownRealizations();
        for (PointTreeWidgetItem *row : rows) {
            if (realizations.isForeign(row))
                continue;
            controller->setRealizationProperty(row, idKey, value);
            m_formatTree->rename(row, oldId);
            renamed.append(row->master()->item());
        }
        const OwnRealizations::Nodes others = realizations.withId(oldId);
        for (PointTreeWidgetItem *other : others) {
            const PointTreeWidgetItem *above = other->parentItem();
            if (other == m_currentItem || !above || above->isKind(QLatin1String("ExtData")))
                continue;
            controller->setRealizationProperty(other, idKey, value);
            renamed.append(other);
        }
        followParents(renamed, oldId, value.toString());
        if (m_formatTree->isMerged())
            requestRefill();
    }
    controller->setRealizationProperty(m_currentItem, key, value);
    for (PointTreeWidgetItem *row : rows)
        FormatFilling::label(row);
    m_records->refreshRow(m_currentItem);
    if (key != idKey)
        return;
    m_records->refreshUses();
    // The records of the point are those of another one now.
    if (!isRecord && m_clickedPoint)
        m_records->showRecords(m_clickedPoint);
}

void RealizationPageBuilder::afterFormatsChanged()
{
    if (!m_ui)
        return;
    m_records->refreshUses();
    m_formatTree->growColumns();
}

void RealizationPageBuilder::onAddTableRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *child, bool)
{
    if (!m_ui || !child)
        return;
    Controller *controller = Controller::instance();
    if (parent && !parent->parentItem()) {
        if (PointTreeWidgetItem *set = controller->ensureDataSet())
            controller->insertRealization(set, parent);
    }
    const OwnRealizations::Nodes shown = controller->ownRealizations().recordsOf(m_records->point());
    if (shown.contains(child)) {
        if (m_records->row(child) < 0)
            m_records->append(child);
    } else {
        // The point that was dragged is the current one of its tree.
        onItemClicked(m_ui->realizationTree->currentItem(), 0);
    }
    if (fillsTab(child)) {
        m_formatTabs->addPluginFormats({ child });
        m_formatTabs->show(child);
    }
    const int row = m_records->row(child);
    if (row < 0)
        return;
    m_ui->realizTable->setCurrentCell(row, 0);
    m_ui->realizTable->scrollToItem(m_ui->realizTable->item(row, 0));
    onTableItemClicked(m_ui->realizTable->item(row, 0));
}

void RealizationPageBuilder::tableItemDel()
{
    if (!m_ui || !m_contextItem)
        return;
    PointTreeWidgetItem *record = std::exchange(m_contextItem, nullptr);
    if (m_currentItem == record)
        m_currentItem = nullptr;
    PointTreeWidgetItem *above = record->parentItem();
    const QStringList tabs = fillsTab(record) ? FormatTabs::namesOf(record) : QStringList();
    if (above) {
        above->detachChild(record);
        record->takeRow();
    }
    Controller::instance()->retire(record);
    m_records->removeRow(record);
    if (!tabs.isEmpty())
        followRoot(tabs, nullptr);
    clearSheetOfDead();
    onTableItemClicked(m_ui->realizTable->currentItem());
    afterFormatsChanged();
    m_formatTree->relabel();
    Q_EMIT modified(true);
}

void RealizationPageBuilder::addMeta()
{
    MetaDialog dialog(m_contextItem);
    connect(&dialog, &MetaDialog::modified, this, &RealizationPageBuilder::modified);
    dialog.exec();
}

void RealizationPageBuilder::setTarget(PointTreeWidgetItem *item)
{
    if (!item || !m_formatTabs)
        return;
    Controller *controller = Controller::instance();
    controller->setRealizationProperty(item, targetKey, m_formatTabs->currentName());
    controller->addTarget(item);
    requestRefill();
}

void RealizationPageBuilder::dropPoint(PointTreeWidgetItem *item)
{
    if (!m_ui || !item)
        return;
    m_formatTree->enter(item);
    // A recorded point has a record of its own, which may be one of those shown.
    const OwnRealizations::Nodes records = Controller::instance()->ownRealizations().recordsOf(m_records->point());
    if (records.size() > m_records->records().size()) {
        for (PointTreeWidgetItem *record : records)
            m_records->append(record);
    }
    if (m_formatTree->contains(item)) {
        const QString texts[] = { item->QTreeWidgetItem::text(0), item->QTreeWidgetItem::text(1) };
        FormatFilling::label(item);
        for (int column = 0; column < 2; ++column) {
            if (!texts[column].isEmpty())
                item->QTreeWidgetItem::setText(column, texts[column]);
        }
        m_formatTree->widget()->setCurrentItem(item);
        m_formatTree->widget()->scrollToItem(item);
        onFormatTreeItemClicked(item, 0);
    }
    afterFormatsChanged();
    Q_EMIT modified(true);
}

// The half of the definition page's slots that is about attributes and enumeration entries.

#include "attributesheet.h"
#include "attributetable.h"
#include "defintionpagebuilder.h"
#include "enumtable.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "pointcreation.h"
#include "surface/extpointwidgetform.h"
#include "tablecells.h"

#include <QSignalBlocker>

namespace {

QStringList fieldsOf(const QString &typeName)
{
    return Controller::instance()->attributeFields().value(typeName.toLower());
}

PointTreeWidgetItem *childAt(const PointTreeWidgetItem *node, int row)
{
    const bool inside = row >= 0 && row < node->children().size();
    return inside ? node->children().at(row)->item() : nullptr;
}

} // namespace

void DefintionPageBuilder::onDefineTableItemClicked(QTableWidgetItem *cell)
{
    if (!m_ui)
        return;
    m_ui->enumGroup->hide();
    // Rows count every child, sub points included, although the table leaves those out: a point whose sub points come
    // first shows another child than the one clicked.
    PointTreeWidgetItem *attribute = cell && m_currentPoint ? childAt(m_currentPoint, cell->row()) : nullptr;
    if (attribute) {
        m_currentAttribute = attribute;
        m_editTarget = attribute;
        m_editMode = EditAttribute;
        showAttribute(attribute);
    }
    updateButtons();
}

void DefintionPageBuilder::showAttribute(PointTreeWidgetItem *attribute)
{
    AttributeSheet::bringIntoLine(attribute, fieldsOf(attribute->kind()));
    m_ui->editInfoWidget->show();
    m_ui->editInfoWidget->showProperties(AttributeSheet::of(attribute, m_attributeTypes));
    const bool isEnum = attribute->kind() == QLatin1String("Enum");
    if (isEnum) {
        const QSignalBlocker quiet(m_ui->enumTable);
        EnumTable::fill(m_ui->enumTable, attribute);
    }
    m_ui->enumGroup->setVisible(isEnum);
}

void DefintionPageBuilder::onEnumTableItemClicked(QTableWidgetItem *cell)
{
    if (!m_ui || !cell || !m_currentAttribute)
        return;
    PointTreeWidgetItem *entry = childAt(m_currentAttribute, cell->row());
    if (!entry)
        return;
    m_editTarget = entry;
    m_editMode = EditEntry;
    m_ui->editInfoWidget->show();
    m_ui->editInfoWidget->showProperties(EnumTable::sheetOf(entry));
    updateButtons();
}

void DefintionPageBuilder::onEditInfoDataChange(const QString &name, const QVariant &value)
{
    if (!m_editTarget || !m_ui)
        return;
    if (m_editMode == EditAttribute && name == QLatin1String("type")) {
        changeAttributeType(value.toString());
        return;
    }
    const bool isEntry = m_editMode == EditEntry;
    QTableWidget *table = isEntry ? m_ui->enumTable : m_ui->defintionTable;
    const QStringList columns = isEntry ? EnumTable::columns() : AttributeTable::columns();
    TableCells::setText(table, table->currentRow(), columns.indexOf(name), value.toString());
    m_editTarget->setProperty(name, value);
    Q_EMIT modified(true);
}

void DefintionPageBuilder::changeAttributeType(const QString &typeName)
{
    PointTreeWidgetItem *attribute = m_editTarget;
    attribute->setKind(typeName);
    if (attribute->link() && attribute->link() != attribute)
        attribute->link()->item()->setKind(typeName);
    TableCells::setText(m_ui->defintionTable, m_ui->defintionTable->currentRow(),
        AttributeTable::columns().indexOf(QStringLiteral("type")), typeName);
    showAttribute(attribute);
    updateButtons();
    Q_EMIT modified(true);
}

void DefintionPageBuilder::onAddButtonClicked()
{
    if (!m_ui)
        return;
    if (sender() == m_ui->pushButton_add_attr)
        addAttribute();
    else if (sender() == m_ui->pushButton_add_enum)
        addEntry();
}

void DefintionPageBuilder::addAttribute()
{
    if (!currentTakesAttributes())
        return;
    PointTreeWidgetItem *attribute = AttributeSheet::create(m_currentPoint, fieldsOf(QStringLiteral("String")));
    QTableWidget *table = m_ui->defintionTable;
    AttributeTable::appendRow(table, attribute);
    TableCells::fit(table);
    table->setCurrentCell(table->rowCount() - 1, 0);
    onDefineTableItemClicked(table->currentItem());
    Q_EMIT modified(true);
}

void DefintionPageBuilder::addEntry()
{
    if (!m_currentAttribute)
        return;
    PointTreeWidgetItem *entry = EnumTable::create(m_currentAttribute);
    QTableWidget *table = m_ui->enumTable;
    TableCells::appendRow(table, { entry->property(QStringLiteral("key")).toString(), QString(), QString() });
    TableCells::fit(table);
    table->setCurrentCell(table->rowCount() - 1, table->columnCount() - 1);
    onEnumTableItemClicked(table->currentItem());
    Q_EMIT modified(true);
}

void DefintionPageBuilder::onDelButtonClicked()
{
    if (!m_ui)
        return;
    if (sender() == m_ui->pushButton_del_attr)
        deleteAttribute();
    else if (sender() == m_ui->pushButton_delete_enmu)
        deleteEntry();
}

void DefintionPageBuilder::deleteAttribute()
{
    QTableWidget *table = m_ui->defintionTable;
    if (table->currentRow() < 0 || !m_currentAttribute)
        return;
    PointTreeWidgetItem *attribute = m_currentAttribute;
    {
        // The table moves its current row while the row still stands; the rows and the children fit again only after
        // it.
        const QSignalBlocker quiet(table);
        if (attribute->isKind(QLatin1String("SubExtPoint")))
            Q_EMIT delDefine(attribute);
        PointCreation::destroyWithCounterpart(attribute);
        table->removeRow(table->currentRow());
    }
    if (table->currentRow() < 0) {
        // The last one takes the change with it: the document is not marked, as by the next edit it will be.
        m_ui->editInfoWidget->hide();
        m_ui->enumGroup->hide();
        updateButtons();
        return;
    }
    onDefineTableItemClicked(table->item(table->currentRow(), 1));
    Q_EMIT modified(true);
}

void DefintionPageBuilder::deleteEntry()
{
    QTableWidget *table = m_ui->enumTable;
    if (table->currentRow() < 0 || !m_editTarget || !m_currentAttribute || m_editMode != EditEntry)
        return;
    {
        const QSignalBlocker quiet(table);
        PointCreation::destroyWithCounterpart(m_editTarget);
        table->removeRow(table->currentRow());
    }
    if (table->currentRow() < 0) {
        m_ui->editInfoWidget->hide();
        m_editMode = EditAttribute;
        updateButtons();
        return;
    }
    onEnumTableItemClicked(table->item(table->currentRow(), 1));
    Q_EMIT modified(true);
}

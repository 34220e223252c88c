// The half of the definition page's slots that is about attributes and enumeration entries.

#include "attributesheet.h"
#include "attributetable.h"
#include "committedvalue.h"
#include "defintionpagebuilder.h"
#include "enumtable.h"
#include "form/extpointwidgetform.h"
#include "form/filterline.h"
#include "form/sheethelp.h"
#include "model/controller.h"
#include "model/definitions.h"
#include "model/pointtreewidgetitem.h"
#include "pointcreation.h"
#include "tablecells.h"

#include <QLineEdit>
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

/// Makes the row of @p node, which childAt() would find there, the current one; false, and none is current, when there
/// is no such row.
bool makeCurrent(QTableWidget *table, const PointTreeWidgetItem *owner, PointTreeWidgetItem *node)
{
    const int row = owner && node ? owner->children().indexOf(node) : -1;
    const bool hasRow = row >= 0 && row < table->rowCount();
    if (table->currentRow() != (hasRow ? row : -1)) {
        const QSignalBlocker quiet(table);
        table->setCurrentCell(hasRow ? row : -1, hasRow ? qMax(0, table->currentColumn()) : -1);
    }
    return hasRow;
}

} // namespace

void DefintionPageBuilder::onDefineTableItemClicked(QTableWidgetItem *cell)
{
    if (!m_ui)
        return;
    // Rows count every child, sub points included, although the table leaves those out: a point whose sub points come
    // first shows another child than the one clicked.
    const QPointer<PointTreeWidgetItem> attribute(
        cell && m_currentPoint ? childAt(m_currentPoint, cell->row()) : nullptr);
    commitSheets();
    m_ui->enumGroup->hide();
    if (attribute) {
        m_currentAttribute = attribute;
        m_editTarget = attribute;
        m_editMode = EditAttribute;
        showAttribute(attribute);
    }
    updateButtons();
}

void DefintionPageBuilder::showDeclaration(PointTreeWidgetItem *attribute)
{
    const int number = Definitions::declarations(m_currentPoint).indexOf(attribute);
    if (number < 0)
        return;
    {
        // A click there may show another one; see onDefineTableItemClicked().
        const QSignalBlocker quiet(m_ui->defintionTable);
        m_ui->defintionTable->setCurrentCell(number, 0);
    }
    FilterLine::showCurrent(m_ui->defintionTable);
    m_currentAttribute = attribute;
    m_editTarget = attribute;
    m_editMode = EditAttribute;
    showAttribute(attribute);
    updateButtons();
}

void DefintionPageBuilder::openField(const QString &key)
{
    if (m_editTarget && m_editTarget != m_currentPoint) {
        (void)m_ui->editInfoWidget->openEditor(key);
    } else if (QWidget *editor = m_ui->basicInfo->editorFor(key)) {
        editor->setFocus(Qt::OtherFocusReason);
        if (auto *line = qobject_cast<QLineEdit *>(editor->focusProxy()))
            line->selectAll();
        m_ui->scrollArea->ensureWidgetVisible(editor);
    }
}

void DefintionPageBuilder::showAttribute(PointTreeWidgetItem *attribute)
{
    AttributeSheet::bringIntoLine(attribute, fieldsOf(attribute->kind()));
    m_ui->editInfoWidget->show();
    m_ui->editInfoWidget->showProperties(editInfo());
    const bool isEnum = attribute->kind() == QLatin1String("Enum");
    if (isEnum) {
        const QSignalBlocker quiet(m_ui->enumTable);
        EnumTable::fill(m_ui->enumTable, attribute);
    }
    m_ui->enumGroup->setVisible(isEnum);
    Controller::instance()->flushChanges();
}

void DefintionPageBuilder::followCurrentRows()
{
    const int shown = m_ui->defintionTable->currentRow();
    const bool isThere = m_currentPoint && m_currentAttribute && shown >= 0
        && Definitions::declarations(m_currentPoint).value(shown) == m_currentAttribute;
    if (!isThere && !makeCurrent(m_ui->defintionTable, m_currentPoint, m_currentAttribute)) {
        m_currentAttribute = nullptr;
        m_editTarget = m_currentPoint;
        m_editMode = EditAttribute;
    }
    // What is shown has the fields of its kind, also when a change took them back.
    if (m_currentAttribute)
        AttributeSheet::bringIntoLine(m_currentAttribute, fieldsOf(m_currentAttribute->kind()));
    if (!m_currentAttribute || m_currentAttribute->kind() != QLatin1String("Enum")) {
        m_ui->enumGroup->hide();
        return;
    }
    {
        const QSignalBlocker quiet(m_ui->enumTable);
        TableCells::setRows(m_ui->enumTable, EnumTable::rowsOf(m_currentAttribute));
    }
    if (m_editMode == EditEntry && !makeCurrent(m_ui->enumTable, m_currentAttribute, m_editTarget)) {
        m_editTarget = m_currentAttribute;
        m_editMode = EditAttribute;
    }
}

QList<PropertyItem> DefintionPageBuilder::editInfo() const
{
    if (!m_editTarget)
        return {};
    QList<PropertyItem> rows = m_editMode == EditEntry ? EnumTable::sheetOf(m_editTarget)
                                                       : AttributeSheet::of(m_editTarget, m_attributeTypes);
    SheetHelp::explain(&rows);
    SheetHelp::startInPlugin(&rows);
    return rows;
}

void DefintionPageBuilder::onEnumTableItemClicked(QTableWidgetItem *cell)
{
    if (!m_ui || !cell || !m_currentAttribute)
        return;
    const QPointer<PointTreeWidgetItem> entry(childAt(m_currentAttribute, cell->row()));
    commitSheets();
    if (!entry)
        return;
    m_editTarget = entry;
    m_editMode = EditEntry;
    m_ui->editInfoWidget->show();
    m_ui->editInfoWidget->showProperties(editInfo());
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
    const QVariant committed = CommittedValue::of(value);
    if (m_editMode == EditEntry && name == EnumTable::choiceKey())
        EnumTable::renameDefault(m_editTarget, committed.toString());
    m_editTarget->setProperty(name, committed);
    finishChange();
}

void DefintionPageBuilder::changeAttributeType(const QString &typeName)
{
    PointTreeWidgetItem *attribute = m_editTarget;
    // The type becomes the name of an element, and a sub point stays one.
    if (attribute->isKind(QLatin1String("SubExtPoint")) || !m_attributeTypes.contains(typeName)) {
        m_ui->editInfoWidget->showProperties(editInfo());
        return;
    }
    attribute->setKind(typeName);
    showAttribute(attribute);
    finishChange();
}

void DefintionPageBuilder::onAddButtonClicked()
{
    if (!m_ui)
        return;
    const QObject *button = sender();
    commitSheets();
    if (button == m_ui->pushButton_add_attr)
        addAttribute();
    else if (button == m_ui->pushButton_add_enum)
        addEntry();
}

void DefintionPageBuilder::addAttribute()
{
    if (!currentTakesAttributes())
        return;
    const PointTreeWidgetItem *made = AttributeSheet::create(m_currentPoint, fieldsOf(QStringLiteral("String")));
    Controller::instance()->flushChanges();
    QTableWidget *table = m_ui->defintionTable;
    table->setCurrentCell(table->rowCount() - 1, 0);
    onDefineTableItemClicked(table->currentItem());
    // What is shown as by a click may be another one, which nobody wants to name.
    if (m_currentAttribute == made)
        m_ui->editInfoWidget->openEditor(QStringLiteral("key"));
    Q_EMIT modified(true);
}

void DefintionPageBuilder::addEntry()
{
    if (!m_currentAttribute)
        return;
    const PointTreeWidgetItem *made = EnumTable::create(m_currentAttribute);
    Controller::instance()->flushChanges();
    QTableWidget *table = m_ui->enumTable;
    table->setCurrentCell(table->rowCount() - 1, table->columnCount() - 1);
    onEnumTableItemClicked(table->currentItem());
    if (m_editTarget == made)
        m_ui->editInfoWidget->openEditor(QStringLiteral("key"));
    Q_EMIT modified(true);
}

void DefintionPageBuilder::moveRow(QTableWidget *table, int step)
{
    commitSheets();
    const bool isOfAttributes = table == m_ui->defintionTable;
    PointTreeWidgetItem *owner = isOfAttributes ? m_currentPoint : m_currentAttribute;
    const int row = table->currentRow();
    const int other = row + step;
    if (!owner || row < 0 || other < 0 || (isOfAttributes && !currentTakesAttributes()))
        return;
    for (int i = 0; i <= qMax(row, other); ++i) {
        const PointTreeWidgetItem *child = childAt(owner, i);
        if (!child || !(isOfAttributes ? !child->isKind(QLatin1String("SubExtPoint")) : EnumTable::isEntry(child)))
            return;
    }
    PointTreeWidgetItem *moved = childAt(owner, row);
    owner->detachChild(moved);
    owner->insertIntoListOnly(other, moved);
    finishChange();
}

void DefintionPageBuilder::onDelButtonClicked()
{
    if (!m_ui)
        return;
    const QObject *button = sender();
    auto *pressed = qobject_cast<QWidget *>(sender());
    const bool hadFocus = pressed && pressed->hasFocus();
    commitSheets();
    if (button == m_ui->pushButton_del_attr)
        deleteAttribute();
    else if (button == m_ui->pushButton_delete_enmu)
        deleteEntry();
    // It is disabled for a moment, or from now on.
    if (hadFocus)
        (pressed->isEnabled()                          ? pressed
                : pressed == m_ui->pushButton_del_attr ? static_cast<QWidget *>(m_ui->defintionTable)
                                                       : m_ui->enumTable)
            ->setFocus(Qt::OtherFocusReason);
}

void DefintionPageBuilder::deleteAttribute()
{
    QTableWidget *table = m_ui->defintionTable;
    const int row = table->currentRow();
    if (row < 0 || !m_currentAttribute)
        return;
    if (m_currentAttribute->isKind(QLatin1String("SubExtPoint")))
        Q_EMIT delDefine(m_currentAttribute);
    PointCreation::destroyWithCounterpart(m_currentAttribute);
    Controller::instance()->flushChanges();
    if (table->rowCount() == 0) {
        // The last one takes the change with it: the document is not marked, as by the next edit it will be.
        m_ui->editInfoWidget->hide();
        m_ui->enumGroup->hide();
        updateButtons();
        return;
    }
    table->setCurrentCell(qMin(row, table->rowCount() - 1), 1);
    Q_EMIT modified(true);
}

void DefintionPageBuilder::deleteEntry()
{
    QTableWidget *table = m_ui->enumTable;
    const int row = table->currentRow();
    if (row < 0 || !m_editTarget || !m_currentAttribute || m_editMode != EditEntry)
        return;
    PointCreation::destroyWithCounterpart(m_editTarget);
    Controller::instance()->flushChanges();
    if (table->rowCount() == 0) {
        m_ui->editInfoWidget->hide();
        updateButtons();
        return;
    }
    table->setCurrentCell(qMin(row, table->rowCount() - 1), 1);
    Q_EMIT modified(true);
}

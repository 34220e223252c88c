#include "metadialog.h"

#include "committedvalue.h"
#include "metasheet.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "pointcreation.h"
#include "tablecells.h"
#include "ui_metadialog.h"

#include <QShortcut>
#include <QSignalBlocker>

MetaDialog::MetaDialog(PointTreeWidgetItem *owner, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::MetaDialog>()), m_owner(owner)
{
    m_ui->setupUi(this);
    m_ui->metaProperty->setAccessibleName(tr("Meta entry"));
    m_ui->splitter->setSizes({ 340, 300 });
    TableCells::prepare(m_ui->tableWidget, tr("Meta entries"));
    TableCells::reset(m_ui->tableWidget, MetaSheet::columns());
    connect(m_ui->metaProperty, &TreePropertyBrowser::propertyChanged, this, &MetaDialog::propertyChanged);
    connect(m_ui->tableWidget, &QTableWidget::currentItemChanged, this, &MetaDialog::on_tableWidget_itemClicked);
    const auto onKey = [this](int key, QPushButton *button) {
        auto *shortcut = new QShortcut(QKeySequence(key), m_ui->tableWidget, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, button, [button] { button->click(); });
    };
    onKey(Qt::Key_Insert, m_ui->pushButton_add);
    onKey(Qt::Key_Delete, m_ui->pushButton_delete);

    if (m_owner) {
        const QList<PointObject *> children = m_owner->children();
        for (PointObject *child : children) {
            if (child->item() && child->item()->kind() == QLatin1String("Meta"))
                appendRow(child->item());
        }
    }
    TableCells::fit(m_ui->tableWidget);
    updateButtons();
}

MetaDialog::~MetaDialog() = default;

void MetaDialog::on_pushButton_add_clicked()
{
    if (!m_owner)
        return;
    m_ui->metaProperty->commitEditor();
    PointTreeWidgetItem *entry = MetaSheet::create(m_owner);
    {
        const QSignalBlocker quiet(m_ui->tableWidget);
        appendRow(entry);
        m_ui->tableWidget->setCurrentCell(m_entries.size() - 1, 0);
    }
    on_tableWidget_itemClicked(m_ui->tableWidget->currentItem());
    m_ui->metaProperty->openEditor(QStringLiteral("key"));
    Q_EMIT modified(true);
}

void MetaDialog::on_pushButton_delete_clicked()
{
    const int row = currentRow();
    if (row < 0)
        return;
    {
        const QSignalBlocker quiet(m_ui->tableWidget);
        if (const QPointer<PointTreeWidgetItem> entry = m_entries.takeAt(row))
            PointCreation::destroyWithCounterpart(entry);
        m_ui->tableWidget->removeRow(row);
    }
    m_ui->metaProperty->clear();
    on_tableWidget_itemClicked(m_ui->tableWidget->currentItem());
    updateButtons();
    Q_EMIT modified(true);
}

void MetaDialog::on_tableWidget_itemClicked(QTableWidgetItem *cell)
{
    if (!cell || cell->row() >= m_entries.size() || !m_entries.at(cell->row()))
        return;
    m_ui->metaProperty->commitEditor();
    m_current = m_entries.at(cell->row());
    m_ui->metaProperty->showProperties(MetaSheet::of(m_current, Controller::instance()->attributeTypes()));
    updateButtons();
}

void MetaDialog::propertyChanged(const QString &name, const QVariant &typed)
{
    if (!m_current)
        return;
    const QVariant value = CommittedValue::of(typed);
    TableCells::setText(
        m_ui->tableWidget, m_entries.indexOf(m_current), MetaSheet::columns().indexOf(name), value.toString());
    m_current->setProperty(name, value);
    if (name == QLatin1String("type"))
        m_ui->metaProperty->showProperties(MetaSheet::of(m_current, Controller::instance()->attributeTypes()));
    Q_EMIT modified(true);
}

void MetaDialog::on_pushButton_close_clicked()
{
    close();
}

void MetaDialog::done(int result)
{
    // Closing by whatever way loses nothing that was typed.
    m_ui->metaProperty->commitEditor();
    QDialog::done(result);
}

void MetaDialog::appendRow(PointTreeWidgetItem *entry)
{
    QStringList texts;
    const QStringList keys = MetaSheet::columns();
    for (const QString &key : keys)
        texts.append(entry->property(key).toString());
    m_entries.append(entry);
    TableCells::appendRow(m_ui->tableWidget, texts);
}

void MetaDialog::updateButtons()
{
    m_ui->pushButton_add->setEnabled(m_owner);
    m_ui->pushButton_delete->setEnabled(m_owner && currentRow() >= 0);
}

int MetaDialog::currentRow() const
{
    const int row = m_ui->tableWidget->currentRow();
    return row < m_entries.size() ? row : -1;
}

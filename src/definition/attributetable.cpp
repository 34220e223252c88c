#include "attributetable.h"

#include "model/definitions.h"
#include "model/pointtreewidgetitem.h"

#include <QTableWidget>

QStringList AttributeTable::columns()
{
    return { QStringLiteral("key"), QStringLiteral("name"), QStringLiteral("type"), QStringLiteral("value") };
}

void AttributeTable::fill(QTableWidget *table, const PointTreeWidgetItem *owner)
{
    const QStringList keys = columns();
    table->clear();
    table->setRowCount(0);
    table->setColumnCount(keys.size());
    table->setHorizontalHeaderLabels(keys);
    if (!owner)
        return;
    const Definitions::Nodes attributes = Definitions::declarations(owner);
    table->setRowCount(attributes.size());
    for (int row = 0; row < attributes.size(); ++row) {
        PointTreeWidgetItem *attribute = attributes.at(row);
        for (int column = 0; column < keys.size(); ++column) {
            const QString &key = keys.at(column);
            const bool isType = key == QLatin1String("type");
            auto *cell = new QTableWidgetItem(isType ? attribute->kind() : attribute->property(key).toString());
            cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
            cell->setToolTip(cell->text());
            table->setItem(row, column, cell);
        }
    }
}

#include "attributetable.h"

#include "model/definitions.h"
#include "model/pointtreewidgetitem.h"
#include "tablecells.h"

#include <QTableWidget>

QStringList AttributeTable::columns()
{
    return { QStringLiteral("key"), QStringLiteral("name"), QStringLiteral("type"), QStringLiteral("value") };
}

void AttributeTable::fill(QTableWidget *table, const PointTreeWidgetItem *owner)
{
    TableCells::reset(table, columns());
    if (!owner)
        return;
    const Definitions::Nodes attributes = Definitions::declarations(owner);
    for (PointTreeWidgetItem *attribute : attributes)
        appendRow(table, attribute);
    TableCells::fit(table);
}

void AttributeTable::appendRow(QTableWidget *table, PointTreeWidgetItem *attribute)
{
    QStringList texts;
    const QStringList keys = columns();
    for (const QString &key : keys)
        texts.append(key == QLatin1String("type") ? attribute->kind() : attribute->property(key).toString());
    TableCells::appendRow(table, texts);
}

#include "attributetable.h"

#include "form/sheethelp.h"
#include "model/definitions.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "tablecells.h"

#include <QTableWidget>

QStringList AttributeTable::columns()
{
    return { QStringLiteral("key"), nameKey, QStringLiteral("type"), QStringLiteral("value") };
}

void AttributeTable::fill(QTableWidget *table, const PointTreeWidgetItem *owner)
{
    TableCells::reset(table, columns());
    SheetHelp::explainColumns(table, columns());
    TableCells::setRows(table, rowsOf(owner));
}

QList<QStringList> AttributeTable::rowsOf(const PointTreeWidgetItem *owner)
{
    QList<QStringList> rows;
    const Definitions::Nodes attributes = owner ? Definitions::declarations(owner) : Definitions::Nodes();
    for (const PointTreeWidgetItem *attribute : attributes) {
        QStringList texts;
        const QStringList keys = columns();
        for (const QString &key : keys)
            texts.append(key == QLatin1String("type") ? attribute->kind() : attribute->properties().text(key));
        rows.append(texts);
    }
    return rows;
}

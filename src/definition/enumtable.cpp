#include "enumtable.h"

#include "form/sheethelp.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "tablecells.h"

#include <QDateTime>
#include <QTableWidget>

QStringList EnumTable::columns()
{
    return { QStringLiteral("key"), QStringLiteral("text"), iconKey };
}

QList<QStringList> EnumTable::rowsOf(const PointTreeWidgetItem *attribute)
{
    QList<QStringList> rows;
    for (PointObject *child : attribute->children()) {
        if (!isEntry(child->item()))
            continue;
        QStringList texts;
        const QStringList keys = columns();
        for (const QString &key : keys)
            texts.append(child->properties().text(key));
        rows.append(texts);
    }
    return rows;
}

void EnumTable::fill(QTableWidget *table, const PointTreeWidgetItem *attribute)
{
    TableCells::reset(table, columns());
    SheetHelp::explainColumns(table, columns());
    TableCells::setRows(table, rowsOf(attribute));
}

QString EnumTable::choiceKey()
{
    return QStringLiteral("text");
}

bool EnumTable::isEntry(const PointTreeWidgetItem *child)
{
    return child->kind() == QLatin1String("Data");
}

void EnumTable::renameDefault(PointTreeWidgetItem *entry, const QString &text)
{
    const QString key = QStringLiteral("value");
    PointTreeWidgetItem *attribute = entry->parentItem();
    const QString old = entry->properties().text(choiceKey());
    if (!attribute || old.isEmpty() || attribute->properties().text(key) != old)
        return;
    for (PointObject *child : attribute->children()) {
        if (child != entry && isEntry(child->item()) && child->properties().text(choiceKey()) == old)
            return;
    }
    attribute->setProperty(key, text);
}

PointTreeWidgetItem *EnumTable::create(PointTreeWidgetItem *attribute)
{
    auto *entry = new PointTreeWidgetItem(QString());
    entry->setKind(QStringLiteral("Data"));
    const QStringList keys = columns();
    for (const QString &key : keys)
        entry->setProperty(key, QString());
    entry->setProperty(QStringLiteral("key"), QString::number(QDateTime::currentSecsSinceEpoch()));
    attribute->addChild(entry, false);
    return entry;
}

QList<PropertyItem> EnumTable::sheetOf(PointTreeWidgetItem *entry)
{
    QList<PropertyItem> records;
    const QStringList keys = columns();
    for (const QString &key : keys) {
        PropertyType type = PropertyType::String;
        if (key == QLatin1String("key"))
            type = PropertyType::Int;
        else if (key == iconKey)
            type = PropertyType::File;
        records.append(PropertyItem(type, key, key, entry->property(key)));
    }
    return records;
}

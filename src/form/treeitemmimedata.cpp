#include "treeitemmimedata.h"

#include "model/pointtreewidgetitem.h"

QString TreeItemMimeData::itemFormat()
{
    return QStringLiteral("ItemMimeData");
}

TreeItemMimeData::TreeItemMimeData() = default;

TreeItemMimeData::~TreeItemMimeData() = default;

void TreeItemMimeData::setItem(const QString &format, QTreeWidgetItem *item)
{
    m_formatList.append(format);
    m_item = item;
    m_node = PointTreeWidgetItem::fromRow(item);
    m_isNode = !m_node.isNull();
}

QTreeWidgetItem *TreeItemMimeData::item() const
{
    return m_isNode && !m_node ? nullptr : m_item;
}

PointTreeWidgetItem *TreeItemMimeData::node() const
{
    return m_node;
}

QStringList TreeItemMimeData::formats() const
{
    return m_formatList;
}

PointTreeWidgetItem *TreeItemMimeData::nodeOf(const QMimeData *data)
{
    const auto *payload = qobject_cast<const TreeItemMimeData *>(data);
    return payload ? payload->node() : nullptr;
}

QVariant TreeItemMimeData::retrieveData(const QString &mimeType, QVariant::Type type) const
{
    if (mimeType == itemFormat())
        return item() != nullptr;
    return QMimeData::retrieveData(mimeType, type);
}

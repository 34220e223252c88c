#include "pointtreewidgetitem.h"

#include "nodeindexes.h"

#include <QTreeWidget>
#include <QVector>

#include <algorithm>
#include <utility>

PointTreeWidgetItem::PointTreeWidgetItem(const QString &text, QObject *parentObject)
    : QObject(parentObject), m_texts { text, QString() }
{ }

PointTreeWidgetItem::PointTreeWidgetItem(const PointTreeWidgetItem &source)
    : QObject(), PointObject(source), QTreeWidgetItem(source), m_texts(source.m_texts), m_pointId(source.m_pointId),
      m_pluginId(source.m_pluginId), m_kind(source.m_kind), m_basePath(source.m_basePath),
      m_hasFormat(source.m_hasFormat), m_isNew(source.m_isNew), m_isDroppedCopy(source.m_isDroppedCopy)
{ }

PointTreeWidgetItem::~PointTreeWidgetItem()
{
    // The view announces the change of its current row here, where listeners still meet a whole node.
    if (treeWidget())
        takeRow();
    if (m_indexes)
        m_indexes->forget(this);
}

void PointTreeWidgetItem::assignFields(const PointTreeWidgetItem &other)
{
    setPointId(other.m_pointId);
    m_pluginId = other.m_pluginId;
    m_kind = other.m_kind;
    m_basePath = other.m_basePath;
    m_hasFormat = other.m_hasFormat;
    m_isNew = other.m_isNew;
}

void PointTreeWidgetItem::setPointId(const QString &pointId)
{
    const QString oldPointId = std::exchange(m_pointId, pointId);
    if (m_indexes && m_pointId != oldPointId)
        m_indexes->pointIdHasChanged(this, oldPointId);
}

bool PointTreeWidgetItem::isKind(QLatin1String kind) const
{
    return m_kind.size() == kind.size() && m_kind.compare(kind, Qt::CaseInsensitive) == 0;
}

PointTreeWidgetItem *PointTreeWidgetItem::parentItem() const
{
    PointObject *above = PointObject::parent();
    return above ? above->item() : nullptr;
}

PointTreeWidgetItem *PointTreeWidgetItem::fromRow(QTreeWidgetItem *row)
{
    return dynamic_cast<PointTreeWidgetItem *>(row);
}

bool PointTreeWidgetItem::isKeptText(int column, int role)
{
    return column >= 0 && column < keptTexts && (role == Qt::DisplayRole || role == Qt::EditRole);
}

QVariant PointTreeWidgetItem::data(int column, int role) const
{
    if (isKeptText(column, role)) {
        const QString &text = m_texts[size_t(column)];
        return text.isNull() ? QVariant() : QVariant(text);
    }
    return QTreeWidgetItem::data(column, role);
}

void PointTreeWidgetItem::setData(int column, int role, const QVariant &value)
{
    if (!isKeptText(column, role)) {
        QTreeWidgetItem::setData(column, role, value);
        return;
    }
    const QString text = value.toString();
    if (text == m_texts[size_t(column)])
        return;
    m_texts[size_t(column)] = text;
    emitDataChanged();
}

void PointTreeWidgetItem::takeRow()
{
    if (QTreeWidgetItem *above = QTreeWidgetItem::parent())
        above->removeChild(this);
    else if (QTreeWidget *tree = treeWidget())
        tree->takeTopLevelItem(tree->indexOfTopLevelItem(this));
}

void PointTreeWidgetItem::destroySubtree(PointTreeWidgetItem *node)
{
    if (!node)
        return;

    QVector<PointTreeWidgetItem *> doomed;
    const auto condemn = [&doomed](PointTreeWidgetItem *item) {
        if (item && !item->m_doomed) {
            item->m_doomed = true;
            doomed.append(item);
        }
    };
    condemn(node);
    for (int i = 0; i < doomed.size(); ++i) {
        PointTreeWidgetItem *item = doomed.at(i);
        for (PointObject *child : item->children()) {
            if (!child->parent() || child->parent() == item)
                condemn(child->item());
        }
        for (int row = 0; row < item->childCount(); ++row)
            condemn(fromRow(item->child(row)));
        const QList<PointObject *> copies = item->ownedCopies();
        for (PointObject *copy : copies)
            condemn(copy->item());
    }

    // Each list is emptied whole, from the top: taking the nodes out one by one would search every list once per node.
    node->takeRow();
    for (PointTreeWidgetItem *item : qAsConst(doomed)) {
        const QList<QTreeWidgetItem *> rows = item->takeChildren();
        for (QTreeWidgetItem *row : rows) {
            if (!fromRow(row))
                delete row;
        }
        item->releaseChildren();
    }
    std::for_each(doomed.crbegin(), doomed.crend(), [](PointTreeWidgetItem *item) { delete item; });
}

PointObject *PointTreeWidgetItem::makeCopy() const
{
    return new PointTreeWidgetItem(*this);
}

void PointTreeWidgetItem::setRowText(int column, const QString &text)
{
    QTreeWidgetItem::setText(column, text);
}

void PointTreeWidgetItem::destroy()
{
    destroySubtree(this);
}

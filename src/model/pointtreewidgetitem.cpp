#include "pointtreewidgetitem.h"

#include "extensionfile/showntext.h"
#include "nodeindexes.h"
#include "nodewatcher.h"

#include <QTreeWidget>
#include <QVector>

#include <algorithm>
#include <utility>

namespace {

void leaveCurrentRow(QTreeWidgetItem *dying)
{
    QTreeWidget *tree = dying->treeWidget();
    for (QTreeWidgetItem *row = tree ? tree->currentItem() : nullptr; row; row = row->parent()) {
        if (row == dying) {
            tree->setCurrentItem(nullptr);
            return;
        }
    }
}

} // namespace

PointTreeWidgetItem::PointTreeWidgetItem(const QString &text, QObject *parentObject)
    : QObject(parentObject), m_texts { text, QString() }
{ }

PointTreeWidgetItem::PointTreeWidgetItem(const PointTreeWidgetItem &source)
    : QObject(nullptr), PointObject(source), QTreeWidgetItem(source), m_texts(source.m_texts),
      m_pointId(source.m_pointId), m_pluginId(source.m_pluginId), m_kind(source.m_kind), m_basePath(source.m_basePath),
      m_hasFormat(source.m_hasFormat), m_isNew(source.m_isNew), m_isDroppedCopy(source.m_isDroppedCopy)
{ }

PointTreeWidgetItem::~PointTreeWidgetItem()
{
    // Views and watchers are told here, where they still meet a whole node.
    if (treeWidget()) {
        leaveCurrentRow(this);
        takeRow();
    }
    if (PointObject *above = PointObject::parent())
        above->detachChild(this);
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

void PointTreeWidgetItem::setKind(const QString &kind)
{
    const QString old = std::exchange(m_kind, kind);
    if (m_kind == old)
        return;
    if (NodeWatcher *watching = watcher())
        watching->kindChanged(this, old);
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
        if (text.isNull())
            return {};
        return role == Qt::DisplayRole ? ExtensionFile::shown(text) : text;
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
    // The row announces as many columns as it keeps something for itself: none stand for all, an icon in the first one
    // alone would leave the other texts as they were on the screen.
    const int columns = QTreeWidgetItem::columnCount();
    if (treeWidget() && columns > 0 && columns < keptTexts)
        QTreeWidgetItem::setData(keptTexts - 1, Qt::UserRole, QVariant());
    emitDataChanged();
}

void PointTreeWidgetItem::takeRow()
{
    if (QTreeWidgetItem *above = QTreeWidgetItem::parent())
        above->removeChild(this);
    else if (QTreeWidget *tree = treeWidget())
        tree->takeTopLevelItem(tree->indexOfTopLevelItem(this));
}

PointTreeWidgetItem *PointTreeWidgetItem::neighbour() const
{
    QTreeWidgetItem *above = QTreeWidgetItem::parent();
    if (!above)
        return nullptr;
    const int index = above->indexOfChild(const_cast<PointTreeWidgetItem *>(this));
    QTreeWidgetItem *beside = above->child(index + 1) ? above->child(index + 1) : above->child(index - 1);
    return fromRow(beside ? beside : above);
}

void PointTreeWidgetItem::destroySubtree(PointTreeWidgetItem *node)
{
    if (!node)
        return;
    leaveCurrentRow(node);
    if (PointObject *above = node->PointObject::parent())
        above->detachChild(node);

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

NodeWatcher *PointTreeWidgetItem::watcher() const
{
    const PointTreeWidgetItem *node = this;
    while (const PointTreeWidgetItem *above = node->parentItem())
        node = above;
    return node->m_watcher;
}

void PointTreeWidgetItem::childAdded(PointObject *child)
{
    NodeWatcher *watching = watcher();
    if (watching && child->item())
        watching->childAdded(this, child->item());
}

void PointTreeWidgetItem::childRemoved(PointObject *child)
{
    NodeWatcher *watching = watcher();
    if (watching && child->item())
        watching->childRemoved(this, child->item());
}

void PointTreeWidgetItem::propertyChanged(const QString &key, const QVariant &old)
{
    NodeWatcher *watching = watcher();
    if (watching && !PropertyHash::isSame(properties().value(key), old))
        watching->propertyChanged(this, key, old);
}

void PointTreeWidgetItem::destroy()
{
    destroySubtree(this);
}

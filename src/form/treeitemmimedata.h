#pragma once

#include <QMimeData>
#include <QPointer>
#include <QStringList>

class PointTreeWidgetItem;
class QTreeWidgetItem;

/// The payload of every drag of the realization page: one row, handed over in process. Owned by its QDrag. GUI thread.
///
/// The format is not a registered MIME type and nobody asks for its bytes: a receiver looks at the drag's source and
/// takes the row.
class TreeItemMimeData : public QMimeData
{
    Q_OBJECT

public:
    /// "ItemMimeData", the one format of such a payload.
    [[nodiscard]] static QString itemFormat();

    TreeItemMimeData();
    ~TreeItemMimeData() override;

    /// Offers @p format, once more if it is offered already, for @p item. Null is allowed.
    void setItem(const QString &format, QTreeWidgetItem *item);

    /// Null also when the row was part of a node that has died since: siblings may arrive, and nodes go, in mid-drag.
    [[nodiscard]] QTreeWidgetItem *item() const;

    /// The node that the row is part of; null without one.
    [[nodiscard]] PointTreeWidgetItem *node() const;

    [[nodiscard]] QStringList formats() const override;

    /// The node in @p data when that is such a payload; null otherwise. Null is allowed.
    [[nodiscard]] static PointTreeWidgetItem *nodeOf(const QMimeData *data);

protected:
    [[nodiscard]] QVariant retrieveData(const QString &mimeType, QVariant::Type type) const override;

private:
    QTreeWidgetItem *m_item = nullptr;
    QStringList m_formatList;
    QPointer<PointTreeWidgetItem> m_node; ///< what the row is part of, if it is one of ours
    bool m_isNode = false;
};

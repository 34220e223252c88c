#pragma once

#include <QMenu>
#include <QPointer>

class PointTreeWidgetItem;

/// The context menu of the definition tree. Its actions are told apart by their texts alone, so these are never
/// translated. Owned by the page builder.
class TreeMenu final : public QMenu
{
    Q_OBJECT

public:
    TreeMenu();

    [[nodiscard]] QAction *createPoint() const { return m_createPoint; }
    [[nodiscard]] QAction *createSubPoint() const { return m_createSubPoint; }
    [[nodiscard]] QAction *deletePoint() const { return m_deletePoint; }

    [[nodiscard]] static QString createPointText() { return QStringLiteral("Create Point"); }
    [[nodiscard]] static QString createSubPointText() { return QStringLiteral("Create Sub Point"); }
    [[nodiscard]] static QString deletePointText() { return QStringLiteral("Delete Point"); }

    /// Shows the actions that fit @p item and hides the others. A root counts as the plug-in, whatever its tag.
    void fitTo(const PointTreeWidgetItem *item);

private:
    QAction *m_createPoint;
    QAction *m_createSubPoint;
    QAction *m_deletePoint;
};

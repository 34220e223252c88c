#pragma once

#include <QObject>

#include <memory>

class PointTreeWidgetItem;
class QAction;
class QMenu;
class QPoint;

/// The context menu of the format tree: "Child Type" with an action for each kind that may be created, and "Delete".
/// Owned by the page builder. GUI thread.
class FormatMenu final : public QObject
{
    Q_OBJECT

public:
    explicit FormatMenu(QObject *parent = nullptr);
    ~FormatMenu() override;

    [[nodiscard]] QMenu *menu() const { return m_menu.get(); }
    [[nodiscard]] QMenu *childTypeMenu() const { return m_childTypes; }
    [[nodiscard]] QAction *deleteAction() const { return m_delete; }

    /// Fits the menu to @p row, with fresh actions for the kinds, their texts the kinds: a row of a sibling and a root
    /// tagged "Format" get a menu that offers nothing.
    void fitTo(PointTreeWidgetItem *row);

private:
    std::unique_ptr<QMenu> m_menu;
    QMenu *m_childTypes;
    QAction *m_delete;
};

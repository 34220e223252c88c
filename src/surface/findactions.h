#pragma once

#include <QAction>
#include <QObject>
#include <QPointer>

class PointTreeWidgetItem;
class QAbstractItemView;
class QWidget;

namespace Ui {
class ExtPointWidget;
}

/// "Find" goes to the filter line of the tree or table that has the focus, or had it last and is still seen; "Find
/// Users" asks who uses its current point, record or entry. Both are actions of the main widget, for the menus of the
/// host. Owned by the main widget, before whose form it dies. GUI thread.
class FindActions final : public QObject
{
    Q_OBJECT

public:
    FindActions(const Ui::ExtPointWidget &ui, QWidget *widget);

    /// "Find Users" is seen only where somebody shows what it finds.
    void setUsersShown(bool shown) { m_users->setVisible(shown); }

Q_SIGNALS:
    void usersWanted(PointTreeWidgetItem *node);

private:
    void noteFocus(QWidget *now);
    /// Null when none of the views is seen.
    [[nodiscard]] QAbstractItemView *view() const;
    void findUsers();

    const Ui::ExtPointWidget &m_ui;
    QWidget *m_widget;
    QPointer<QAbstractItemView> m_last;
    QAction *m_users;
};

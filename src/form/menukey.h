#pragma once

#include <QObject>
#include <QPoint>

class QAbstractItemView;

/// The menu key, or Shift+F10, in a view with a context menu of its own: the menu is asked for at the current row,
/// which is scrolled into sight first, and is to come up there and not at the pointer. Owned by the page. GUI thread.
class MenuKey final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Has @p view emit customContextMenuRequested for the key as well; with a place on no row where none is current.
    void watch(QAbstractItemView *view);

    /// Where the menu that is being asked for is to come up, in global coordinates.
    [[nodiscard]] QPoint place() const;
    /// Whether the request that is being answered came by a key.
    [[nodiscard]] bool isByKey() const { return m_byKey; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPoint m_place;
    bool m_byKey = false;
};

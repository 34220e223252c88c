#include "menukey.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace {

bool asksForMenu(const QEvent &event)
{
    if (event.type() == QEvent::ContextMenu)
        return static_cast<const QContextMenuEvent &>(event).reason() == QContextMenuEvent::Keyboard;
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier;
}

} // namespace

void MenuKey::watch(QAbstractItemView *view)
{
    view->installEventFilter(this);
}

QPoint MenuKey::place() const
{
    return m_byKey ? m_place : QCursor::pos();
}

bool MenuKey::eventFilter(QObject *watched, QEvent *event)
{
    auto *view = asksForMenu(*event) ? qobject_cast<QAbstractItemView *>(watched) : nullptr;
    if (!view)
        return QObject::eventFilter(watched, event);
    const QModelIndex current = view->currentIndex();
    if (current.isValid())
        view->scrollTo(current);
    const QRect row = view->visualRect(current) & view->viewport()->rect();
    const QScopedValueRollback<bool> byKey(m_byKey, true);
    m_place = view->viewport()->mapToGlobal(row.isEmpty() ? QPoint() : row.bottomLeft());
    Q_EMIT view->customContextMenuRequested(row.isEmpty() ? QPoint(-1, -1) : row.center());
    return true;
}

#pragma once

#include "realizationpage.h"

#include <QContextMenuEvent>

/// A page without a mouse.
namespace RealizationTesting {

/// Shows a tab with all that siblings bring to it.
inline void showTab(Page &page, const char *name)
{
    page.clickPoint();
    page.showTab(name);
    const char *last = qstrcmp(name, "both") == 0 ? "b1" : qstrcmp(name, "theirs") == 0 ? "t1" : "m1";
    if (!QTest::qWaitFor([&] { return page.entry(last) != nullptr; }))
        qFatal("the tab is not filled");
}

inline void focus(QWidget *view)
{
    view->window()->activateWindow();
    view->setFocus();
    if (!QTest::qWaitFor([view] { return view->hasFocus(); }))
        qFatal("no focus");
}

inline void keyWith(QWidget *view, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    focus(view);
    QTest::keyClick(view, key, modifiers);
}

/// Asks the view for its menu by a key and answers what it offers and where it is, in the view's coordinates.
inline QStringList menuByKey(Page &page, QAbstractItemView *view, bool shiftF10, QPoint *at)
{
    QStringList offered;
    if (shiftF10)
        focus(view);
    QTimer::singleShot(0, page.widget.get(), [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return;
        *at = view->viewport()->mapFromGlobal(menu->pos());
        for (const QAction *action : menu->actions()) {
            if (action->isVisible())
                offered.append((action->isEnabled() && menu->isEnabled() ? QString() : s("-")) + action->text());
        }
        menu->close();
    });
    if (shiftF10) {
        QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
    } else {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, view->rect().bottomRight());
        QCoreApplication::sendEvent(view, &event);
    }
    QCoreApplication::processEvents();
    return offered;
}

} // namespace RealizationTesting

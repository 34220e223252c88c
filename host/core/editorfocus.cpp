#include "core/editorfocus.h"

#include "core/ieditor.h"
#include "core/mainwindow.h"

#include <QApplication>
#include <QDockWidget>
#include <QKeyEvent>
#include <QTimer>

namespace Core {

namespace {

bool takesKeys(const QWidget *widget)
{
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
}

/// The first one in @p widget that Tab comes to.
QWidget *firstIn(QWidget *widget)
{
    for (QWidget *next = widget->nextInFocusChain(); next != widget; next = next->nextInFocusChain()) {
        if (widget->isAncestorOf(next) && takesKeys(next))
            return next;
    }
    return widget;
}

} // namespace

EditorFocus::EditorFocus(MainWindow *window, QWidget *centre) : QObject(window), m_window(window), m_centre(centre)
{
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, QWidget *now) {
        if (now && m_centre->isAncestorOf(now))
            m_last = now;
    });
    connect(window, &MainWindow::currentEditorChanged, this, [this] {
        // What opens the file may still be about to put the view back.
        QTimer::singleShot(0, this, [this] {
            const QWidget *focus = QApplication::focusWidget();
            if (!focus || (m_window->isActiveWindow() && !m_centre->isAncestorOf(focus) && m_window->currentEditor()))
                giveBack();
        });
    });
}

void EditorFocus::watch(QDockWidget *dock)
{
    dock->installEventFilter(this);
}

void EditorFocus::giveBack()
{
    if (m_last && m_centre->isAncestorOf(m_last) && takesKeys(m_last)) {
        m_last->setFocus(Qt::OtherFocusReason);
        return;
    }
    IEditor *editor = m_window->currentEditor();
    QWidget *whole = editor && editor->widget() ? editor->widget() : m_centre;
    // An editor may know better where to begin.
    whole->setFocus(Qt::OtherFocusReason);
    if (whole->hasFocus())
        firstIn(whole)->setFocus(Qt::OtherFocusReason);
}

bool EditorFocus::eventFilter(QObject *watched, QEvent *event)
{
    // A key arrives here when nothing in the dock has taken it.
    if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape)
        return QObject::eventFilter(watched, event);
    giveBack();
    return true;
}

} // namespace Core

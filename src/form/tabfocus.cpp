#include "tabfocus.h"

#include <QFocusEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

void TabFocus::onArrival(QWidget *widget, const std::function<void()> &action)
{
    widget->installEventFilter(new TabFocus(widget, action));
}

TabFocus::TabFocus(QWidget *widget, std::function<void()> action) : QObject(widget), m_action(std::move(action)) { }

bool TabFocus::eventFilter(QObject *watched, QEvent *event)
{
    const Qt::FocusReason reason
        = event->type() == QEvent::FocusIn ? static_cast<QFocusEvent *>(event)->reason() : Qt::OtherFocusReason;
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
        QTimer::singleShot(0, this, m_action);
    return QObject::eventFilter(watched, event);
}

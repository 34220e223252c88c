#include "statustip.h"

#include <QCoreApplication>
#include <QStatusTipEvent>
#include <QWidget>

void StatusTip::show(QWidget *widget, const QString &text)
{
    if (text == m_shown)
        return;
    m_shown = text;
    QStatusTipEvent event(text);
    QCoreApplication::sendEvent(widget, &event);
}

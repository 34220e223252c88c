#include "heldpress.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QTimer>

#include <utility>

HeldPress::HeldPress(QAbstractItemView *view, std::function<void()> show)
    : QObject(view), m_view(view), m_show(std::move(show))
{
    view->viewport()->installEventFilter(this);
}

bool HeldPress::holdsBack()
{
    // The release may have gone elsewhere.
    if (!m_down || !QApplication::mouseButtons().testFlag(Qt::LeftButton))
        return false;
    m_pending = true;
    return true;
}

void HeldPress::putBack()
{
    m_down = false;
    m_dragged = true;
    if (!std::exchange(m_pending, false))
        return;
    const bool scrolls = m_view->hasAutoScroll();
    m_view->setAutoScroll(false);
    if (m_before.isValid())
        m_view->selectionModel()->setCurrentIndex(
            m_before, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else
        m_view->selectionModel()->clear();
    m_view->setAutoScroll(scrolls);
}

bool HeldPress::eventFilter(QObject *watched, QEvent *event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    if ((isPress || event->type() == QEvent::MouseButtonRelease)
        && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
        m_down = isPress;
        // Where a drag ends there is a release on some platforms, which is no click.
        if (std::exchange(m_dragged, false) && !isPress)
            return true;
        if (isPress) {
            m_before = m_view->currentIndex();
            m_pending = false;
        } else if (m_pending) {
            // After the view, whose click shows it as a rule; one that ends beside the row is none.
            QTimer::singleShot(0, this, [this] {
                if (std::exchange(m_pending, false))
                    m_show();
            });
        }
    }
    return QObject::eventFilter(watched, event);
}

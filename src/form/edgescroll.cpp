#include "edgescroll.h"

#include <QAbstractScrollArea>
#include <QScrollBar>
#include <QTimerEvent>

#include <utility>

namespace {

constexpr int margin = 24;   // pixels from the edge
constexpr int interval = 40; // milliseconds between two steps

// Rows for each second, or as many times the pixels of a row.
constexpr qreal slowest = 4;
constexpr qreal fastest = 40;
constexpr qreal secondsToFastest = 3;
constexpr int pixelsOfRow = 20;

qreal rowsPerSecond(qreal seconds)
{
    return slowest + (fastest - slowest) * qMin(seconds / secondsToFastest, 1.0);
}

/// -1 near the start of a range, 1 near its end, 0 between; a narrow view has no middle to lose.
int direction(int pos, int length)
{
    const int edge = qMin(margin, length / 4);
    if (pos < edge)
        return -1;
    return pos >= length - edge ? 1 : 0;
}

/// Scrolls by the whole steps of @p due, and leaves the rest.
void scroll(QScrollBar *bar, qreal *due)
{
    // A view that scrolls row by row says so by its single step.
    const int pixels = bar->singleStep() > 1 ? pixelsOfRow : 1;
    const int steps = int(*due * pixels);
    *due -= qreal(steps) / pixels;
    if (steps != 0)
        bar->setValue(bar->value() + steps);
}

} // namespace

EdgeScroll::EdgeScroll(QAbstractScrollArea *area, std::function<void()> scrolled)
    : m_area(area), m_scrolled(std::move(scrolled))
{ }

void EdgeScroll::hold(const QPoint &pos)
{
    m_pos = pos;
    if (directions().isNull()) {
        stop();
    } else if (!m_timer.isActive() || directions() != m_directions) {
        m_directions = directions();
        m_due = {};
        m_last = 0;
        m_atEdge.start();
        m_timer.start(delay, this);
    }
}

void EdgeScroll::stop()
{
    m_timer.stop();
}

void EdgeScroll::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    const qint64 now = m_atEdge.elapsed();
    if (m_last == 0) {
        m_timer.start(interval, this);
        // The first row at once.
        m_due = m_directions;
    } else {
        m_due += QPointF(m_directions) * rowsPerSecond(double(now - delay) / 1000.0) * (double(now - m_last) / 1000.0);
    }
    m_last = now;
    scroll(m_area->verticalScrollBar(), &m_due.ry());
    scroll(m_area->horizontalScrollBar(), &m_due.rx());
    m_scrolled();
}

QPoint EdgeScroll::directions() const
{
    const QSize size = m_area->viewport()->size();
    return { direction(m_pos.x(), size.width()), direction(m_pos.y(), size.height()) };
}

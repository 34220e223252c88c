#include "edgescroll.h"

#include <QAbstractScrollArea>
#include <QScrollBar>
#include <QTimerEvent>

#include <utility>

namespace {

constexpr int margin = 24;     // pixels from the edge
constexpr int interval = 40;   // milliseconds between two steps
constexpr int stepPixels = 12; // what a step is where the view scrolls by pixels

/// -1 near the start of a range, 1 near its end, 0 between; a narrow view has no middle to lose.
int direction(int pos, int length)
{
    const int edge = qMin(margin, length / 4);
    if (pos < edge)
        return -1;
    return pos >= length - edge ? 1 : 0;
}

void scroll(QScrollBar *bar, int direction)
{
    // A view that scrolls row by row says so by its single step.
    const int step = bar->singleStep() > 1 ? stepPixels : 1;
    bar->setValue(bar->value() + direction * step);
}

} // namespace

EdgeScroll::EdgeScroll(QAbstractScrollArea *area, std::function<void()> scrolled)
    : m_area(area), m_scrolled(std::move(scrolled))
{ }

void EdgeScroll::hold(const QPoint &pos)
{
    m_pos = pos;
    if (steps().isNull())
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start(interval, this);
}

void EdgeScroll::stop()
{
    m_timer.stop();
}

void EdgeScroll::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    const QPoint step = steps();
    scroll(m_area->verticalScrollBar(), step.y());
    scroll(m_area->horizontalScrollBar(), step.x());
    m_scrolled();
}

QPoint EdgeScroll::steps() const
{
    const QSize size = m_area->viewport()->size();
    return { direction(m_pos.x(), size.width()), direction(m_pos.y(), size.height()) };
}

#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QPointF>

#include <functional>

class QAbstractScrollArea;

/// Scrolls a view while something is held near one of its edges: not at once, since most of what comes by there is on
/// its way to somewhere else; slowly at first, then faster. Owned by the view. GUI thread.
class EdgeScroll final : public QObject
{
public:
    /// Milliseconds that something is held at an edge before the view scrolls.
    static constexpr int delay = 400;

    /// Calls @p scrolled after each step.
    EdgeScroll(QAbstractScrollArea *area, std::function<void()> scrolled);

    /// Something is held at @p pos, in viewport coordinates.
    void hold(const QPoint &pos);
    void stop();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /// For the place that is held -1 near the start of each axis, 1 near its end, 0 between.
    [[nodiscard]] QPoint directions() const;

    QAbstractScrollArea *m_area;
    std::function<void()> m_scrolled;
    QBasicTimer m_timer;
    QElapsedTimer m_atEdge; ///< since the pointer came to this edge
    qint64 m_last = 0;      ///< milliseconds after that: what was scrolled last
    QPoint m_directions;    ///< of the edge
    QPointF m_due;          ///< what is scrolled as soon as it is a whole step
    QPoint m_pos;
};

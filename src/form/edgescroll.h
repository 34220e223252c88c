#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

#include <functional>

class QAbstractScrollArea;

/// Scrolls a view while something is held near one of its edges. Owned by the view. GUI thread.
class EdgeScroll final : public QObject
{
public:
    /// Calls @p scrolled after each step.
    EdgeScroll(QAbstractScrollArea *area, std::function<void()> scrolled);

    /// Something is held at @p pos, in viewport coordinates.
    void hold(const QPoint &pos);
    void stop();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /// Steps, with their sign, that the view goes for the place that is held.
    [[nodiscard]] QPoint steps() const;

    QAbstractScrollArea *m_area;
    std::function<void()> m_scrolled;
    QBasicTimer m_timer;
    QPoint m_pos;
};

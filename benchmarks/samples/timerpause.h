#pragma once

#include "watchedapplication.h"

#include <QTimer>

#include <algorithm>

/// The longest time in which a timer of 1 ms did not fire, that is, in which the event loop was busy. GUI thread.
class TimerPause final
{
public:
    TimerPause()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { note(); });
    }

    void start()
    {
        m_longest = 0;
        m_last = WatchedApplication::now();
        m_timer.start();
    }

    /// Milliseconds, what runs on at this moment included.
    [[nodiscard]] double longest() const
    {
        return double(std::max(m_longest, WatchedApplication::now() - m_last)) / 1e6;
    }

private:
    void note()
    {
        const qint64 now = WatchedApplication::now();
        m_longest = std::max(m_longest, now - m_last);
        m_last = now;
    }

    QTimer m_timer;
    qint64 m_last = 0;
    qint64 m_longest = 0;
};

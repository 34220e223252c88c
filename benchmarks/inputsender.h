#pragma once

#include <QPointF>
#include <QString>

#include <atomic>
#include <thread>
#include <vector>

class QWindow;

/// Somebody at the keyboard or the mouse: a thread that hands events to Qt like a window system, at a steady rate. Made
/// and destroyed on the GUI thread, which must run an event loop from start() to finish().
class InputSender final
{
public:
    /// One event to press and one to release something.
    struct Stroke
    {
        int key = 0;   ///< a key, or 0 for the left button
        QString text;  ///< what the key types
        QPointF place; ///< where the button is pressed, in the window
    };

    /// Sends @p strokes again and again, one event every @p interval milliseconds.
    InputSender(QWindow *window, std::vector<Stroke> strokes, int interval);
    ~InputSender();
    InputSender(const InputSender &) = delete;
    InputSender &operator=(const InputSender &) = delete;

    void start();
    /// Sends no more, but for a first event, and returns when the last one has been handled.
    void finish();

    /// From the time at which each event was due to the time at which it had been handled, in milliseconds. Only one is
    /// on its way at a time; what falls due meanwhile counts as handled along with it, since a window system hands over
    /// everything that has come, and is not sent.
    [[nodiscard]] const std::vector<double> &latencies() const { return m_latencies; }
    /// Events that came to no window.
    [[nodiscard]] int lost() const { return m_lost; }

private:
    void run();
    qint64 waitUntilHandled(qint64 sent) const;
    void send(const Stroke &stroke, bool press, int timestamp) const;

    QWindow *m_window;
    QPointF m_origin; ///< of the window on the screen
    std::vector<Stroke> m_strokes;
    int m_interval;
    std::thread m_thread;
    std::atomic<bool> m_stopping { false };
    std::atomic<bool> m_finished { false };
    std::vector<double> m_latencies;
    int m_lost = 0;
};

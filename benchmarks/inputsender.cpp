#include "inputsender.h"

#include "watchedapplication.h"

#include <QTest>
#include <QWindow>

#include <chrono>
#include <utility>

InputSender::InputSender(QWindow *window, std::vector<Stroke> strokes, int interval)
    : m_window(window), m_origin(window->position()), m_strokes(std::move(strokes)), m_interval(interval)
{ }

InputSender::~InputSender()
{
    finish();
}

void InputSender::start()
{
    m_thread = std::thread(&InputSender::run, this);
}

void InputSender::finish()
{
    if (!m_thread.joinable())
        return;
    m_stopping = true;
    while (!m_finished)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    m_thread.join();
}

void InputSender::run()
{
    const WatchedApplication *application = WatchedApplication::instance();
    const qint64 interval = qint64(m_interval) * 1'000'000;
    qint64 due = WatchedApplication::now();
    for (int event = 0; !m_stopping; ++event) {
        std::this_thread::sleep_for(std::chrono::nanoseconds(due - WatchedApplication::now()));
        // That this thread woke late is not what is measured.
        const qint64 sent = WatchedApplication::now();
        const Stroke &stroke = m_strokes[std::size_t(event / 2) % m_strokes.size()];
        // Returns when the GUI thread has handled it.
        send(stroke, event % 2 == 0, int(sent / 1'000'000));
        const qint64 handled = application->inputHandledAt();
        if (handled < sent) {
            // The last one may be taken out of the queue by the end of the measurement.
            m_lost += m_stopping ? 0 : 1;
        } else {
            m_latencies.push_back(double(handled - sent) / 1e6);
            for (due = sent + interval; due < handled; due += interval)
                m_latencies.push_back(double(handled - due) / 1e6);
        }
        while (due <= sent)
            due += interval;
    }
    m_finished = true;
}

void InputSender::send(const Stroke &stroke, bool press, int timestamp) const
{
    if (stroke.key) {
        qt_handleKeyEvent(
            m_window, press ? QEvent::KeyPress : QEvent::KeyRelease, stroke.key, Qt::NoModifier, stroke.text);
        return;
    }
    qt_handleMouseEvent(m_window, stroke.place, stroke.place + m_origin, press ? Qt::LeftButton : Qt::NoButton,
        Qt::LeftButton, press ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, Qt::NoModifier, timestamp);
}

#include "inputsender.h"

#include "watchedapplication.h"

#include <QTest>
#include <QWindow>

#include <chrono>
#include <utility>

namespace {

constexpr qint64 lostAfter = 10'000'000'000; // nanoseconds
constexpr std::chrono::microseconds lookInterval(50);

} // namespace

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
    const qint64 interval = qint64(m_interval) * 1'000'000;
    qint64 due = WatchedApplication::now();
    int event = 0;
    // However short the measurement is, one event belongs to it.
    do {
        std::this_thread::sleep_for(std::chrono::nanoseconds(due - WatchedApplication::now()));
        // That this thread woke late is not what is measured.
        const qint64 sent = WatchedApplication::now();
        const Stroke &stroke = m_strokes[std::size_t(event / 2) % m_strokes.size()];
        send(stroke, event % 2 == 0, int(sent / 1'000'000));
        const qint64 handled = waitUntilHandled(sent);
        if (handled < sent) {
            ++m_lost;
        } else {
            m_latencies.push_back(double(handled - sent) / 1e6);
            for (due = sent + interval; due < handled; due += interval)
                m_latencies.push_back(double(handled - due) / 1e6);
        }
        while (due <= sent)
            due += interval;
        ++event;
    } while (!m_stopping);
    m_finished = true;
}

qint64 InputSender::waitUntilHandled(qint64 sent) const
{
    const WatchedApplication *application = WatchedApplication::instance();
    // Sending returns early when the GUI thread has taken the event out of the queue by itself and is still at it.
    while (application->inputHandledAt() < sent && WatchedApplication::now() - sent < lostAfter)
        std::this_thread::sleep_for(lookInterval);
    return application->inputHandledAt();
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

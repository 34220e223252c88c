#include "watchedapplication.h"

#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <limits>

namespace {

constexpr qint64 longestWaitForPaint = 30'000'000'000; // nanoseconds
constexpr int settleTime = 60;                         // milliseconds
constexpr int turnsUntilIdle = 3;

bool isInput(const QObject *receiver, const QEvent *event)
{
    if (!receiver->isWindowType() || !event->spontaneous())
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        return true;
    default:
        return false;
    }
}

} // namespace

WatchedApplication::WatchedApplication(int &argc, char **argv) : QApplication(argc, argv) { }

WatchedApplication *WatchedApplication::instance()
{
    return static_cast<WatchedApplication *>(QCoreApplication::instance());
}

qint64 WatchedApplication::now()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool WatchedApplication::notify(QObject *receiver, QEvent *event)
{
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    // The receiver may be gone afterwards.
    const bool input = isInput(receiver, event);
    if (m_expected && receiver == m_expected && event->type() == QEvent::Paint)
        m_painting = true;
    ++m_depth;
    const bool accepted = QApplication::notify(receiver, event);
    --m_depth;
    if (m_painting && m_depth == 0) {
        m_painting = false;
        m_expected.clear();
        m_paintedAt = now();
    }
    if (input)
        m_inputHandledAt.store(now());
    return accepted;
}

double WatchedApplication::untilPainted(const std::function<const QWidget *()> &action)
{
    m_paintedAt = 0;
    const qint64 start = now();
    // What is painted within the action does not show all of it.
    m_expected = action();
    while (!m_paintedAt) {
        if (now() - start > longestWaitForPaint)
            return std::numeric_limits<double>::quiet_NaN();
        processEvents(QEventLoop::AllEvents);
    }
    return double(m_paintedAt - start) / 1e6;
}

double WatchedApplication::untilIdle(const std::function<void()> &action)
{
    const qint64 start = now();
    action();
    // A timer of no interval fires when everything that was posted or due by then has been handled.
    for (int turn = 0; turn < turnsUntilIdle; ++turn) {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return double(now() - start) / 1e6;
}

void WatchedApplication::settle()
{
    QEventLoop loop;
    QTimer::singleShot(settleTime, &loop, &QEventLoop::quit);
    loop.exec();
}

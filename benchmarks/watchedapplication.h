#pragma once

#include <QApplication>
#include <QPointer>

#include <atomic>
#include <functional>

/// An application that notes when events have been handled, whoever handles them: when a widget has been painted and
/// when input has gone through. One per process, on the GUI thread; times are nanoseconds of the steady clock.
class WatchedApplication final : public QApplication
{
public:
    WatchedApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

    [[nodiscard]] static WatchedApplication *instance();
    [[nodiscard]] static qint64 now();

    /// How long @p action takes from its call until the widget that it answers has been painted after it, with
    /// everything else that is painted at that time; milliseconds, NaN when it isn't painted within half a minute.
    [[nodiscard]] double untilPainted(const std::function<const QWidget *()> &action);

    /// How long @p action takes from its call until nothing is left to do at once, painting included; milliseconds.
    [[nodiscard]] static double untilIdle(const std::function<void()> &action);

    /// Lets what is going on come to rest.
    static void settle();

    /// When the last key or button event of a window had been handled. Any thread.
    [[nodiscard]] qint64 inputHandledAt() const { return m_inputHandledAt.load(); }

private:
    QPointer<const QWidget> m_expected;
    bool m_painting = false;
    qint64 m_paintedAt = 0;
    int m_depth = 0;
    std::atomic<qint64> m_inputHandledAt { 0 };
};

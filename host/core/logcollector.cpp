#include "core/logcollector.h"

#include <QThread>
#include <QVector>

#include <algorithm>
#include <mutex>
#include <utility>

namespace Core {

struct LogCollector::Private
{
    struct Line
    {
        QtMsgType type;
        // The strings of a message context are literals and category names, both alive as long as the code that logs.
        const char *file;
        int number;
        const char *function;
        const char *category;
        QString text;
        Qt::HANDLE thread;
    };

    Qt::HANDLE thread = QThread::currentThreadId();
    QVector<Line> lines;
    Private *outer = nullptr;
};

namespace {

std::mutex mutex; // guards the rest and what is collected
LogCollector::Private *innermost = nullptr;
QtMessageHandler previousHandler = nullptr;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    std::unique_lock<std::mutex> lock(mutex);
    if (innermost && (type == QtWarningMsg || type == QtCriticalMsg)) {
        innermost->lines.append(
            { type, context.file, context.line, context.function, context.category, text, QThread::currentThreadId() });
        return;
    }
    const QtMessageHandler previous = previousHandler;
    lock.unlock();
    if (previous)
        previous(type, context, text);
}

} // namespace

LogCollector::LogCollector() : d(std::make_unique<Private>())
{
    const std::lock_guard<std::mutex> lock(mutex);
    d->outer = std::exchange(innermost, d.get());
    if (!d->outer)
        previousHandler = qInstallMessageHandler(collect);
}

LogCollector::~LogCollector()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        innermost = d->outer;
        if (!innermost)
            qInstallMessageHandler(previousHandler);
    }
    for (const Private::Line &line : qAsConst(d->lines))
        qt_message_output(
            line.type, QMessageLogContext(line.file, line.number, line.function, line.category), line.text);
}

QStringList LogCollector::linesAbout(const QString &path) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    QStringList about;
    QStringList own;
    for (const Private::Line &line : qAsConst(d->lines)) {
        if (!path.isEmpty() && line.text.contains(path))
            about.append(line.text);
        if (line.thread == d->thread)
            own.append(line.text);
    }
    return about.isEmpty() ? own : about;
}

void LogCollector::discard(const QStringList &shown)
{
    const std::lock_guard<std::mutex> lock(mutex);
    for (const QString &text : shown) {
        const auto isShown = [&text](const Private::Line &line) { return line.text == text; };
        const auto found = std::find_if(d->lines.begin(), d->lines.end(), isShown);
        if (found != d->lines.end())
            d->lines.erase(found);
    }
}

} // namespace Core

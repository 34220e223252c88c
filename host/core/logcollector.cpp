#include "core/logcollector.h"

#include <QThread>
#include <QVector>

#include <mutex>

namespace Core {

namespace {

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

} // namespace

struct LogCollector::Private
{
    Qt::HANDLE thread = QThread::currentThreadId();
    QVector<Line> lines;

    void removeOne(const QString &text)
    {
        for (int i = lines.size() - 1; i >= 0; --i) {
            if (lines.at(i).text == text) {
                lines.removeAt(i);
                return;
            }
        }
    }
};

namespace {

/// The collectors alive, the innermost last, and the handler that was installed before the first of them.
struct Registry
{
    std::mutex mutex;
    QVector<LogCollector::Private *> collectors;
    QtMessageHandler previous = nullptr;
};

Registry &registry()
{
    static Registry instance;
    return instance;
}

void collect(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    Registry &all = registry();
    QtMessageHandler previous = nullptr;
    {
        const std::lock_guard<std::mutex> lock(all.mutex);
        previous = all.previous;
        if (!all.collectors.isEmpty() && (type == QtWarningMsg || type == QtCriticalMsg)) {
            const Line line { type, context.file, context.line, context.function, context.category, text,
                QThread::currentThreadId() };
            for (LogCollector::Private *collector : qAsConst(all.collectors))
                collector->lines.append(line);
            return;
        }
    }
    if (previous)
        previous(type, context, text);
}

QStringList texts(const QVector<Line> &lines)
{
    QStringList result;
    for (const Line &line : lines)
        result.append(line.text);
    return result;
}

} // namespace

LogCollector::LogCollector() : d(std::make_unique<Private>())
{
    Registry &all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    if (all.collectors.isEmpty())
        all.previous = qInstallMessageHandler(collect);
    all.collectors.append(d.get());
}

LogCollector::~LogCollector()
{
    Registry &all = registry();
    QtMessageHandler previous = nullptr;
    {
        const std::lock_guard<std::mutex> lock(all.mutex);
        all.collectors.removeOne(d.get());
        if (!all.collectors.isEmpty())
            return;
        previous = all.previous;
        qInstallMessageHandler(previous);
    }
    for (const Line &line : qAsConst(d->lines))
        previous(line.type, QMessageLogContext(line.file, line.number, line.function, line.category), line.text);
}

QStringList LogCollector::lines() const
{
    const std::lock_guard<std::mutex> lock(registry().mutex);
    return texts(d->lines);
}

QStringList LogCollector::linesAbout(const QString &path) const
{
    const std::lock_guard<std::mutex> lock(registry().mutex);
    QVector<Line> about;
    QVector<Line> own;
    for (const Line &line : qAsConst(d->lines)) {
        if (!path.isEmpty() && line.text.contains(path))
            about.append(line);
        if (line.thread == d->thread)
            own.append(line);
    }
    return texts(about.isEmpty() ? own : about);
}

void LogCollector::discard(const QStringList &shown)
{
    Registry &all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    for (Private *collector : qAsConst(all.collectors))
        for (const QString &line : shown)
            collector->removeOne(line);
}

} // namespace Core

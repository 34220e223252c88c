#include "samples/sample.h"

#include "hostmemory.h"
#include "samples/parsers.h"
#include "samples/timerpause.h"
#include "watchedapplication.h"

#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <thread>
#include <vector>

QJsonObject Samples::parse(const QJsonObject &arguments)
{
    const Parsers::Parser parser = Parsers::byName(arguments.value(QLatin1String("parser")).toString());
    if (!parser)
        return failure(QStringLiteral("no such parser"));
    const QStringList files = Parsers::filesBelow(arguments.value(QLatin1String("directory")).toString());
    HostMemory::fetch();
    qint64 elapsed = 0;
    for (const QString &file : files) {
        const qint64 time = parser(file);
        if (time < 0)
            return failure(QStringLiteral("%1 can't be parsed").arg(file));
        elapsed += time;
    }
    return { { QStringLiteral("wall"), double(elapsed) / 1e6 } };
}

QJsonObject Samples::idle(const QJsonObject &arguments)
{
    const QStringList files = Parsers::filesBelow(arguments.value(QLatin1String("directory")).toString());
    const Parsers::Parser parser = Parsers::byName(QStringLiteral("stream"));
    std::atomic<int> next { 0 };
    std::atomic<int> running { 2 };
    const auto read = [&] {
        for (int index = next++; index < files.size(); index = next++)
            (void)parser(files.at(index));
        --running;
    };
    TimerPause pause;
    pause.start();
    std::vector<std::thread> threads;
    threads.emplace_back(read);
    threads.emplace_back(read);
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (running == 0)
            loop.quit();
    });
    poll.start(5);
    loop.exec();
    for (std::thread &thread : threads)
        thread.join();
    return { { QStringLiteral("stall"), pause.longest() } };
}

#include "samples/sample.h"

#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "hostmemory.h"
#include "inputsender.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "openedproduct.h"
#include "propertybrowser/treepropertybrowser.h"
#include "samples/timerpause.h"
#include "surface/extpointwidget.h"
#include "watchedapplication.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QThreadPool>
#include <QWindow>

#include <memory>
#include <unistd.h>

namespace {

const QString openedPoint = QStringLiteral("bench.p0000.point");
constexpr int pointsOfPlugin = 4;
constexpr int typingInterval = 5;    // milliseconds between two events: ten times as fast as people type
constexpr int clickingInterval = 25; // milliseconds between two events

double residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * double(::sysconf(_SC_PAGESIZE));
}

int nodesUnder(const PointObject *node)
{
    int count = 0;
    for (const PointObject *child : node->children())
        count += 1 + nodesUnder(child);
    return count;
}

int scannedNodes(const OpenedProduct &product)
{
    return nodesUnder(product.manager()->availablePointsRoot()) + nodesUnder(product.manager()->allDataRoot());
}

/// Whether each point below @p node stands in the tree.
bool rowsStand(PointObject *node, const QTreeWidget *tree)
{
    for (PointObject *child : node->children()) {
        const PointTreeWidgetItem *item = child->item();
        const bool isPoint = item->isKind(QLatin1String("ExtPoint")) || item->isKind(QLatin1String("SubExtPoint"));
        if ((isPoint && item->treeWidget() != tree) || !rowsStand(child, tree))
            return false;
    }
    return true;
}

/// Shows a record of the opened plug-in and opens the editor of its text.
std::vector<InputSender::Stroke> typing(const OpenedProduct &product)
{
    auto *points = product.find<RealizationTreeWidget>("realizationTree");
    auto *records = product.find<RealizationTableWidget>("realizTable");
    PointTreeWidgetItem *point = OpenedProduct::pointRow(points, openedPoint + QLatin1Char('0'));
    if (!point)
        return {};
    OpenedProduct::click(points, point);
    WatchedApplication::settle();
    records->setCurrentCell(0, 0);
    if (!product.find<TreePropertyBrowser>("propertyRealization")->openEditor(QStringLiteral("text")))
        return {};
    WatchedApplication::settle();
    return { { Qt::Key_X, QStringLiteral("x"), {} }, { Qt::Key_Backspace, QString(), {} } };
}

/// One click on each of the opened plug-in's points.
std::vector<InputSender::Stroke> clicking(const OpenedProduct &product)
{
    auto *points = product.find<RealizationTreeWidget>("realizationTree");
    std::vector<InputSender::Stroke> strokes;
    for (int i = 0; i < pointsOfPlugin; ++i) {
        PointTreeWidgetItem *point = OpenedProduct::pointRow(points, openedPoint + QString::number(i));
        if (!point)
            return {};
        points->scrollToItem(point);
        const QPoint place = points->visualItemRect(point).center();
        strokes.push_back({ 0, QString(), points->viewport()->mapTo(product.widget(), place) });
    }
    WatchedApplication::settle();
    return strokes;
}

QJsonArray list(const std::vector<double> &values)
{
    QJsonArray array;
    for (const double value : values)
        array.append(value);
    return array;
}

} // namespace

QJsonObject Samples::scan(const QJsonObject &arguments)
{
    const int threads = arguments.value(QLatin1String("threads")).toInt();
    if (threads > 0)
        QThreadPool::globalInstance()->setMaxThreadCount(threads);
    const QString probe = arguments.value(QLatin1String("probe")).toString();
    OpenedProduct product;
    if (!product.open(arguments.value(QLatin1String("file")).toString()) || !product.becomesActive())
        return failure(QStringLiteral("the product can't be opened"));

    std::unique_ptr<InputSender> sender;
    if (probe == QLatin1String("typing") || probe == QLatin1String("clicking")) {
        const bool keys = probe == QLatin1String("typing");
        auto strokes = keys ? typing(product) : clicking(product);
        if (strokes.empty())
            return failure(QStringLiteral("nothing to type into or to click on"));
        sender = std::make_unique<InputSender>(
            product.widget()->windowHandle(), std::move(strokes), keys ? typingInterval : clickingInterval);
    }
    // Now and not before the process was started: the largest scan takes nearly as long as the host waits.
    HostMemory::fetch();
    TimerPause pause;
    const int nodesBefore = scannedNodes(product);
    const double bytesBefore = residentBytes();
    QEventLoop loop;
    qint64 finished = 0;
    QObject::connect(product.manager(), &SourceDataManager::scanFinished, &loop, [&] {
        finished = WatchedApplication::now();
        loop.quit();
    });
    if (sender)
        sender->start();
    if (probe == QLatin1String("timer"))
        pause.start();
    const qint64 started = WatchedApplication::now();
    product.startScan();
    loop.exec();
    if (sender)
        sender->finish();
    // What the end of the scan has left to do is part of the pause and of the memory.
    WatchedApplication::settle();
    const QJsonValue longestPause = probe == QLatin1String("timer") ? QJsonValue(pause.longest()) : QJsonValue();
    const double bytes = residentBytes() - bytesBefore;

    if (!rowsStand(product.manager()->availablePointsRoot(), product.find<RealizationTreeWidget>("realizationTree")))
        return failure(QStringLiteral("a point does not stand in the tree"));
    if (sender && (sender->lost() > 0 || sender->latencies().empty()))
        return failure(QStringLiteral("%1 events were lost").arg(sender->lost()));
    return {
        { QStringLiteral("wall"), double(finished - started) / 1e6 },
        { QStringLiteral("nodes"), scannedNodes(product) - nodesBefore },
        { QStringLiteral("bytes"), bytes },
        { QStringLiteral("stall"), longestPause },
        { QStringLiteral("latencies"), sender ? list(sender->latencies()) : QJsonArray() },
    };
}

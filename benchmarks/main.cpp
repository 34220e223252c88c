#include "core/workbenchstyle.h"
#include "product/products.h"
#include "report.h"
#include "samples/sample.h"
#include "suite.h"
#include "watchedapplication.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::uint32_t defaultSeed = 20'240'501;

/// The offscreen platform says of each window what it can't do.
void logWithoutPlatform(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

int answerSample(const QString &name, const QString &arguments)
{
    QLoggingCategory::setFilterRules(QStringLiteral("extpoint.*.info=false"));
    qInstallMessageHandler(logWithoutPlatform);
    const QJsonObject answer = Samples::run(name, QJsonDocument::fromJson(arguments.toUtf8()).object());
    std::fputs(QJsonDocument(answer).toJson(QJsonDocument::Compact).constData(), stdout);
    std::fflush(stdout);
    return EXIT_SUCCESS;
}

int fail(const QString &reason)
{
    std::fprintf(stderr, "extpoint-bench: %s\n", qPrintable(reason));
    return EXIT_FAILURE;
}

bool write(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

/// What the figures depend on.
QString circumstances()
{
    QFile load(QStringLiteral("/proc/loadavg"));
    const double running = load.open(QIODevice::ReadOnly) ? load.readAll().split(' ').first().toDouble() : 0;
    QString text = QStringLiteral("%1 cores, load %2, Qt %3, %4 build\n")
                       .arg(QThread::idealThreadCount())
                       .arg(running)
                       .arg(QLatin1String(qVersion()), QStringLiteral(EXTPOINT_BUILD_TYPE));
    if (running > 0.5)
        text += QStringLiteral("The machine is busy with other things: these figures say little.\n");
    return text;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    WatchedApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("--sample")) {
        // As the workbench has it; what ours is compared with has it, too.
        QApplication::setStyle(new Core::WorkbenchStyle);
        return answerSample(arguments.at(2), arguments.at(3));
    }

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the editor beside plain programs that do the same, and prints a table."));
    parser.addHelpOption();
    const QCommandLineOption quick(QStringLiteral("quick"), QStringLiteral("Small products, one round."));
    const QCommandLineOption json(
        QStringLiteral("json"), QStringLiteral("Write the figures to <file>, too."), QStringLiteral("file"));
    const QCommandLineOption place(QStringLiteral("directory"),
        QStringLiteral("Make the products below <directory>, on a real disk; 500 MB."), QStringLiteral("directory"),
        QDir::tempPath());
    const QCommandLineOption seed(
        QStringLiteral("seed"), QStringLiteral("Make other products."), QStringLiteral("number"));
    const QCommandLineOption product(QStringLiteral("product"),
        QStringLiteral("Only make a product of <count> plug-ins below the directory."), QStringLiteral("count"));
    const QCommandLineOption merged(
        QStringLiteral("merged"), QStringLiteral("Products in which no plug-in fills a tab of its own."));
    const QCommandLineOption rounds(QStringLiteral("rounds"),
        QStringLiteral("Measure <count> times; fewer than five times is a sketch."), QStringLiteral("count"));
    const QCommandLineOption only(QStringLiteral("only"),
        QStringLiteral("Measure nothing but <parts>, of scan,growth,file,views,edit,start,threads,merged."),
        QStringLiteral("parts"));
    parser.addOptions({ quick, json, place, seed, product, merged, rounds, only });
    parser.process(application);
    const std::uint32_t number = parser.isSet(seed) ? parser.value(seed).toUInt() : defaultSeed;

    const auto formats = parser.isSet(merged) ? Products::Formats::Merged : Products::Formats::MostlyOwn;

    if (parser.isSet(product)) {
        const QString opened = Products::write(parser.value(place), number, parser.value(product).toInt(), formats);
        if (opened.isEmpty())
            return fail(QStringLiteral("%1: the product can't be written").arg(parser.value(place)));
        std::printf("%s\n", qPrintable(opened));
        return EXIT_SUCCESS;
    }

    QTemporaryDir directory(parser.value(place) + QLatin1String("/extpoint-bench-XXXXXX"));
    if (!directory.isValid())
        return fail(QStringLiteral("%1: %2").arg(parser.value(place), directory.errorString()));
    const QString before = circumstances();
    Suite::Scale scale = parser.isSet(quick) ? Suite::Scale::quick() : Suite::Scale();
    if (parser.isSet(rounds))
        scale.rounds = qMax(1, parser.value(rounds).toInt());
    scale.formats = formats;
    scale.parts = parser.value(only).split(QLatin1Char(','), Qt::SkipEmptyParts);
    Suite suite(scale, directory.path(), number);
    Report report;
    if (!suite.run(&report))
        return fail(QStringLiteral("%1: the products can't be written").arg(directory.path()));
    std::printf("%s\n%s", qPrintable(before), qPrintable(report.table()));
    if (parser.isSet(json) && !write(parser.value(json), report.json()))
        return fail(QStringLiteral("%1 can't be written").arg(parser.value(json)));
    return report.hasFailures() ? EXIT_FAILURE : EXIT_SUCCESS;
}

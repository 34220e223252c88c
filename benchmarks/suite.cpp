#include "suite.h"

#include "pagecache.h"
#include "samples/parsers.h"
#include "samples/sample.h"
#include "statistics.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <unistd.h>

using Statistics::median;
using Statistics::medianRatio;

namespace {

constexpr int siblingsOfViews = 20;
// What takes a few milliseconds is measured more often: a single one says less.
constexpr int shortRounds = 3; // for each round
// Its limit is the narrowest.
constexpr int growthRounds = 2; // for each round
// Which product is scanned when in each of them. The small one, whose time differs most from one scan to the next, is
// scanned before and after every other one.
constexpr std::size_t growthOrder[] = { 0, 1, 0, 2, 0, 1, 0 };
constexpr int scansInRound = 3;
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
const QString ratio = QStringLiteral("ratio");
const QString milliseconds = QStringLiteral("ms");

std::vector<double> list(const QJsonValue &array)
{
    std::vector<double> values;
    const QJsonArray items = array.toArray();
    for (const QJsonValue &item : items)
        values.push_back(item.toDouble(nothing));
    return values;
}

void append(std::vector<double> *values, const std::vector<double> &more)
{
    values->insert(values->end(), more.begin(), more.end());
}

bool copyTree(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        return false;
    const QFileInfoList entries = QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    return std::all_of(entries.cbegin(), entries.cend(), [&](const QFileInfo &entry) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        return entry.isDir() ? copyTree(entry.filePath(), target) : QFile::copy(entry.filePath(), target);
    });
}

} // namespace

Suite::Scale Suite::Scale::quick()
{
    Scale scale;
    scale.rounds = 1;
    scale.plugins = 200;
    scale.smallPlugins = 50;
    scale.largePlugins = 800;
    scale.elements = 5000;
    scale.records = 200;
    scale.items = 500;
    scale.edits = 2;
    scale.emptyWholeCache = false;
    return scale;
}

Suite::Suite(const Scale &scale, const QString &directory, std::uint32_t seed)
    : m_scale(scale), m_directory(directory), m_seed(seed), m_processes(directory + QLatin1String("/home")),
      m_product(directory + QLatin1String("/product"))
{ }

bool Suite::run(Report *report)
{
    say(QStringLiteral("writing the products"));
    if (!writeProducts())
        return false;
    // What the disk is still busy with would be in the way of the first measurements.
    ::sync();
    const std::pair<const char *, void (Suite::*)(Report *)> parts[]
        = { { "scan", &Suite::measureScan }, { "growth", &Suite::measureGrowth }, { "file", &Suite::measureFile },
              { "views", &Suite::measureViews }, { "edit", &Suite::measureEditing }, { "start", &Suite::measureStart },
              { "threads", &Suite::measureThreadsAndCache }, { "merged", &Suite::measureTabs } };
    for (const auto &part : parts) {
        if (m_scale.parts.isEmpty() || m_scale.parts.contains(QLatin1String(part.first)))
            (this->*part.second)(report);
    }
    return true;
}

bool Suite::writeProducts()
{
    const auto place = [this](const char *name) { return m_directory + QLatin1Char('/') + QLatin1String(name); };
    m_opened = Products::write(m_product, m_seed, m_scale.plugins, m_scale.formats);
    m_openedSmall = Products::write(place("small"), m_seed, m_scale.smallPlugins, m_scale.formats);
    m_openedLarge = Products::write(place("large"), m_seed, m_scale.largePlugins, m_scale.formats);
    m_openedMerged = Products::write(place("merged"), m_seed, m_scale.plugins, Products::Formats::Merged);
    m_largeFile = Products::writeFile(place("file/large"), Products::large(m_seed, m_scale.elements));
    const bool siblings = !Products::write(place("views"), m_seed, siblingsOfViews).isEmpty();
    m_viewsFile = Products::writeFile(place("views/own"), Products::views(m_scale.records, m_scale.items));
    const QStringList files { m_opened, m_openedSmall, m_openedLarge, m_openedMerged, m_largeFile, m_viewsFile };
    return siblings && !files.contains(QString())
        && copyTree(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"), place("sample"));
}

void Suite::measureScan(Report *report)
{
    Values scan, stream, dom, pugixml, stall, idle, memory, typing, clicking, input;
    const QJsonObject opened { { QStringLiteral("file"), m_opened } };
    const auto probed = [&](const char *probe) {
        QJsonObject arguments = opened;
        arguments.insert(QStringLiteral("probe"), QLatin1String(probe));
        return m_processes.sample(QStringLiteral("scan"), arguments);
    };
    for (int round = 1; round <= m_scale.rounds; ++round) {
        say(QStringLiteral("scan, round %1 of %2").arg(round).arg(m_scale.rounds));
        for (int i = 0; i < scansInRound; ++i) {
            const QJsonObject plain = m_processes.sample(QStringLiteral("scan"), opened);
            if (Samples::failed(plain))
                say(plain.value(QLatin1String("error")).toString());
            scan.push_back(plain.value(QLatin1String("wall")).toDouble(nothing));
            memory.push_back(plain.value(QLatin1String("bytes")).toDouble(nothing)
                / plain.value(QLatin1String("nodes")).toDouble(nothing));
            stream.push_back(parseWall(m_product, QStringLiteral("stream")));
            dom.push_back(parseWall(m_product, QStringLiteral("dom")));
            if (Parsers::byName(QStringLiteral("pugixml")))
                pugixml.push_back(parseWall(m_product, QStringLiteral("pugixml")));
        }
        stall.push_back(probed("timer").value(QLatin1String("stall")).toDouble(nothing));
        idle.push_back(
            figure(QStringLiteral("idle"), { { QStringLiteral("directory"), m_product } }, QStringLiteral("stall")));
        Values ofRound;
        for (Values *latencies : { &typing, &clicking }) {
            const QJsonObject answer = probed(latencies == &typing ? "typing" : "clicking");
            if (Samples::failed(answer))
                say(answer.value(QLatin1String("error")).toString());
            const Values found = list(answer.value(QLatin1String("latencies")));
            latencies->push_back(Statistics::percentile(found, 95));
            append(&ofRound, found);
        }
        const bool both = !std::isnan(typing.back()) && !std::isnan(clicking.back());
        input.push_back(both ? Statistics::percentile(ofRound, 95) : nothing);
    }
    report->add(QStringLiteral("scan_wall_baseline_a"), medianRatio(scan, stream));
    report->add(QStringLiteral("scan_wall_baseline_b"), medianRatio(scan, dom));
    report->add(QStringLiteral("gui_during_the_scan"), median(stall));
    // Of each round, as the pause: one that the machine was held up in says nothing of the others.
    report->add(QStringLiteral("typing_and_clicking_during_the_scan"), median(input));
    report->add(QStringLiteral("memory_per_node_after_the_scan"), median(memory));

    const auto inform = [&](const char *name, const char *title, const QString &unit, double value) {
        report->addInformation(QLatin1String(name), QLatin1String(title), unit, value);
    };
    inform("scan_wall", "scan", milliseconds, median(scan));
    inform("baseline_a_wall", "stream reader over all files", milliseconds, median(stream));
    inform("baseline_b_wall", "DOM of all files", milliseconds, median(dom));
    inform("baseline_c_wall", "pugixml over all files", milliseconds, median(pugixml));
    inform("scan_wall_baseline_c", "scan / pugixml over all files", ratio, medianRatio(scan, pugixml));
    inform("gui_during_the_scan_worst_round", "scan: longest pause, worst round", milliseconds,
        Statistics::largest(stall));
    inform("gui_idle_while_two_threads_read", "longest pause of an idle GUI while two threads read", milliseconds,
        median(idle));
    inform("typing_during_the_scan", "scan: typing, 95th percentile", milliseconds, median(typing));
    inform("clicking_during_the_scan", "scan: clicking, 95th percentile", milliseconds, median(clicking));
    inform("typing_and_clicking_during_the_scan_worst_round", "scan: latency of input, worst round", milliseconds,
        Statistics::largest(input));
}

void Suite::measureGrowth(Report *report)
{
    const QStringList files { m_openedSmall, m_opened, m_openedLarge };
    std::vector<Values> perNode(std::size_t(files.size()));
    const int rounds = growthRounds * m_scale.rounds;
    for (int round = 1; round <= rounds; ++round) {
        say(QStringLiteral("growth, round %1 of %2").arg(round).arg(rounds));
        std::vector<Values> values(perNode.size());
        for (const std::size_t product : growthOrder) {
            const QJsonObject answer
                = m_processes.sample(QStringLiteral("scan"), { { QStringLiteral("file"), files.at(int(product)) } });
            values[product].push_back(answer.value(QLatin1String("wall")).toDouble(nothing)
                / answer.value(QLatin1String("nodes")).toDouble(nothing));
        }
        for (std::size_t product = 0; product < perNode.size(); ++product)
            perNode[product].push_back(median(values[product]));
    }
    const double middle = medianRatio(perNode[1], perNode[0]);
    const double large = medianRatio(perNode[2], perNode[0]);
    report->add(QStringLiteral("growth_500_2000_8000_plug_ins"), std::max(middle, large));
    report->addInformation(QStringLiteral("growth_to_2000_plug_ins"),
        QStringLiteral("scan: time per node, middle / small product"), ratio, middle);
    report->addInformation(QStringLiteral("growth_to_8000_plug_ins"),
        QStringLiteral("scan: time per node, large / small product"), ratio, large);
}

void Suite::measureFile(Report *report)
{
    Values open, dom;
    const QString directory = QFileInfo(QFileInfo(m_largeFile).path()).path();
    for (int round = 1; round <= m_scale.rounds; ++round) {
        say(QStringLiteral("large file, round %1 of %2").arg(round).arg(m_scale.rounds));
        open.push_back(
            figure(QStringLiteral("open"), { { QStringLiteral("file"), m_largeFile } }, QStringLiteral("wall")));
        dom.push_back(parseWall(directory, QStringLiteral("dom")));
    }
    report->add(QStringLiteral("open_a_single_file_of_50000_elements_until_painted"), medianRatio(open, dom));
    report->addInformation(
        QStringLiteral("open_wall"), QStringLiteral("open a large file until painted"), milliseconds, median(open));

    Values ours, domSave;
    for (int round = 1; round <= m_scale.rounds; ++round) {
        say(QStringLiteral("saving, round %1 of %2").arg(round).arg(m_scale.rounds));
        double bytes[2] = { 0, 0 };
        for (const bool asDom : { false, true }) {
            const QJsonObject saved = m_processes.sample(
                QStringLiteral("save"), { { QStringLiteral("file"), m_largeFile }, { QStringLiteral("dom"), asDom } });
            if (Samples::failed(saved)) {
                report->addFailure(QStringLiteral("save_that_file"), saved.value(QLatin1String("error")).toString());
                return;
            }
            (asDom ? domSave : ours).push_back(saved.value(QLatin1String("wall")).toDouble(nothing));
            bytes[asDom] = saved.value(QLatin1String("bytes")).toDouble();
        }
        // Escapes and the marks of translatable texts are all that may differ.
        if (std::abs(bytes[0] - bytes[1]) > bytes[0] / 10) {
            report->addFailure(QStringLiteral("save_that_file"), QStringLiteral("the files differ in length"));
            return;
        }
    }
    report->add(QStringLiteral("save_that_file"), medianRatio(ours, domSave));
    report->addInformation(QStringLiteral("save_wall"), QStringLiteral("save that file"), milliseconds, median(ours));
}

void Suite::measureViews(Report *report)
{
    const auto measure = [&](const char *sample, const char *name, const char *wallName, const char *wallTitle) {
        say(QLatin1String(sample));
        const QJsonObject answer = m_processes.sample(QLatin1String(sample),
            { { QStringLiteral("file"), m_viewsFile }, { QStringLiteral("rounds"), shortRounds * m_scale.rounds },
                { QStringLiteral("records"), m_scale.records }, { QStringLiteral("items"), m_scale.items } });
        if (Samples::failed(answer)) {
            report->addFailure(QLatin1String(name), answer.value(QLatin1String("error")).toString());
            return;
        }
        const Values ours = list(answer.value(QLatin1String("ours")));
        report->add(QLatin1String(name), medianRatio(ours, list(answer.value(QLatin1String("bare")))));
        report->addInformation(QLatin1String(wallName), QLatin1String(wallTitle), milliseconds, median(ours));
    };
    measure("click", "click_on_a_point_with_2000_records", "click_wall", "click on a point with many records");
    measure("tab", "switch_to_a_format_tab_with_5000_items", "tab_wall", "switch to a tab with many items");
}

void Suite::measureEditing(Report *report)
{
    say(QStringLiteral("editing"));
    const QString name = QStringLiteral("create_edit_delete_anything_in_the_loaded_product");
    const QJsonObject answer = m_processes.sample(
        QStringLiteral("edit"), { { QStringLiteral("file"), m_opened }, { QStringLiteral("rounds"), m_scale.edits } });
    if (Samples::failed(answer)) {
        report->addFailure(name, answer.value(QLatin1String("error")).toString());
        return;
    }
    const QJsonObject kinds = answer.value(QLatin1String("kinds")).toObject();
    Values all;
    for (const QJsonValue &kind : kinds)
        append(&all, list(kind));
    report->add(name, Statistics::percentile(all, 95));
    for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
        QString title = kind.key();
        title.replace(QLatin1Char('_'), QLatin1Char(' '));
        report->addInformation(kind.key(), QStringLiteral("%1, 95th percentile").arg(title), milliseconds,
            Statistics::percentile(list(kind.value()), 95));
    }
}

void Suite::measureStart(Report *report)
{
    const QString programs = QStringLiteral(EXTPOINT_BINARY_DIR "/");
    const QString sample = m_directory + QLatin1String("/sample/chartdesk/extension.xml");
    const auto workbench = [&] {
        return m_processes.startToPaint(
            programs + QLatin1String("bin/extpoint-workbench"), { sample }, QStringLiteral("ExtPointWidget"));
    };
    const auto empty
        = [&] { return m_processes.startToPaint(programs + QLatin1String("benchmarks/emptywindow"), {}, QString()); };
    say(QStringLiteral("start of the workbench"));
    // The first ones find nothing in memory and no settings.
    (void)workbench();
    (void)empty();
    Values ours, bare;
    for (int round = 0; round < shortRounds * m_scale.rounds; ++round) {
        ours.push_back(workbench());
        bare.push_back(empty());
    }
    report->add(QStringLiteral("start_of_the_workbench_to_first_paint_of_the_sample"), medianRatio(ours, bare));
    report->addInformation(
        QStringLiteral("start_wall"), QStringLiteral("start of the workbench"), milliseconds, median(ours));
    report->addInformation(
        QStringLiteral("empty_window_wall"), QStringLiteral("start of an empty window"), milliseconds, median(bare));
}

void Suite::measureThreadsAndCache(Report *report)
{
    Values one, two, four, cold, coldStream;
    PageCache::Emptied emptied = PageCache::Emptied::Files;
    for (int round = 1; round <= m_scale.rounds; ++round) {
        say(QStringLiteral("threads and cache, round %1 of %2").arg(round).arg(m_scale.rounds));
        one.push_back(scanWall(m_opened, 1));
        two.push_back(scanWall(m_opened, 2));
        four.push_back(scanWall(m_opened, 4));
        emptied = PageCache::forget(m_product, m_scale.emptyWholeCache);
        cold.push_back(scanWall(m_opened));
        emptied = PageCache::forget(m_product, m_scale.emptyWholeCache);
        coldStream.push_back(parseWall(m_product, QStringLiteral("stream")));
    }
    const auto inform = [&](const char *name, const QString &title, double value) {
        report->addInformation(QLatin1String(name), title, milliseconds, value);
    };
    inform("scan_wall_1_thread", QStringLiteral("scan with 1 pool thread"), median(one));
    inform("scan_wall_2_threads", QStringLiteral("scan with 2 pool threads"), median(two));
    inform("scan_wall_4_threads", QStringLiteral("scan with 4 pool threads"), median(four));
    const QString how = emptied == PageCache::Emptied::Whole ? QStringLiteral("page cache emptied")
                                                             : QStringLiteral("files out of the page cache");
    inform("scan_wall_cold", QStringLiteral("scan, %1").arg(how), median(cold));
    inform("baseline_a_wall_cold", QStringLiteral("stream reader, %1").arg(how), median(coldStream));
    report->addInformation(QStringLiteral("scan_wall_baseline_a_cold"),
        QStringLiteral("scan / stream reader, %1").arg(how), ratio, medianRatio(cold, coldStream));
}

void Suite::measureTabs(Report *report)
{
    Values merged;
    for (int round = 1; round <= m_scale.rounds; ++round) {
        say(QStringLiteral("merged formats, round %1 of %2").arg(round).arg(m_scale.rounds));
        merged.push_back(scanWall(m_openedMerged));
    }
    report->addInformation(QStringLiteral("scan_wall_merged_formats"),
        QStringLiteral("scan of a product with a few merged formats"), milliseconds, median(merged));
}

double Suite::figure(const QString &sample, const QJsonObject &arguments, const QString &figure) const
{
    const QJsonObject answer = m_processes.sample(sample, arguments);
    if (Samples::failed(answer))
        say(answer.value(QLatin1String("error")).toString());
    return answer.value(figure).toDouble(nothing);
}

double Suite::scanWall(const QString &file, int threads) const
{
    return figure(QStringLiteral("scan"), { { QStringLiteral("file"), file }, { QStringLiteral("threads"), threads } },
        QStringLiteral("wall"));
}

double Suite::parseWall(const QString &directory, const QString &parser) const
{
    return figure(QStringLiteral("parse"),
        { { QStringLiteral("directory"), directory }, { QStringLiteral("parser"), parser } }, QStringLiteral("wall"));
}

void Suite::say(const QString &what) const
{
    std::fprintf(stderr, "%s\n", qPrintable(what));
}

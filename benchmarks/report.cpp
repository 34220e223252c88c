#include "report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

struct Target
{
    const char *name;
    const char *title;
    const char *unit;
    double must;
    double aim;
};

constexpr char ratio[] = "ratio";
constexpr char milliseconds[] = "ms";

constexpr Target targets[] = {
    { "scan_wall_baseline_a", "scan / stream reader over all files", ratio, 2.0, 1.0 },
    { "scan_wall_baseline_b", "scan / DOM of all files", ratio, 0.7, 0.4 },
    { "gui_during_the_scan", "scan: longest pause of a 1 ms timer", milliseconds, 50, 16 },
    { "typing_and_clicking_during_the_scan", "scan: latency of input, 95th percentile", milliseconds, 16, 8 },
    { "memory_per_node_after_the_scan", "scan: resident growth per node", "bytes", 900, 650 },
    { "growth_500_2000_8000_plug_ins", "scan: time per node, relative to the small product", ratio, 1.15, 1.05 },
    { "open_a_single_file_of_50000_elements_until_painted", "open a large file until painted / DOM", ratio, 1.0, 0.6 },
    { "save_that_file", "save that file / DOM built and saved", ratio, 0.6, 0.3 },
    { "click_on_a_point_with_2000_records", "click on a point with many records / bare table", ratio, 1.3, 0.5 },
    { "switch_to_a_format_tab_with_5000_items", "switch to a tab with many items / bare tree", ratio, 2.0, 1.3 },
    { "create_edit_delete_anything_in_the_loaded_product", "create, edit, delete: 95th percentile", milliseconds, 25,
        16 },
    { "start_of_the_workbench_to_first_paint_of_the_sample", "start to first paint / empty window", ratio, 3.0, 2.0 },
};

QString figure(const std::optional<double> &value)
{
    if (!value)
        return QStringLiteral("-");
    const double size = std::abs(*value);
    return QString::number(*value, 'f', size >= 1000 ? 0 : size >= 100 ? 1 : size >= 10 ? 2 : 3);
}

QString limit(const std::optional<double> &value)
{
    return value ? QString::number(*value) : QString();
}

QJsonValue json(const std::optional<double> &value)
{
    return value ? QJsonValue(*value) : QJsonValue();
}

} // namespace

std::optional<bool> Report::Row::met() const
{
    if (!must)
        return std::nullopt;
    return value && *value <= *must;
}

void Report::add(const QString &name, double value)
{
    Row row = rowOf(name);
    if (std::isfinite(value))
        row.value = value;
    else
        row.failure = QStringLiteral("no measurement");
    m_rows.push_back(row);
}

void Report::addInformation(const QString &name, const QString &title, const QString &unit, double value)
{
    Row row;
    row.name = name;
    row.title = title;
    row.unit = unit;
    if (std::isfinite(value))
        row.value = value;
    m_rows.push_back(row);
}

void Report::addFailure(const QString &name, const QString &reason)
{
    Row row = rowOf(name);
    row.failure = reason;
    m_rows.push_back(row);
}

bool Report::hasFailures() const
{
    return std::any_of(m_rows.cbegin(), m_rows.cend(), [](const Row &row) { return !row.failure.isEmpty(); });
}

std::vector<QString> Report::targetNames()
{
    std::vector<QString> names;
    for (const Target &target : targets)
        names.push_back(QLatin1String(target.name));
    return names;
}

Report::Row Report::rowOf(const QString &name)
{
    for (const Target &target : targets) {
        if (name != QLatin1String(target.name))
            continue;
        Row row;
        row.name = name;
        row.title = QLatin1String(target.title);
        row.unit = QLatin1String(target.unit);
        row.must = target.must;
        row.aim = target.aim;
        return row;
    }
    qFatal("no target is named %s", qPrintable(name));
    return {};
}

QString Report::table() const
{
    const QString layout = QStringLiteral("%1 %2 %3 %4 %5  %6\n");
    const auto line = [&](const QString &title, const QString &value, const QString &unit, const QString &must,
                          const QString &aim, const QString &met) {
        return layout.arg(title, -56).arg(value, 10).arg(unit, -6).arg(must, 6).arg(aim, 6).arg(met);
    };
    QString text = line(QStringLiteral("what"), QStringLiteral("value"), QStringLiteral("unit"), QStringLiteral("must"),
        QStringLiteral("aim"), QStringLiteral("met"));
    const auto add = [&](const Row &row) {
        QString met;
        if (row.met())
            met = !*row.met()            ? QStringLiteral("NO")
                : *row.value <= *row.aim ? QStringLiteral("aim")
                                         : QStringLiteral("yes");
        if (!row.failure.isEmpty())
            met += QLatin1String("  ") + row.failure;
        text += line(row.title, figure(row.value), row.unit, limit(row.must), limit(row.aim), met);
    };
    for (const bool targeted : { true, false }) {
        if (!targeted)
            text += QLatin1Char('\n');
        for (const Row &row : m_rows) {
            if (row.must.has_value() == targeted)
                add(row);
        }
    }
    return text;
}

QByteArray Report::json() const
{
    QJsonArray list;
    for (const Row &row : m_rows) {
        list.append(QJsonObject {
            { QStringLiteral("name"), row.name },
            { QStringLiteral("value"), ::json(row.value) },
            { QStringLiteral("unit"), row.unit },
            { QStringLiteral("must"), ::json(row.must) },
            { QStringLiteral("aim"), ::json(row.aim) },
            { QStringLiteral("met"), row.met() ? QJsonValue(*row.met()) : QJsonValue() },
        });
    }
    return QJsonDocument(list).toJson();
}

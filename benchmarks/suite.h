#pragma once

#include "processes.h"
#include "product/products.h"
#include "report.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

/// All measurements of one run: makes the products, lets ours and the baselines take turns, and enters the medians in
/// the report. Used once, on the GUI thread of the program that measures.
class Suite final
{
public:
    struct Scale
    {
        int rounds = 5;
        int plugins = 2000;
        int smallPlugins = 500;
        int largePlugins = 8000;
        int elements = 50'000; ///< of the single file
        int records = 2000;
        int items = 5000;
        int edits = 40; ///< rounds of editing
        bool emptyWholeCache = true;
        Products::Formats formats = Products::Formats::MostlyOwn;
        QStringList parts; ///< names of what is measured; everything when empty

        /// Enough to see that everything works.
        [[nodiscard]] static Scale quick();
    };

    /// @p directory is empty and takes the products.
    Suite(const Scale &scale, const QString &directory, std::uint32_t seed);

    /// False when the products can't be written; what can't be measured stands in the report.
    [[nodiscard]] bool run(Report *report);

private:
    using Values = std::vector<double>;

    [[nodiscard]] bool writeProducts();
    void measureScan(Report *report);
    void measureGrowth(Report *report);
    void measureThreadsAndCache(Report *report);
    void measureTabs(Report *report);
    void measureFile(Report *report);
    void measureViews(Report *report);
    void measureEditing(Report *report);
    void measureStart(Report *report);

    /// The figure @p figure of a sample's answer; NaN, with the reason on the standard error, when there is none.
    [[nodiscard]] double figure(const QString &sample, const QJsonObject &arguments, const QString &figure) const;
    [[nodiscard]] double scanWall(const QString &file, int threads = 0) const;
    [[nodiscard]] double parseWall(const QString &directory, const QString &parser) const;
    void say(const QString &what) const;

    Scale m_scale;
    QString m_directory;
    std::uint32_t m_seed;
    Processes m_processes;
    QString m_product;
    QString m_opened;
    QString m_openedSmall;
    QString m_openedLarge;
    QString m_openedMerged;
    QString m_largeFile;
    QString m_viewsFile;
};

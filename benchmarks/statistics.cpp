#include "statistics.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <utility>

namespace {

constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

} // namespace

double Statistics::median(std::vector<double> values)
{
    const auto isMissing = [](double value) { return std::isnan(value); };
    if (values.empty() || std::any_of(values.cbegin(), values.cend(), isMissing))
        return nothing;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double Statistics::medianRatio(const std::vector<double> &values, const std::vector<double> &baselines)
{
    if (values.size() != baselines.size())
        return nothing;
    std::vector<double> ratios;
    std::transform(values.cbegin(), values.cend(), baselines.cbegin(), std::back_inserter(ratios), std::divides<>());
    return median(std::move(ratios));
}

double Statistics::percentile(std::vector<double> values, double percent)
{
    if (values.empty())
        return nothing;
    std::sort(values.begin(), values.end());
    const double rank = std::ceil(percent / 100 * double(values.size()));
    return values[std::size_t(std::clamp(rank, 1.0, double(values.size()))) - 1];
}

double Statistics::largest(const std::vector<double> &values)
{
    return values.empty() ? nothing : *std::max_element(values.begin(), values.end());
}

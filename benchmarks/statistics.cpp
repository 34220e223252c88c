#include "statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

} // namespace

double Statistics::median(std::vector<double> values)
{
    if (values.empty())
        return nothing;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
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

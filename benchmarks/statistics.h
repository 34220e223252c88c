#pragma once

#include <vector>

/// What is said of repeated measurements. Pure functions; any thread.
namespace Statistics {

/// The middle value, or the mean of the two middle ones; NaN of nothing, or when one is NaN: what failed once is not
/// measured.
[[nodiscard]] double median(std::vector<double> values);

/// The median of how many times its baseline each value is. The two of a pair were measured one after the other, so
/// that a machine that is slow for a while is so for both. NaN of nothing, or where one has no counterpart.
[[nodiscard]] double medianRatio(const std::vector<double> &values, const std::vector<double> &baselines);

/// The smallest value that at least @p percent of all do not exceed, @p percent in 0..100; NaN of nothing.
[[nodiscard]] double percentile(std::vector<double> values, double percent);

/// The largest value; NaN of nothing.
[[nodiscard]] double largest(const std::vector<double> &values);

} // namespace Statistics

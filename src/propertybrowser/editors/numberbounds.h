#pragma once

#include <optional>

class PropertyItem;
class QString;

/// The "min", "max" and "decimals" of a row of numbers. Absent and empty ones, and what is no number, limit nothing.
namespace NumberBounds {

[[nodiscard]] std::optional<double> bound(const PropertyItem &item, const QString &key);
[[nodiscard]] bool contain(const PropertyItem &item, double number);
/// "A whole number" with the bounds that there are, for the user.
[[nodiscard]] QString hint(const PropertyItem &item, const QString &kind);

} // namespace NumberBounds

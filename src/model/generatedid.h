#pragma once

#include <QString>

/// Names for nodes that the user makes by dragging or from a menu.
namespace GeneratedId {

/// @p pluginId, ".", @p text and a number from 0 to 9999 without leading zeros. The generator is seeded with the second
/// of the day on every call: two names made within one second have the same number, and nobody checks whether a name is
/// taken.
[[nodiscard]] QString make(const QString &pluginId, const QString &text);

} // namespace GeneratedId

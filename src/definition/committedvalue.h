#pragma once

#include <QVariant>

/// What becomes of a value when a person commits it.
namespace CommittedValue {

/// White space around a text never comes back from a file, so it does not enter the model either. Anything but a text
/// stays as it is.
[[nodiscard]] QVariant of(const QVariant &typed);

} // namespace CommittedValue

#pragma once

#include <QString>

struct OwnChange;

namespace PointEditor::Internal::ChangeTexts {

/// One sentence in the past tense, without a full stop; empty where nothing was changed.
[[nodiscard]] QString of(const OwnChange &change);

} // namespace PointEditor::Internal::ChangeTexts

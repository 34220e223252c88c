#pragma once

#include "hostinterfaces.h"
#include "model/savereport.h"

namespace PointEditor::Internal::SaveReportTexts {

/// What the host shows of @p report.
[[nodiscard]] Core::SaveReport of(const ::SaveReport &report);

} // namespace PointEditor::Internal::SaveReportTexts

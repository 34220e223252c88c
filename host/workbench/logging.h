#pragma once

namespace Workbench {

/// What the process logs to the standard error stream: warnings, with nothing around their text; or, \a verbose,
/// everything, with time and category.
void setUpLogging(bool verbose);

} // namespace Workbench

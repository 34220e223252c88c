#pragma once

namespace Workbench {

/// What the process logs to the standard error stream: warnings, with nothing around their text; or
/// @p everything, with time and category. A message is one line, whatever the names of files in it hold.
void setUpLogging(bool everything);

} // namespace Workbench

#pragma once

namespace Workbench {

/// What the process logs to the standard error stream: warnings, with nothing around their text; or, \a verbose,
/// everything, with time and category. A run that \a isJob ends when a thread is refused to it (outofmeans.h); with
/// somebody at the window, who can still save, it goes on.
void setUpLogging(bool verbose, bool isJob);

} // namespace Workbench

#pragma once

namespace Workbench {

/// Has the process end at once, with one line on the standard error output and EXIT_FAILURE, when there is no memory to
/// be had. Nothing can be brought to a good end then; what is not saved is in its recovery copy, and files are
/// exchanged whole. Call it once, before any thread is started.
void endWhenOutOfMemory();

} // namespace Workbench

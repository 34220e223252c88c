#pragma once

#include <QString>

namespace Workbench {

/// Has the process end at once, with one line on the standard error output and EXIT_FAILURE, when there is no memory to
/// be had. Nothing can be brought to a good end then; what is not saved is in its recovery copy, and files are
/// exchanged whole. Call it once, before any thread is started.
void endWhenOutOfMemory();

/// Ends the process in the same way when `message` is Qt's, that a thread could not be started: what the thread was to
/// do is lost without any other sign, and whoever waits for it waits for ever. Any thread.
void endIfThreadWasRefused(const QString &message);

} // namespace Workbench

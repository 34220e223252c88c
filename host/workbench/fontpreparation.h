#pragma once

#include <QtGlobal>

#include <thread>

namespace Workbench {

/// Reads the font configuration of the system on a thread of its own, while the program loads its plug-ins. The first
/// widget needs it, and would take longer over it than over anything else before the window appears.
class FontPreparation final
{
public:
    /// Begins. Write nothing to the environment from here to finish(), for fontconfig reads it. (On X11 the toolkit takes
    /// DESKTOP_STARTUP_ID away meanwhile. At the very worst a variable next to it is not seen this time.)
    FontPreparation();
    /// As finish().
    ~FontPreparation();
    Q_DISABLE_COPY_MOVE(FontPreparation)

    /// Waits for the end: who asks fontconfig while it is still reading reads everything once more. Main thread.
    void finish();

private:
    std::thread m_thread;
};

} // namespace Workbench

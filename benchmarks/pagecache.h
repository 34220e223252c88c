#pragma once

#include <QString>

/// Puts files out of the system's memory, so that the next reading goes to the disk.
namespace PageCache {

enum class Emptied {
    Whole, ///< names and contents of everything
    Files  ///< the contents of the files alone: only root may do more
};

/// Forgets the extension files of the plug-ins in @p directory. With @p whole it tries the whole cache first, which
/// every program of the machine feels.
Emptied forget(const QString &directory, bool whole);

} // namespace PageCache

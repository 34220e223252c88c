#pragma once

#include "core/core_global.h"

namespace Core {

/// Gives the whole application the style "Fusion" with a dark palette.
CORE_EXPORT void useDarkPalette();

} // namespace Core

#pragma once

namespace Core {

/// Gives the whole application the style "Fusion" with a dark palette.
void useDarkPalette();

} // namespace Core

#pragma once

#include "core/core_global.h"

#include <QColor>
#include <QPalette>

namespace Core {

/// How much one stands out from the other: 1 to 21, as the Web Content Accessibility Guidelines 2.1 define it.
[[nodiscard]] CORE_EXPORT double contrast(const QColor &left, const QColor &right);
/// @p ink, moved towards black or white until it stands out from @p ground by @p least.
[[nodiscard]] QColor standingOut(const QColor &ink, const QColor &ground, double least);

/// What is to be read has at least this, what only marks at least that; the figures are those of the guidelines.
constexpr double readableContrast = 4.5;
constexpr double visibleContrast = 3.0;

/// @p palette, with every text readable on each ground that it stands on, disabled ones and hints included, and with a
/// selection in a window or view without the focus that looks like none of those.
[[nodiscard]] CORE_EXPORT QPalette readable(QPalette palette);

/// The program's own dark colours.
[[nodiscard]] CORE_EXPORT QPalette darkPalette();

} // namespace Core

#pragma once

#include <QStringList>

namespace RealizationTesting {

class Page;

/// Everything that a person sees of an opened product, and everything that what they do next would go by, a line each:
/// all rows and texts, the table of every point, the sheet of every row, menus, buttons, tabs, indexes and definitions.
/// Looking goes through everything with clicks, and so stores what a click stores.
[[nodiscard]] QStringList everything(Page &page);

/// What is on the screen right now, and the same after each part has been shown anew.
[[nodiscard]] QStringList shownNow(Page &page);
[[nodiscard]] QStringList shownAnew(Page &page);

} // namespace RealizationTesting

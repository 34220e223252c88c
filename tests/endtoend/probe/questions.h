#pragma once

#include <QJsonObject>

/// What the probe answers, on the GUI thread. A question that has no answer gets one with "error"; the tests ask again
/// until there is one or their patience ends.
namespace Probe {

/// The main window ("modified", "exposed", "active", "status", "editor"), "busy", "dragging", the number of the
/// "activeWindow", what has the "focus", and the "name" and "text" of the visible "dialogs", the one in front last.
[[nodiscard]] QJsonObject state(const QJsonObject &request);
/// What the widget of this name shows, as "lines": the texts of tabs; the rows of a tree, a level indented by four
/// spaces, or of a table, the cells divided by " | "; or "name = value" for each row of a sheet. "icons" has, row by
/// row, what is in the middle of the icons: the colour, or the name of an icon that has one.
[[nodiscard]] QJsonObject lines(const QJsonObject &request);
/// Where something is: "rect" as [x, y, width, height] in pixels of the screen, cut to what can be seen of it, and
/// "reachable": whether a click in its middle arrives there, and it is painted at all. What has to be scrolled to comes
/// with the button of the "wheel" that does it, and the place of the wheel "over" it. A widget has its "value", too.
[[nodiscard]] QJsonObject place(const QJsonObject &request);

} // namespace Probe

#pragma once

#include <QJsonObject>

/// Questions about windows, dialogs, menus, tabs and single widgets.
namespace Probe {

/// The main window ("title", "modified", "active", "status"), "busy", "dragging", "menuOpen", the number of
/// the window that has the focus, and what has it inside.
[[nodiscard]] QJsonObject state(const QJsonObject &request);
/// Every visible dialog with its texts and buttons, the one in front last.
[[nodiscard]] QJsonObject dialogs(const QJsonObject &request);
/// The entries of the menu bar and of every open menu, with their places.
[[nodiscard]] QJsonObject menus(const QJsonObject &request);
/// Place, value and state of the widget.
[[nodiscard]] QJsonObject widget(const QJsonObject &request);
/// Place of the tab with the text "tab", and of the whole "bar"; "outside" while it has to be scrolled to.
[[nodiscard]] QJsonObject tab(const QJsonObject &request);
/// The texts of all tabs, the names of their pages, and which is the current one.
[[nodiscard]] QJsonObject tabs(const QJsonObject &request);

} // namespace Probe

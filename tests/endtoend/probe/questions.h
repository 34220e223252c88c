#pragma once

#include <QJsonObject>

class QWidget;

/// What the questions of the probe have in common. All run on the GUI thread.
namespace Probe {

/// The reply to a question that has no answer; the tests ask again until there is one or their patience ends.
[[nodiscard]] QJsonObject error(const QString &reason);

/// The widget that the request names ("widget"), a visible one where several have the name; null when there is none.
[[nodiscard]] QWidget *find(const QJsonObject &request);
[[nodiscard]] QJsonObject notFound(const QJsonObject &request);

/// A part of a widget on the screen: "rect" as [x, y, width, height] in pixels of the screen, cut to what can be seen
/// of it, and "reachable": whether a click in its middle arrives there, and it is painted at all.
[[nodiscard]] QJsonObject place(const QWidget *widget, const QRect &part);

/// What an input widget holds: its text, "true" or "false" for something to check.
[[nodiscard]] QString valueOf(const QWidget *widget);

/// A text as it is read, without the marks of its shortcut.
[[nodiscard]] QString withoutMnemonic(QString text);

} // namespace Probe

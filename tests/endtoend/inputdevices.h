#pragma once

#include <QPoint>
#include <QString>
#include <QVector>

/// The pointer and the keyboard of the X server that DISPLAY names. What they do reaches the program the way a person's
/// hand does, through the server and the window manager. Every function returns false when it could not be done.
namespace InputDevices {

/// To be called once before anything else. The server tells everybody of a new keyboard when its first key is pressed,
/// and while the window manager takes that in, its own keys don't work.
[[nodiscard]] bool plugIn();
[[nodiscard]] bool move(QPoint to);
/// The buttons as X counts them: 1 left, 2 middle, 3 right, 4 wheel up, 5 wheel down.
[[nodiscard]] bool click(QPoint at, int button = 1);
[[nodiscard]] bool press(QPoint at);
[[nodiscard]] bool release();
/// Moves along the points in steps that a hand could make.
[[nodiscard]] bool moveAlong(const QVector<QPoint> &points);
/// As "Return", "ctrl+s".
[[nodiscard]] bool key(const QString &name);
[[nodiscard]] bool type(const QString &text);
/// The number of the window that has the focus, as the window manager sees it; 0 when there is none.
[[nodiscard]] qint64 activeWindow();
/// The title of that window, as the window manager shows it.
[[nodiscard]] QString activeTitle();
/// Whether it has a property of this name.
[[nodiscard]] bool activeWindowHas(const QString &property);
/// Has the server end its connection to the program of that window, as its own end would.
[[nodiscard]] bool cutOffActiveWindow();
/// Writes a picture of the whole screen.
[[nodiscard]] bool takePicture(const QString &path);

} // namespace InputDevices

#pragma once

#include <QString>
#include <QVector>

/// Texts of a fixed count of whole numbers with separators between them, such as "10,20 640x480". Blanks, commas,
/// semicolons and "x" separate, whichever are used.
namespace NumberList {

/// Empty when the text is anything but @p count numbers in the range of an int.
[[nodiscard]] QVector<int> parse(const QString &text, int count);
/// @p pattern with its numbers replaced in order; what stands between them stays. It must have as many numbers.
[[nodiscard]] QString withNumbers(const QString &pattern, const QVector<int> &numbers);
/// Moves the number at @p cursor on; false, and nothing changed, when the text is no list or the number can't move.
[[nodiscard]] bool step(QString *text, int count, int cursor, int steps);

} // namespace NumberList

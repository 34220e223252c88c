#pragma once

#include <QtGlobal>

/// The width of the first of two columns that share @p room (pixels all): what the content of both wants where there is
/// room for it, and of what is over, or of what there is, three fifths; the rest is the second one's.
[[nodiscard]] inline int firstOfTwoColumns(int room, int firstWants, int secondWants)
{
    constexpr int part = 3;
    constexpr int parts = 5;
    const int over = room - firstWants - secondWants;
    if (over >= 0)
        return firstWants + over * part / parts;
    return qMin(firstWants, qMax(room * part / parts, room - secondWants));
}

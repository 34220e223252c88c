#pragma once

#include "form/drops/dropplan.h"
#include "realizationpage.h"

#include <QRandomGenerator>
#include <QVector>

#include <algorithm>

namespace RealizationTesting {

/// What the three zones of a row mean, told by nothing but what is shown: each row a depth and an id whose second
/// letter is the kind; "t" begins the ids of the sibling's. An "a" takes "a" and "b", so does the root, which takes a
/// point of a kind only once; a "b" takes nothing.
class Zones final
{
public:
    struct Line
    {
        int depth;
        QString id;
        bool operator==(const Line &other) const { return depth == other.depth && id == other.id; }
    };
    using Lines = QVector<Line>;

    static Lines of(const Page &page)
    {
        Lines lines;
        for (const QString &text : page.formatLines()) {
            const QString id = text.trimmed();
            lines.append({ (text.size() - id.size()) / 2, id.startsWith(s("own.")) ? s("n") + id.mid(4, 1) : id });
        }
        return lines;
    }

    /// Drops @p id, which stands at @p from with an entry; @p editable as the tab is.
    Zones(const Lines &lines, int from, const QString &id, bool isPoint, int onto, int eighth, bool editable)
    {
        const QChar kind = id.at(1);
        const bool isEntry = from >= 0;
        if (isEntry
            && (from == 0 || !editable || id.startsWith(QLatin1Char('t')) || (onto >= from && onto < end(lines, from))))
            return;
        const auto takes = [&](int row) {
            return row == 0 ? !isPoint || !hasChild(lines, kind) : lines.at(row).id.at(1) == QLatin1Char('a');
        };
        const bool beside
            = editable && onto > 0 && !lines.at(onto).id.startsWith(QLatin1Char('t')) && takes(above(lines, onto));
        // In eighths of the row. On a row that takes nothing an entry goes before it, but for the lower quarter.
        if (beside && eighth < (takes(onto) ? 2 : isEntry ? 6 : 3))
            place = DropPlan::Place::Before;
        else if (beside && eighth >= (takes(onto) || isEntry ? 6 : 5))
            place = DropPlan::Place::After;
        else if (takes(onto))
            place = DropPlan::Place::Into;
        else
            return;
        const int last = isEntry ? end(lines, from) : from;
        const Lines moved = isEntry ? lines.mid(from, last - from) : Lines { { 0, id } };
        const bool isInto = place == DropPlan::Place::Into;
        const int shift = lines.at(onto).depth + (isInto ? 1 : 0) - moved.first().depth;
        const int at = place == DropPlan::Place::Before ? onto : end(lines, onto);
        for (int i = 0; i <= lines.size(); ++i) {
            for (int k = 0; i == at && k < moved.size(); ++k)
                expected.append({ moved.at(k).depth + shift, moved.at(k).id });
            if (i < lines.size() && (!isEntry || i < from || i >= last))
                expected.append(lines.at(i));
        }
    }

    DropPlan::Place place = DropPlan::Place::Nothing;
    Lines expected; ///< with "into" only but for the order in which rows stand under one

    /// The lines of those that stand under one in the order of their ids, each with what stands under it.
    static QStringList unordered(const Lines &lines, int row = 0)
    {
        QStringList parts;
        for (int i = row + 1; i < end(lines, row); i = end(lines, i))
            parts.append(lines.at(i).id + s("(") + unordered(lines, i).join(s(" ")) + s(")"));
        parts.sort();
        return parts;
    }

private:
    static int end(const Lines &lines, int row)
    {
        int end = row + 1;
        while (end < lines.size() && lines.at(end).depth > lines.at(row).depth)
            ++end;
        return end;
    }
    static int above(const Lines &lines, int row)
    {
        int above = row;
        while (lines.at(above).depth >= lines.at(row).depth)
            --above;
        return above;
    }
    static bool hasChild(const Lines &lines, QChar kind)
    {
        return std::any_of(lines.cbegin(), lines.cend(),
            [kind](const Line &line) { return line.depth == 1 && line.id.at(1) == kind; });
    }
};

/// Elements "a" and "b" with the ids "@p prefix kind number", up to three under each "a", @p depth levels below these;
/// of the first level each with this @p parent.
inline QByteArray randomEntries(
    QRandomGenerator &random, const char *prefix, int *number, int depth, const QByteArray &parent = {})
{
    QByteArray entries;
    for (int left = 1 + random.bounded(3); left > 0; --left) {
        const QByteArray kind = random.bounded(2) ? "a" : "b";
        entries += "<" + kind + " id='" + prefix + kind + QByteArray::number(++*number) + "'"
            + (parent.isEmpty() ? QByteArray() : " parent='" + parent + "'") + ">"
            + (kind == "a" && depth > 0 ? randomEntries(random, prefix, number, depth - 1) : QByteArray()) + "</" + kind
            + ">";
    }
    return entries;
}

} // namespace RealizationTesting

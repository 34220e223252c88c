#include "gridlines.h"

#include <QHeaderView>
#include <QPainter>
#include <QTableView>
#include <QVector>

#include <utility>

namespace {

QColor colorOf(const QTableView &table)
{
    QStyleOptionViewItem option;
    option.initFrom(&table);
    return QColor(QRgb(table.style()->styleHint(QStyle::SH_Table_GridLineColor, &option, &table)));
}

/// Where the lines behind the sections are that meet the pixels from @p first to @p last, which are the cells'.
QVector<int> linesOf(const QHeaderView &header, int first, int last, bool backwards)
{
    QVector<int> lines;
    int visual = header.visualIndexAt(first);
    int end = header.visualIndexAt(last);
    if (visual < 0 || end < 0)
        return lines;
    if (visual > end)
        std::swap(visual, end);
    for (; visual <= end; ++visual) {
        const int section = header.logicalIndex(visual);
        if (!header.isSectionHidden(section))
            lines.append(header.sectionViewportPosition(section) + (backwards ? 0 : header.sectionSize(section) - 1));
    }
    return lines;
}

} // namespace

void GridLines::paint(QTableView *table, const QRegion &dirty)
{
    const QHeaderView &columns = *table->horizontalHeader();
    const QHeaderView &rows = *table->verticalHeader();
    const bool backwards = table->isRightToLeft();
    const QRect viewport = table->viewport()->rect();
    QRect cells(0, 0, columns.length() - columns.offset(), rows.length() - rows.offset());
    if (backwards)
        cells.moveLeft(viewport.width() - cells.width());
    const QColor color = colorOf(*table);
    QPainter painter(table->viewport());
    for (const QRect &part : dirty) {
        const QRect seen = part & cells & viewport;
        if (seen.isEmpty())
            continue;
        // Within a clip of one rectangle a line is filled at once.
        painter.setClipRect(seen);
        const QVector<int> columnLines = linesOf(columns, seen.left(), seen.right(), backwards);
        for (int x : columnLines)
            painter.fillRect(x, seen.top(), 1, seen.height(), color);
        const QVector<int> rowLines = linesOf(rows, seen.top(), seen.bottom(), false);
        for (int y : rowLines)
            painter.fillRect(seen.left(), y, seen.width(), 1, color);
    }
}

#pragma once

class QRegion;
class QTableView;

/// The lines between the cells of a table. The table itself strokes them, pixel by pixel where widgets cover cells, and
/// spends as much on them as on all that stands in the cells.
namespace GridLines {

/// Paints them into @p dirty, as solid as the table would. To be called at the end of its paintEvent(); the table has
/// the grid style Qt::NoPen, so that it leaves room for the lines but draws none. GUI thread.
void paint(QTableView *table, const QRegion &dirty);

} // namespace GridLines

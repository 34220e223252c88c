#pragma once

#include "dropplan.h"

#include <QRect>

class QPainter;
class QPalette;
class QWidget;

/// Paints over a view what a drop would do. GUI thread.
namespace DropMark {

/// A frame around @p row for "into", a line along its top for "before" and along its bottom for "after", a muted dashed
/// outline with a bar through its end for "nothing"; @p row is in viewport coordinates. Nothing is painted for an empty
/// one.
void paint(QPainter *painter, const QPalette &palette, const QRect &row, DropPlan::Place place);

} // namespace DropMark

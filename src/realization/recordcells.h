#pragma once

#include <QIcon>
#include <QString>

class QTableWidget;

/// The cells of the table of records. Every cell has an item, so that a click on it is a click on its row; some show a
/// widget in the place of the item's text.
namespace RecordCells {

/// In pixels: the side of the icons.
constexpr int iconSide = 16;

/// The looks that all rows share.
void prepare(QTableWidget *table);

/// Gives the cell this text, read-only, and takes away its widget; @p toolTip is plain text.
void setText(QTableWidget *table, int row, int column, const QString &text, const QString &toolTip);

/// The same for a number, in the middle.
void setNumber(QTableWidget *table, int row, int column, int number, const QString &toolTip);

/// Shows @p icon on a button that does nothing, over the text that is there.
void setIcon(QTableWidget *table, int row, int column, const QIcon &icon, const QString &accessibleName);

/// Shows a box that can't be changed, over the text that is there.
void setBox(QTableWidget *table, int row, int column, bool ticked, const QString &accessibleName);

} // namespace RecordCells

#pragma once

#include <QList>
#include <QStringList>

class QTableWidget;

/// The tables of the definition page show text that is edited elsewhere.
namespace TableCells {

/// Empties @p table and gives it the columns @p headers.
void reset(QTableWidget *table, const QStringList &headers);

/// Adds a row of cells that can't be edited; a tool tip shows a text that is cut off.
void appendRow(QTableWidget *table, const QStringList &texts);

/// Has the table show these texts. Rows come and go at the end, and the current one stays current.
void setRows(QTableWidget *table, const QList<QStringList> &rows);

/// Fits the columns to their texts; for after the last of several rows.
void fit(QTableWidget *table);

/// Changes the text of a cell; nothing happens where there is none.
void setText(QTableWidget *table, int row, int column, const QString &text);

/// Looks and behaviour that all these tables share: whole rows, one at a time, the last column stretched.
void prepare(QTableWidget *table, const QString &accessibleName);

} // namespace TableCells

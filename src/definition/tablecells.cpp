#include "tablecells.h"

#include "extensionfile/showntext.h"

#include <QHeaderView>
#include <QTableWidget>

namespace {

// Pixels: an empty column stays wide enough to aim at.
constexpr int minimumColumnWidth = 56;

/// Whether the cell has shown something else. One that is not there yet is made.
bool setCell(QTableWidget *table, int row, int column, const QString &text)
{
    const QString shown = ExtensionFile::shown(text);
    QTableWidgetItem *cell = table->item(row, column);
    if (cell && cell->text() == shown)
        return false;
    if (!cell) {
        cell = new QTableWidgetItem;
        cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
        table->setItem(row, column, cell);
    }
    cell->setText(shown);
    cell->setToolTip(shown);
    return true;
}

} // namespace

void TableCells::reset(QTableWidget *table, const QStringList &headers)
{
    table->clear();
    table->setRowCount(0);
    table->setColumnCount(headers.size());
    table->setHorizontalHeaderLabels(headers);
    fit(table);
}

void TableCells::appendRow(QTableWidget *table, const QStringList &texts)
{
    const int row = table->rowCount();
    table->insertRow(row);
    for (int column = 0; column < texts.size(); ++column)
        setCell(table, row, column, texts.at(column));
}

void TableCells::fit(QTableWidget *table)
{
    // All but the last one, which is stretched and would lose that.
    for (int column = 0; column < table->columnCount() - 1; ++column)
        table->resizeColumnToContents(column);
}

void TableCells::setRows(QTableWidget *table, const QList<QStringList> &rows)
{
    // At once: with each row that comes or goes alone, the table goes through all of them.
    table->setRowCount(rows.size());
    bool changed = false;
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < rows.at(row).size(); ++column)
            changed = setCell(table, row, column, rows.at(row).at(column)) || changed;
    }
    if (changed)
        fit(table);
}

void TableCells::setText(QTableWidget *table, int row, int column, const QString &text)
{
    if (table->item(row, column) && setCell(table, row, column, text))
        fit(table);
}

void TableCells::prepare(QTableWidget *table, const QString &accessibleName)
{
    table->setAccessibleName(accessibleName);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setMinimumSectionSize(minimumColumnWidth);
}

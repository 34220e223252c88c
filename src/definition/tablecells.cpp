#include "tablecells.h"

#include <QHeaderView>
#include <QTableWidget>

namespace {

// Pixels: an empty column stays wide enough to aim at.
constexpr int minimumColumnWidth = 56;

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
    for (int column = 0; column < texts.size(); ++column) {
        auto *cell = new QTableWidgetItem(texts.at(column));
        cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
        cell->setToolTip(cell->text());
        table->setItem(row, column, cell);
    }
}

void TableCells::fit(QTableWidget *table)
{
    // All but the last one, which is stretched and would lose that.
    for (int column = 0; column < table->columnCount() - 1; ++column)
        table->resizeColumnToContents(column);
}

void TableCells::setRows(QTableWidget *table, const QList<QStringList> &rows)
{
    while (table->rowCount() > rows.size())
        table->removeRow(table->rowCount() - 1);
    bool changed = false;
    for (int row = 0; row < rows.size(); ++row) {
        if (row == table->rowCount()) {
            appendRow(table, rows.at(row));
            changed = true;
            continue;
        }
        for (int column = 0; column < rows.at(row).size(); ++column) {
            QTableWidgetItem *cell = table->item(row, column);
            const QString &text = rows.at(row).at(column);
            if (!cell || cell->text() == text)
                continue;
            cell->setText(text);
            cell->setToolTip(text);
            changed = true;
        }
    }
    if (changed)
        fit(table);
}

void TableCells::setText(QTableWidget *table, int row, int column, const QString &text)
{
    if (QTableWidgetItem *cell = table->item(row, column)) {
        cell->setText(text);
        cell->setToolTip(text);
        fit(table);
    }
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

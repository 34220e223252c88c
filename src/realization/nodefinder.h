#pragma once

#include "form/extpointwidgetform.h"

#include <QString>

class FormatTabs;
class FormatTree;
class PointTreeWidgetItem;
class RealizationPageBuilder;
class RecordTable;
class SheetPane;

/// Goes to a node of the opened file on the realization page as a person would: by a click on its point, on its row or
/// on its entry. Made where it is needed; GUI thread.
struct NodeFinder final
{
    Ui::ExtPointWidget *ui;
    FormatTabs *tabs;
    FormatTree *tree;
    RecordTable *records;
    SheetPane *sheet;
    RealizationPageBuilder *page;

    /// Shows the sheet of @p node with the field @p key being edited, where it has one. What stands in no row has its
    /// sheet shown all the same, since it may be put right there.
    void show(PointTreeWidgetItem *node, const QString &key) const;

private:
    void showPoint(const QString &pointId) const;
    [[nodiscard]] bool showRecord(PointTreeWidgetItem *record) const;
    [[nodiscard]] bool showEntry(PointTreeWidgetItem *entry) const;
};

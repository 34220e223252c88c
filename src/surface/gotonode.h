#pragma once

#include <QString>

class DefintionPageBuilder;
class PointTreeWidgetItem;
class QTabWidget;
class RealizationPageBuilder;

namespace Ui {
class ExtPointWidget;
}

/// The one way to a node on the two pages. Made where it is needed. GUI thread.
struct GoToNode final
{
    const Ui::ExtPointWidget &ui;
    DefintionPageBuilder &definitionPage;
    RealizationPageBuilder &realizationPage;

    /// Makes the row that shows @p node the current one, on its page and its tab, and shows its sheet, with the field
    /// @p key being edited where one is named: a definition of the opened file on the definition page, everything else
    /// on the realization page. What has no row is led to by the nearest thing that has one: a sibling's record by its
    /// point, an own "ExtData" by the point that it is for. A filter that hides the row is closed. The sheet of an own
    /// node is shown even where nothing leads to it. False when nothing shows anything of it. All tabs must be in their
    /// bar, and nothing may be left to commit.
    bool show(PointTreeWidgetItem *node, const QString &key) const;

private:
    bool showDefinition(PointTreeWidgetItem *node) const;
    /// What follows of the realization page: each says whether a row was gone to.
    bool showRealization(PointTreeWidgetItem *node) const;
    bool showPoint(PointTreeWidgetItem *point) const;
    bool showRecord(PointTreeWidgetItem *record) const;
    bool showEntry(PointTreeWidgetItem *entry) const;
    /// The format tree is seen only while the selected point has formats.
    void selectPointWithFormats(const PointTreeWidgetItem *entry) const;
};

#pragma once

#include <functional>

class PointTreeWidgetItem;

namespace Ui {
class ExtPointWidget;
}

/// The way to a node on the two pages. GUI thread.
namespace GoToNode {

/// Shows the sheet of an attribute whose row is current: a click there may show another one.
using ShowAttribute = std::function<void(PointTreeWidgetItem *)>;

/// Makes the row that shows @p node the current one, on its page and its tab, and shows its sheet: a definition of the
/// opened file on the definition page, everything else on the realization page. What has no row is led to by the
/// nearest thing that has one: a sibling's record by its point, a choice by its attribute. A filter that hides the row
/// is closed. False when nothing shows anything of it. All tabs must be in their bar.
bool show(const Ui::ExtPointWidget &ui, PointTreeWidgetItem *node, const ShowAttribute &showAttribute);

} // namespace GoToNode

#pragma once

#include "dropplan.h"

#include <QString>

class PointTreeWidgetItem;
struct DropSite;

/// What people read of a drop before they let go: one sentence for what it would do, and one for each reason why it
/// would do nothing. One line each, of bounded length. GUI thread.
namespace DropWords {

/// What @p plan does at @p site, or why it does nothing.
[[nodiscard]] QString of(const DropPlan &plan, const DropSite &site);

[[nodiscard]] QString noRow();
[[nodiscard]] QString noFile();
[[nodiscard]] QString gone();
[[nodiscard]] QString notTaken(const PointTreeWidgetItem *row, const QString &kind);
/// The row has an entry of this kind, and takes one only.
[[nodiscard]] QString takenAlready(const PointTreeWidgetItem *row, const QString &kind);
[[nodiscard]] QString foreignEntry(const PointTreeWidgetItem *dragged);
[[nodiscard]] QString foreignFormat();
[[nodiscard]] QString besideForeign();
[[nodiscard]] QString intoItself(const PointTreeWidgetItem *dragged);
[[nodiscard]] QString notMovable(const PointTreeWidgetItem *dragged);

// Of the table of records.
[[nodiscard]] QString newRecord(const PointTreeWidgetItem *point);
[[nodiscard]] QString noPoint();
[[nodiscard]] QString pointWithoutId();

} // namespace DropWords

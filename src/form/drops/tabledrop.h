#pragma once

#include <QPointer>
#include <QString>

class PointTreeWidgetItem;

/// A point or a sub point is dropped onto the table of records: a record with the declared defaults in the point's
/// "ExtData". GUI thread.
///
/// The "ExtData" is made where there is none. For a sub point an "ExtDataSet" is made too; for a point, the "ExtData"
/// then stands nowhere, and whoever hears of it gives it a place.
namespace TableDrop {

struct Outcome
{
    QPointer<PointTreeWidgetItem> parent;
    QPointer<PointTreeWidgetItem> record; ///< null when nothing was made
    bool isSubPoint = false;
};

/// True for a point or a sub point, unless nobody can say what a record would be for since it has no id. Null is
/// allowed.
[[nodiscard]] bool takes(const PointTreeWidgetItem *dragged);

/// What a drop would do, or why it would do nothing: one sentence. Null is allowed.
[[nodiscard]] QString words(const PointTreeWidgetItem *dragged);

/// Makes nothing when takes() is false or there is no model.
Outcome perform(PointTreeWidgetItem *dragged);

} // namespace TableDrop

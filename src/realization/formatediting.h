#pragma once

#include <QString>
#include <QStringList>

class PointTreeWidgetItem;

/// The changes of formats that the page makes: the model alone. Rows are the copies that the tree shows;
/// what is saved are the nodes that they mirror. GUI thread.
namespace FormatEditing {

/// The kinds of entries that may be created under @p row, as they are to be shown: those of its definition and, for a
/// root tagged "format", the two bars, without the kinds that stand there already.
[[nodiscard]] QStringList childTypes(PointTreeWidgetItem *row);

/// A new entry of the kind @p type at the end of @p row, in the row's model children and in what the row mirrors. Its
/// row is not put under the one of @p row.
[[nodiscard]] PointTreeWidgetItem *createChild(PointTreeWidgetItem *row, const QString &type);

/// A new format root in the opened file for the tab @p name.
PointTreeWidgetItem *createRoot(const QString &name);

/// Gives a node of the opened file another "id". The references to a record follow, and so does what stands under an
/// entry because it names it.
void rename(PointTreeWidgetItem *node, const QString &id);

/// The rows that a deletion of @p row may touch: false for a row of a sibling and for null.
[[nodiscard]] bool isDeletable(PointTreeWidgetItem *row);

/// Moves the own entry that @p row shows by one place, up with a @p step of -1 and down with 1, among those that are
/// saved beside it and shown beside it. False when nothing has moved: for a row of a sibling, at the ends, for null.
bool moveByOne(PointTreeWidgetItem *row, int step);

} // namespace FormatEditing

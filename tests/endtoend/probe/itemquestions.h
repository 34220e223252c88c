#pragma once

#include <QJsonObject>

/// Questions about the rows and cells of trees, tables and lists: of the one with the name "widget", or with "popup" of
/// the list that has dropped down.
namespace Probe {

/// The whole tree as lines, a level indented by four spaces, the cells of further columns after " | "; and the texts on
/// the way to the current row. "icons" has, line by line, what is in the middle of the row's icon: its colour, or the
/// name of the icon when it has one.
[[nodiscard]] QJsonObject tree(const QJsonObject &request);
/// How many "rows" there are under the first one; cheap, however long the tree is.
[[nodiscard]] QJsonObject rows(const QJsonObject &request);
/// "headers", "rows" of texts, "true" and "false" for boxes, "icons" of the buttons row by row, and the current row.
[[nodiscard]] QJsonObject table(const QJsonObject &request);
/// Place of the cell in "column" of the row that "path" leads to: texts of the first column, or numbers of rows. Also
/// whether it lies "above" or "below" what the view shows of its content, which is then to be scrolled.
[[nodiscard]] QJsonObject item(const QJsonObject &request);

} // namespace Probe

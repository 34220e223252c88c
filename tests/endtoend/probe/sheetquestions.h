#pragma once

#include <QJsonObject>

/// Questions about property sheets of both kinds, rows in a box and rows in a tree.
namespace Probe {

/// Every row of the sheet in order: "name", "value", and whether it is "enabled".
[[nodiscard]] QJsonObject sheet(const QJsonObject &request);
/// Place of the value in the row with the name "row"; the value.
[[nodiscard]] QJsonObject sheetRow(const QJsonObject &request);

} // namespace Probe

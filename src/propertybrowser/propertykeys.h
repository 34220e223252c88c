#pragma once

#include <QString>

/// Keys of `PropertyItem::setData`. An absent key restricts nothing.
namespace PropertyKey {
inline const QString Name = QStringLiteral("name");
inline const QString Value = QStringLiteral("value");
inline const QString Min = QStringLiteral("min");
inline const QString Max = QStringLiteral("max");
inline const QString Type = QStringLiteral("type");
inline const QString Options = QStringLiteral("options");
inline const QString Editable = QStringLiteral("editable");
inline const QString Associate = QStringLiteral("associate");
inline const QString SubItems = QStringLiteral("subitems");
inline const QString ShowText = QStringLiteral("showtext");
inline const QString Decimals = QStringLiteral("decimals");
inline const QString RegExp = QStringLiteral("regexp");
/// An empty text is taken whatever RegExp says.
inline const QString MayBeEmpty = QStringLiteral("maybeempty");
/// A text with a match of this expression anywhere is taken, but marked, with DoubtHint as the reason.
inline const QString Doubt = QStringLiteral("doubt");
inline const QString DoubtHint = QStringLiteral("doubthint");
/// The row shows a value that is not its own; the reason why, for the tool tip.
inline const QString Borrowed = QStringLiteral("borrowed");
/// The own value of the row can be given up; what comes in its place, as the text of a menu.
inline const QString Reset = QStringLiteral("reset");
/// Further words for the tool tip of the row.
inline const QString Help = QStringLiteral("help");
inline const QString Filter = QStringLiteral("filter");
inline const QString Directory = QStringLiteral("directory");
inline const QString Method = QStringLiteral("method");
inline const QString Title = QStringLiteral("title");
} // namespace PropertyKey

/// Keys of the menu and item records of the realization formats.
namespace RecordKey {
inline const QString Id = QStringLiteral("id");
inline const QString Key = QStringLiteral("key");
inline const QString Title = QStringLiteral("title");
inline const QString Text = QStringLiteral("text");
inline const QString Type = QStringLiteral("type");
inline const QString HasData = QStringLiteral("hasdata");
inline const QString Name = QStringLiteral("name");
inline const QString Target = QStringLiteral("target");
inline const QString Parent = QStringLiteral("parent");
inline const QString Icon = QStringLiteral("icon");
inline const QString Value = QStringLiteral("value");
} // namespace RecordKey

/// Names of the messages that a property-browser service exchanges with its clients. The sheets here are used in
/// process and neither send nor receive any; a service can rely on the names.
namespace PropertyMessage {
inline const QString Service = QStringLiteral("message/plugin/propertybrowser/service");
inline const QString Client = QStringLiteral("message/plugin/propertybrowser/client");
inline const QString Type = QStringLiteral("message.type");
inline const QString Show = QStringLiteral("property.show");
inline const QString Hide = QStringLiteral("property.hide");
inline const QString List = QStringLiteral("property.list");
} // namespace PropertyMessage

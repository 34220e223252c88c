#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>
#include <QTimeZone>

#include <functional>

class TextEntryEditor;

/// The ISO forms that rows of dates and times are typed and stored in, and what their arrows and calendars do.
namespace IsoTime {

/// Each gives an invalid value for a text that is not wholly in the form.
[[nodiscard]] QDate date(const QString &text);
[[nodiscard]] QTime time(const QString &text);
/// With "T" or a blank between the parts, and with "Z", an offset or, for local time, nothing at the end. The name of a
/// zone may follow after a blank: the time is its local time then, and the offset tells apart two that are alike.
/// @p known is what a zone of that name is taken to be.
[[nodiscard]] QDateTime dateTime(const QString &text, const QTimeZone &known = QTimeZone());

[[nodiscard]] QString text(QDate date);
[[nodiscard]] QString text(QTime time);
/// With the name of the zone where it has one.
[[nodiscard]] QString text(const QDateTime &dateTime);

/// The same zone, and the same offset where the zone has it at that time.
[[nodiscard]] QDateTime moved(const QDateTime &dateTime, QDate date, QTime time);

/// The part of the form at @p cursor is moved on by @p steps, the other parts following as in a calendar.
[[nodiscard]] QDate stepped(QDate date, int cursor, int steps);
/// Goes round at midnight.
[[nodiscard]] QTime stepped(QTime time, int cursor, int steps);
[[nodiscard]] QDateTime stepped(const QDateTime &dateTime, int cursor, int steps);

/// Gives the editor a button that drops down a calendar at @p start; @p chosen makes the row's text of a chosen day.
void addCalendar(TextEntryEditor *editor, const std::function<QDate(const TextEntryEditor *)> &start,
    const std::function<QString(const TextEntryEditor *, QDate)> &chosen);

} // namespace IsoTime

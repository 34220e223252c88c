#include "propertybrowser/editors/isotime.h"

#include "propertybrowser/editors/textentryeditor.h"

#include <QCalendarWidget>
#include <QCoreApplication>
#include <QFrame>
#include <QGuiApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int DateLength = 10;

QString clockFormat(QTime time)
{
    return time.msec() == 0 ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm:ss.zzz");
}

} // namespace

QDate IsoTime::date(const QString &text)
{
    // The toolkit's reader passes over what follows a date.
    return text.size() == DateLength ? QDate::fromString(text, Qt::ISODate) : QDate();
}

// The toolkit takes hour 24 for the midnight at the end of the day, which no clock shows.
QTime IsoTime::time(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([01]\\d|2[0-3]):\\d\\d(:\\d\\d(\\.\\d{1,3})?)?\\z"));
    return form.match(text).hasMatch() ? QTime::fromString(text, Qt::ISODateWithMs) : QTime();
}

QDateTime IsoTime::dateTime(const QString &text, const QTimeZone &known)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(\\d{4}-\\d\\d-\\d\\d[T ](?:[01]\\d|2[0-3]):\\d\\d(?::\\d\\d(?:\\.\\d{1,3})?)?)"
                       "(Z|[+-]\\d\\d:\\d\\d)?(?: (\\S.*))?\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        return {};
    }
    const QString clockText = match.captured(1);
    const QString offset = match.captured(2);
    const QByteArray zoneName = match.captured(3).toUtf8();
    if (zoneName.isEmpty()) {
        return QDateTime::fromString(clockText + offset, Qt::ISODateWithMs);
    }
    const QTimeZone zone = known.isValid() && known.id() == zoneName ? known : QTimeZone(zoneName);
    if (!zone.isValid()) {
        return {};
    }
    // As UTC, which leaves no hour out; the zone may, and another offset would be another time of day.
    const QDateTime clock = QDateTime::fromString(clockText + QLatin1Char('Z'), Qt::ISODateWithMs);
    const QDateTime result = offset.isEmpty()
        ? QDateTime(clock.date(), clock.time(), zone)
        : QDateTime::fromString(clockText + offset, Qt::ISODateWithMs).toTimeZone(zone);
    const bool exists = result.date() == clock.date() && result.time() == clock.time();
    return exists ? result : QDateTime();
}

QString IsoTime::text(QDate date)
{
    return date.toString(Qt::ISODate);
}

QString IsoTime::text(QTime time)
{
    return time.toString(clockFormat(time));
}

QString IsoTime::text(const QDateTime &dateTime)
{
    const QString withOffset = dateTime.toString(dateTime.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
    if (dateTime.timeSpec() != Qt::TimeZone || !dateTime.isValid()) {
        return withOffset;
    }
    const QTimeZone zone = dateTime.timeZone();
    // An offset only where the time of day comes twice and this is not the one that is taken without it.
    const bool isUsual = QDateTime(dateTime.date(), dateTime.time(), zone) == dateTime;
    const QString clock = text(dateTime.date()) + QLatin1Char('T') + text(dateTime.time());
    return (isUsual ? clock : withOffset) + QLatin1Char(' ') + QString::fromUtf8(zone.id());
}

QDateTime IsoTime::moved(const QDateTime &dateTime, QDate date, QTime time)
{
    QDateTime result = dateTime;
    result.setDate(date);
    result.setTime(time);
    if (dateTime.timeSpec() == Qt::TimeZone && result.offsetFromUtc() != dateTime.offsetFromUtc()) {
        const QDateTime same
            = QDateTime(date, time, Qt::OffsetFromUTC, dateTime.offsetFromUtc()).toTimeZone(dateTime.timeZone());
        if (same.offsetFromUtc() == dateTime.offsetFromUtc()) {
            return same;
        }
    }
    return result;
}

QDate IsoTime::stepped(QDate date, int cursor, int steps)
{
    constexpr int YearEnd = 4;
    constexpr int MonthEnd = 7;
    if (cursor <= YearEnd) {
        return date.addYears(steps);
    }
    return cursor <= MonthEnd ? date.addMonths(steps) : date.addDays(steps);
}

QTime IsoTime::stepped(QTime time, int cursor, int steps)
{
    constexpr int HourEnd = 2;
    constexpr int MinuteEnd = 5;
    if (cursor <= HourEnd) {
        return time.addSecs(steps * 3600);
    }
    return time.addSecs(cursor <= MinuteEnd ? steps * 60 : steps);
}

QDateTime IsoTime::stepped(const QDateTime &dateTime, int cursor, int steps)
{
    if (cursor <= DateLength) {
        return moved(dateTime, stepped(dateTime.date(), cursor, steps), dateTime.time());
    }
    return moved(dateTime, dateTime.date(), stepped(dateTime.time(), cursor - DateLength - 1, steps));
}

void IsoTime::addCalendar(TextEntryEditor *editor, const std::function<QDate(const TextEntryEditor *)> &start,
    const std::function<QString(const TextEntryEditor *, QDate)> &chosen)
{
    const auto open = [start, chosen](TextEntryEditor *owner) {
        auto *popup = new QFrame(owner, Qt::Popup);
        popup->setAttribute(Qt::WA_DeleteOnClose);
        popup->setFrameShape(QFrame::StyledPanel);
        auto *calendar = new QCalendarWidget(popup);
        calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        calendar->setAccessibleName(owner->item().displayText());
        const QDate day = start(owner);
        calendar->setSelectedDate(day.isValid() ? day : QDate::currentDate());
        auto *layout = new QVBoxLayout(popup);
        layout->setContentsMargins(1, 1, 1, 1);
        layout->addWidget(calendar);
        const auto take = [owner = QPointer<TextEntryEditor>(owner), popup, chosen](QDate date) {
            popup->close();
            if (owner) {
                owner->choose(chosen(owner, date));
            }
        };
        QObject::connect(calendar, &QCalendarWidget::clicked, popup, take);
        QObject::connect(calendar, &QCalendarWidget::activated, popup, take);
        popup->adjustSize();
        // Below the row and inside the screen; above the row where there is no room.
        const QRect screen = owner->screen()->availableGeometry();
        QPoint corner = owner->mapToGlobal(QPoint(0, owner->height()));
        if (corner.y() + popup->height() > screen.bottom()) {
            corner.setY(owner->mapToGlobal(QPoint(0, 0)).y() - popup->height());
        }
        corner.setX(qBound(screen.left(), corner.x(), qMax(screen.left(), screen.right() - popup->width())));
        popup->move(corner);
        popup->show();
        calendar->setFocus();
    };
    editor->addButton(QStringLiteral("\u25be"), QCoreApplication::translate("PropertyBrowser", "Choose a day"), open);
}

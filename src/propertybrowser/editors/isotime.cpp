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

QDateTime IsoTime::dateTime(const QString &text)
{
    static const QRegularExpression form(QStringLiteral(
        "\\A\\d{4}-\\d\\d-\\d\\d[T ]([01]\\d|2[0-3]):\\d\\d(:\\d\\d(\\.\\d{1,3})?)?(Z|[+-]\\d\\d:\\d\\d)?\\z"));
    return form.match(text).hasMatch() ? QDateTime::fromString(text, Qt::ISODateWithMs) : QDateTime();
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
    return dateTime.toString(dateTime.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
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
    QDateTime result = dateTime;
    if (cursor <= DateLength) {
        result.setDate(stepped(dateTime.date(), cursor, steps));
    } else {
        result.setTime(stepped(dateTime.time(), cursor - DateLength - 1, steps));
    }
    return result;
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

#include "propertybrowser/editors/datetimeeditor.h"

#include "propertybrowser/editors/isotime.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>

namespace {

/// With the zone of the record where the text names it.
QDateTime read(const PropertyItem &item, const QString &text)
{
    return IsoTime::dateTime(text, item.value().toDateTime().timeZone());
}

bool step(const PropertyItem &item, QString *text, int cursor, int steps)
{
    const bool fresh = text->isEmpty();
    const QDateTime old = fresh ? QDateTime(QDate::currentDate(), QTime(0, 0)) : read(item, *text);
    const QString stepped = IsoTime::text(IsoTime::stepped(old, cursor, fresh ? 0 : steps));
    const bool possible = read(item, stepped).isValid();
    if (possible) {
        *text = stepped;
    }
    return possible;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = [](const PropertyItem &item, const QString &text) {
        const QDateTime dateTime = read(item, text);
        return dateTime.isValid() ? QVariant(dateTime) : QVariant();
    };
    c.format = [](const QVariant &value) { return IsoTime::text(value.toDateTime()); };
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A date and time as yyyy-MM-ddTHH:mm:ss");
    };
    c.step = step;
    return c;
}();

/// Another day keeps the time of day and the zone.
QString onDay(const TextEntryEditor *editor, QDate day)
{
    const QDateTime old = editor->typedValue().toDateTime();
    return IsoTime::text(old.isValid() ? IsoTime::moved(old, day, old.time()) : QDateTime(day, QTime(0, 0)));
}

} // namespace

PropertyEditor *DateTimeEditor::create(const PropertyItem &item, QWidget *parent)
{
    auto *editor = new TextEntryEditor(item, codec, parent);
    IsoTime::addCalendar(
        editor, [](const TextEntryEditor *from) { return from->typedValue().toDateTime().date(); }, onDay);
    return editor;
}

PropertyDisplay DateTimeEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

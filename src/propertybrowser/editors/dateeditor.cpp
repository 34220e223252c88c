#include "propertybrowser/editors/dateeditor.h"

#include "propertybrowser/editors/isotime.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>

namespace {

bool step(const PropertyItem & /*item*/, QString *text, int cursor, int steps)
{
    const QDate old = text->isEmpty() ? QDate::currentDate() : IsoTime::date(*text);
    const QString stepped = IsoTime::text(IsoTime::stepped(old, cursor, text->isEmpty() ? 0 : steps));
    const bool possible = IsoTime::date(stepped).isValid();
    if (possible) {
        *text = stepped;
    }
    return possible;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = [](const PropertyItem & /*item*/, const QString &text) {
        const QDate date = IsoTime::date(text);
        return date.isValid() ? QVariant(date) : QVariant();
    };
    c.format = [](const QVariant &value) { return IsoTime::text(value.toDate()); };
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A date as yyyy-MM-dd");
    };
    c.step = step;
    return c;
}();

} // namespace

PropertyEditor *DateEditor::create(const PropertyItem &item, QWidget *parent)
{
    auto *editor = new TextEntryEditor(item, codec, parent);
    IsoTime::addCalendar(
        editor, [](const TextEntryEditor *from) { return from->typedValue().toDate(); },
        [](const TextEntryEditor * /*from*/, QDate day) { return IsoTime::text(day); });
    return editor;
}

PropertyDisplay DateEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

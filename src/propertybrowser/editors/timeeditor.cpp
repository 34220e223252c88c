#include "propertybrowser/editors/timeeditor.h"

#include "propertybrowser/editors/isotime.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>

namespace {

bool step(const PropertyItem & /*item*/, QString *text, int cursor, int steps)
{
    const QTime old = text->isEmpty() ? QTime(0, 0) : IsoTime::time(*text);
    if (!old.isValid()) {
        return false;
    }
    *text = IsoTime::text(IsoTime::stepped(old, cursor, text->isEmpty() ? 0 : steps));
    return true;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = [](const PropertyItem & /*item*/, const QString &text) {
        const QTime time = IsoTime::time(text);
        return time.isValid() ? QVariant(time) : QVariant();
    };
    c.format = [](const QVariant &value) { return IsoTime::text(value.toTime()); };
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A time of day as HH:mm:ss");
    };
    c.step = step;
    return c;
}();

} // namespace

PropertyEditor *TimeEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, codec, parent);
}

PropertyDisplay TimeEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

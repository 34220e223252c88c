#include "propertybrowser/editors/recteditor.h"

#include "propertybrowser/editors/numberlist.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>
#include <QRect>

namespace {

constexpr int Count = 4;

QVector<int> numbersOf(const QVariant &value)
{
    const QRect rect = value.toRect();
    return { rect.x(), rect.y(), rect.width(), rect.height() };
}

QString format(const QVariant &value)
{
    return NumberList::withNumbers(QStringLiteral("0,0 0x0"), numbersOf(value));
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = [](const PropertyItem & /*item*/, const QString &text) {
        const QVector<int> n = NumberList::parse(text, Count);
        return n.isEmpty() ? QVariant() : QVariant(QRect(n.at(0), n.at(1), n.at(2), n.at(3)));
    };
    c.format = format;
    c.store = [](const PropertyItem &item, const QVariant &value) {
        // A file that separates its numbers in another way keeps it.
        const QString old = item.value().toString();
        return NumberList::parse(old, Count).isEmpty() ? format(value) : NumberList::withNumbers(old, numbersOf(value));
    };
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A rectangle as 10,20 640x480: corner, size");
    };
    c.step = [](const PropertyItem & /*item*/, QString *text, int cursor, int steps) {
        return NumberList::step(text, Count, cursor, steps);
    };
    return c;
}();

} // namespace

PropertyEditor *RectEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, codec, parent);
}

PropertyDisplay RectEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

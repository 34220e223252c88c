#include "propertybrowser/editors/sizeeditor.h"

#include "propertybrowser/editors/numberlist.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>
#include <QSize>

namespace {

constexpr int Count = 2;

QVector<int> numbersOf(const QVariant &value)
{
    const QSize size = value.toSize();
    return { size.width(), size.height() };
}

QString format(const QVariant &value)
{
    return NumberList::withNumbers(QStringLiteral("0x0"), numbersOf(value));
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = [](const PropertyItem & /*item*/, const QString &text) {
        const QVector<int> n = NumberList::parse(text, Count);
        return n.isEmpty() ? QVariant() : QVariant(QSize(n.at(0), n.at(1)));
    };
    c.format = format;
    c.store = [](const PropertyItem &item, const QVariant &value) {
        // A file that separates its numbers in another way keeps it.
        const QString old = item.value().toString();
        return NumberList::parse(old, Count).isEmpty() ? format(value) : NumberList::withNumbers(old, numbersOf(value));
    };
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A size as 640x480");
    };
    c.step = [](const PropertyItem & /*item*/, QString *text, int cursor, int steps) {
        return NumberList::step(text, Count, cursor, steps);
    };
    return c;
}();

} // namespace

PropertyEditor *SizeEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, codec, parent);
}

PropertyDisplay SizeEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

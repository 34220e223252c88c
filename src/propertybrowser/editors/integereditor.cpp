#include "propertybrowser/editors/integereditor.h"

#include "propertybrowser/editors/numberbounds.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Limits = std::numeric_limits<int>;

QVariant parse(const PropertyItem &item, const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && NumberBounds::contain(item, number) ? QVariant(number) : QVariant();
}

bool step(const PropertyItem &item, QString *text, int /*cursor*/, int steps)
{
    bool isNumber = false;
    const qint64 old = text->toInt(&isNumber);
    if (!isNumber && !text->isEmpty()) {
        return false;
    }
    const double min = NumberBounds::bound(item, PropertyKey::Min).value_or(Limits::min());
    const double max = NumberBounds::bound(item, PropertyKey::Max).value_or(Limits::max());
    const double lowest = std::ceil(std::max<double>(min, Limits::min()));
    const double highest = std::floor(std::min<double>(max, Limits::max()));
    if (lowest > highest) {
        return false;
    }
    const auto stepped = static_cast<qint64>(std::clamp(static_cast<double>(old + steps), lowest, highest));
    // Where the bounds are already met, and where an old value lies beyond them, only the way back is open.
    const bool moves = text->isEmpty() || (steps > 0 ? stepped > old : stepped < old);
    if (moves) {
        *text = QString::number(stepped);
    }
    return moves;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = parse;
    c.format = [](const QVariant &value) { return value.toString(); };
    c.hint = [](const PropertyItem &item) {
        return NumberBounds::hint(item, QCoreApplication::translate("PropertyBrowser", "A whole number"));
    };
    c.step = step;
    c.isNumber = true;
    return c;
}();

} // namespace

PropertyEditor *IntegerEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, codec, parent);
}

PropertyDisplay IntegerEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

#pragma once

#include "propertybrowser/editors/numberlist.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/propertyitem.h"

/// The codec of values that are typed as a list of whole numbers. @p Kind tells how: Count, the text zero(), the
/// numbers of() a value, the value() of numbers, and the hint().
template <typename Kind>
TextCodec numberListCodec()
{
    TextCodec codec {};
    codec.parse = [](const PropertyItem & /*item*/, const QString &text) {
        const QVector<int> numbers = NumberList::parse(text, Kind::Count);
        return numbers.isEmpty() ? QVariant() : Kind::value(numbers);
    };
    codec.format = [](const QVariant &value) { return NumberList::withNumbers(Kind::zero(), Kind::of(value)); };
    codec.store = [](const PropertyItem &item, const QVariant &value) {
        // A file that separates its numbers in another way keeps it.
        const QString old = item.value().toString();
        const bool isList = !NumberList::parse(old, Kind::Count).isEmpty();
        return NumberList::withNumbers(isList ? old : Kind::zero(), Kind::of(value));
    };
    codec.hint = [](const PropertyItem & /*item*/) { return Kind::hint(); };
    codec.step = [](const PropertyItem & /*item*/, QString *text, int cursor, int steps) {
        return NumberList::step(text, Kind::Count, cursor, steps);
    };
    return codec;
}

#include "propertybrowser/editors/textcodec.h"

#include "propertybrowser/propertyitem.h"

namespace {

bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

} // namespace

bool TextCodec::handsOutText(const PropertyItem &item) const
{
    return item.value().isValid() ? isText(item.value()) : !isNumber;
}

QString TextCodec::shownText(const PropertyItem &item) const
{
    const QVariant value = item.value();
    if (value.isNull()) {
        return {};
    }
    if (!isText(value)) {
        return format(value);
    }
    if (load != nullptr) {
        const QVariant own = load(item, value.toString());
        if (own.isValid()) {
            return format(own);
        }
    }
    return value.toString();
}

QVariant TextCodec::ownValue(const PropertyItem &item) const
{
    const QVariant value = item.value();
    if (!isText(value)) {
        return value;
    }
    const QString text = value.toString();
    if (text.isEmpty() && !emptyIsText) {
        return {};
    }
    return load != nullptr ? load(item, text) : parse(item, text);
}

QString TextCodec::storedText(const PropertyItem &item, const QVariant &value) const
{
    if (!value.isValid()) {
        return QStringLiteral("");
    }
    return store != nullptr ? store(item, value) : format(value);
}

bool TextCodec::accepts(const PropertyItem &item, const QString &text) const
{
    return (text.isEmpty() && !emptyIsText) || parse(item, text).isValid();
}

QString TextCodec::problemOf(const PropertyItem &item) const
{
    return accepts(item, shownText(item)) || hint == nullptr ? QString() : hint(item);
}

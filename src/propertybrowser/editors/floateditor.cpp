#include "propertybrowser/editors/floateditor.h"

#include "propertybrowser/editors/decimal.h"
#include "propertybrowser/editors/numberbounds.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Beyond these a number is easier to read, and no longer exact, with an exponent.
constexpr double LargestPlain = 1e15;
constexpr double SmallestPlain = 1e-5;

bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

QString shortest(double number)
{
    const double size = std::fabs(number);
    const bool plain = size < LargestPlain && (size >= SmallestPlain || number == 0.0);
    return QString::number(number, plain ? 'f' : 'g', QLocale::FloatingPointShortest);
}

bool hasExponent(const QString &text)
{
    return text.contains(QLatin1Char('e'), Qt::CaseInsensitive);
}

/// A number in a file can have more digits than a double: it is kept as a text that has them all.
QString exactText(const QString &text, double number)
{
    const std::optional<Decimal> decimal = hasExponent(text) ? std::nullopt : Decimal::fromText(text);
    return decimal ? decimal->text() : shortest(number);
}

QString format(const QVariant &value)
{
    if (isText(value)) {
        const std::optional<Decimal> decimal = Decimal::fromText(value.toString());
        return decimal ? decimal->reduced().text() : value.toString();
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? shortest(number) : value.toString();
}

QVariant parse(const PropertyItem &item, const QString &text)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    bool isNumber = false;
    const double number = plain.toDouble(text, &isNumber);
    if (!isNumber || !std::isfinite(number) || !NumberBounds::contain(item, number)) {
        return {};
    }
    const std::optional<double> decimals = NumberBounds::bound(item, PropertyKey::Decimals);
    const int point = text.indexOf(QLatin1Char('.'));
    const bool tooFine = decimals && point >= 0 && text.size() - point - 1 > *decimals;
    if (tooFine) {
        return {};
    }
    return isText(item.value()) ? QVariant(exactText(text, number)) : QVariant(number);
}

bool step(const PropertyItem &item, QString *text, int /*cursor*/, int steps)
{
    const bool fresh = text->isEmpty();
    const std::optional<Decimal> old = Decimal::fromText(fresh ? QStringLiteral("0") : *text);
    if (!old) {
        return false;
    }
    const double lowest = NumberBounds::bound(item, PropertyKey::Min).value_or(std::numeric_limits<double>::lowest());
    const double highest = NumberBounds::bound(item, PropertyKey::Max).value_or(std::numeric_limits<double>::max());
    if (lowest > highest) {
        return false;
    }
    const QString sum = old->plus(steps).text();
    const double number = sum.toDouble();
    const double stepped = std::clamp(number, lowest, highest);
    const bool inBounds = stepped == number;
    const double before = old->text().toDouble();
    // A text moves on even where doubles are too far apart to show it.
    const bool moves = fresh || (inBounds && isText(item.value())) || (steps > 0 ? stepped > before : stepped < before);
    if (moves) {
        *text = inBounds && !hasExponent(*text) ? sum : shortest(stepped);
    }
    return moves;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = parse;
    c.format = format;
    c.store = [](const PropertyItem & /*item*/, const QVariant &value) { return value.toString(); };
    c.hint = [](const PropertyItem &item) {
        QString hint = NumberBounds::hint(item, QCoreApplication::translate("PropertyBrowser", "A number"));
        if (const std::optional<double> decimals = NumberBounds::bound(item, PropertyKey::Decimals)) {
            hint = QCoreApplication::translate("PropertyBrowser", "%1, at most %2 digits after the point")
                       .arg(hint, QString::number(*decimals));
        }
        return hint;
    };
    c.step = step;
    c.isNumber = true;
    return c;
}();

} // namespace

PropertyEditor *FloatEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, codec, parent);
}

PropertyDisplay FloatEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

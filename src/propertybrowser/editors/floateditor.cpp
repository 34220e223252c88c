#include "propertybrowser/editors/floateditor.h"

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

QString format(const QVariant &value)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (!isNumber) {
        return value.toString();
    }
    const double size = std::fabs(number);
    const bool plain = size < LargestPlain && (size >= SmallestPlain || number == 0.0);
    return QString::number(number, plain ? 'f' : 'g', QLocale::FloatingPointShortest);
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
    return tooFine ? QVariant() : QVariant(number);
}

bool step(const PropertyItem &item, QString *text, int /*cursor*/, int steps)
{
    bool isNumber = false;
    const double old = text->toDouble(&isNumber);
    if (!isNumber && !text->isEmpty()) {
        return false;
    }
    const double lowest = NumberBounds::bound(item, PropertyKey::Min).value_or(std::numeric_limits<double>::lowest());
    const double highest = NumberBounds::bound(item, PropertyKey::Max).value_or(std::numeric_limits<double>::max());
    if (lowest > highest) {
        return false;
    }
    // Rounded, or 2.3 would step down to 1.2999999999999998.
    const double sum = QString::number(old + steps, 'f', 12).toDouble();
    const double stepped = std::clamp(sum, lowest, highest);
    const bool moves = text->isEmpty() || (steps > 0 ? stepped > old : stepped < old);
    if (moves) {
        *text = format(stepped);
    }
    return moves;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = parse;
    c.format = format;
    c.hint = [](const PropertyItem &item) {
        QString hint = NumberBounds::hint(item, QCoreApplication::translate("PropertyBrowser", "A number"));
        if (const std::optional<double> decimals = NumberBounds::bound(item, PropertyKey::Decimals)) {
            hint = QCoreApplication::translate("PropertyBrowser", "%1, at most %2 digits after the point")
                       .arg(hint, QString::number(*decimals));
        }
        return hint;
    };
    c.step = step;
    c.allowed = "+-.eE0123456789";
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

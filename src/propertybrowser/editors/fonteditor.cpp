#include "propertybrowser/editors/fonteditor.h"

#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>
#include <QFont>
#include <QStringList>

#include <optional>

namespace {

QVariant fromStored(const QString &text)
{
    QFont font;
    // One comma or none: a family, perhaps with a size. Other counts that fromString() rejects make it warn.
    const int commas = text.count(QLatin1Char(','));
    const bool readable = !text.isEmpty() && (commas <= 1 || (commas >= 8 && commas <= 10));
    return readable && font.fromString(text) ? QVariant(font) : QVariant();
}

struct Weight
{
    QLatin1String text;
    int number;
};

const Weight weights[] = {
    { QLatin1String("thin"), QFont::Thin },
    { QLatin1String("extralight"), QFont::ExtraLight },
    { QLatin1String("light"), QFont::Light },
    { QLatin1String("normal"), QFont::Normal },
    { QLatin1String("medium"), QFont::Medium },
    { QLatin1String("demibold"), QFont::DemiBold },
    { QLatin1String("bold"), QFont::Bold },
    { QLatin1String("extrabold"), QFont::ExtraBold },
    { QLatin1String("black"), QFont::Black },
};
/// For the weights between those that have a name.
const QLatin1String weightPrefix("weight ");
const QLatin1String italicWord("italic");
const QLatin1String obliqueWord("oblique");
const QLatin1String underlineWord("underline");
const QLatin1String strikeOutWord("strikeout");

QString weightText(int weight)
{
    for (const Weight &each : weights) {
        if (each.number == weight) {
            return each.text;
        }
    }
    return weightPrefix + QString::number(weight);
}

std::optional<int> weightOf(const QString &text)
{
    for (const Weight &each : weights) {
        if (text.compare(each.text, Qt::CaseInsensitive) == 0) {
            return each.number;
        }
    }
    constexpr uint Heaviest = 99;
    bool isNumber = false;
    const uint weight = text.mid(weightPrefix.size()).toUInt(&isNumber);
    const bool readable = text.startsWith(weightPrefix, Qt::CaseInsensitive) && isNumber && weight <= Heaviest;
    return readable ? std::optional<int>(weight) : std::nullopt;
}

QString format(const QVariant &value)
{
    const auto font = value.value<QFont>();
    QStringList parts { font.family() };
    if (font.pixelSize() > 0) {
        parts.append(QString::number(font.pixelSize()) + QLatin1String(" px"));
    } else {
        parts.append(QString::number(font.pointSizeF()) + QLatin1String(" pt"));
    }
    if (font.weight() != QFont::Normal) {
        parts.append(weightText(font.weight()));
    }
    if (font.style() != QFont::StyleNormal) {
        parts.append(font.style() == QFont::StyleItalic ? italicWord : obliqueWord);
    }
    if (font.underline()) {
        parts.append(underlineWord);
    }
    if (font.strikeOut()) {
        parts.append(strikeOutWord);
    }
    return parts.join(QLatin1String(", "));
}

bool applySize(const QString &part, QFont *font)
{
    const bool pixels = part.endsWith(QLatin1String("px"));
    const bool points = part.endsWith(QLatin1String("pt"));
    bool isNumber = false;
    const double size = (pixels || points ? part.chopped(2).trimmed() : part).toDouble(&isNumber);
    // QFont keeps a pixel size as an int and complains of anything below 1.
    if (!isNumber || size < 1 || size > 10000) {
        return false;
    }
    if (pixels) {
        font->setPixelSize(static_cast<int>(size));
    } else {
        font->setPointSizeF(size);
    }
    return true;
}

/// The word or size that may follow the family; false when it is neither.
bool apply(const QString &part, QFont *font)
{
    const auto is = [&part](QLatin1String word) { return part.compare(word, Qt::CaseInsensitive) == 0; };
    if (const std::optional<int> weight = weightOf(part)) {
        font->setWeight(*weight);
    } else if (is(italicWord) || is(obliqueWord)) {
        font->setStyle(is(italicWord) ? QFont::StyleItalic : QFont::StyleOblique);
    } else if (is(underlineWord)) {
        font->setUnderline(true);
    } else if (is(strikeOutWord)) {
        font->setStrikeOut(true);
    } else {
        return applySize(part, font);
    }
    return true;
}

QVariant parse(const PropertyItem &item, const QString &text)
{
    const QVariant value = item.value();
    // What the text doesn't speak of, the stretch for instance, stays.
    const auto old = (value.userType() == QMetaType::QString ? fromStored(value.toString()) : value).value<QFont>();
    const QStringList parts = text.split(QLatin1Char(','));
    const QString family = parts.first().trimmed();
    if (family.isEmpty()) {
        return {};
    }
    QFont font = old;
    font.setFamily(family);
    font.setWeight(QFont::Normal);
    font.setStyle(QFont::StyleNormal);
    font.setUnderline(false);
    font.setStrikeOut(false);
    for (int i = 1; i < parts.size(); ++i) {
        if (!apply(parts.at(i).trimmed(), &font)) {
            return {};
        }
    }
    if (font.weight() != old.weight() || font.style() != old.style()) {
        // The name of the old face would have the last word.
        font.setStyleName(QString());
    }
    return font;
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = parse;
    c.format = format;
    c.store = [](const PropertyItem & /*item*/, const QVariant &value) { return value.value<QFont>().toString(); };
    c.load = [](const PropertyItem & /*item*/, const QString &text) { return fromStored(text); };
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A font as Family, 10 pt, bold, italic");
    };
    return c;
}();

void choose(TextEntryEditor *editor)
{
    const QVariant typed = editor->typedValue();
    std::optional<QFont> chosen;
    const bool stays = editor->runDialog([&] {
        chosen = PropertyDialogs::chooseFont(editor->window(), typed.isValid() ? typed.value<QFont>() : editor->font());
    });
    if (stays && chosen) {
        editor->choose(format(*chosen));
    }
}

} // namespace

PropertyEditor *FontEditor::create(const PropertyItem &item, QWidget *parent)
{
    auto *editor = new TextEntryEditor(item, codec, parent);
    editor->addButton(
        QStringLiteral("\u2026"), QCoreApplication::translate("PropertyBrowser", "Choose a font"), choose);
    return editor;
}

PropertyDisplay FontEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item) };
}

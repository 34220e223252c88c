#include "propertybrowser/editors/fonteditor.h"

#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertyitem.h"

#include <QCoreApplication>
#include <QFont>
#include <QStringList>

namespace {

QVariant fromStored(const QString &text)
{
    QFont font;
    // One comma or none: a family, perhaps with a size. Other counts that fromString() rejects make it warn.
    const int commas = text.count(QLatin1Char(','));
    const bool readable = !text.isEmpty() && (commas <= 1 || (commas >= 8 && commas <= 10));
    return readable && font.fromString(text) ? QVariant(font) : QVariant();
}

/// What may follow the family, with how it is written and applied.
struct Word
{
    QLatin1String text;
    bool (QFont::*isSet)() const;
    void (QFont::*set)(bool);
};

const Word words[] = {
    { QLatin1String("bold"), &QFont::bold, &QFont::setBold },
    { QLatin1String("italic"), &QFont::italic, &QFont::setItalic },
    { QLatin1String("underline"), &QFont::underline, &QFont::setUnderline },
    { QLatin1String("strikeout"), &QFont::strikeOut, &QFont::setStrikeOut },
};

QString format(const QVariant &value)
{
    const auto font = value.value<QFont>();
    QStringList parts { font.family() };
    if (font.pixelSize() > 0) {
        parts.append(QString::number(font.pixelSize()) + QLatin1String(" px"));
    } else {
        parts.append(QString::number(font.pointSizeF()) + QLatin1String(" pt"));
    }
    for (const Word &word : words) {
        if ((font.*word.isSet)()) {
            parts.append(word.text);
        }
    }
    return parts.join(QLatin1String(", "));
}

/// The word or size that may follow the family; false when it is neither.
bool apply(const QString &part, QFont *font)
{
    for (const Word &word : words) {
        if (part.compare(word.text, Qt::CaseInsensitive) == 0) {
            (font->*word.set)(true);
            return true;
        }
    }
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

QVariant parse(const PropertyItem &item, const QString &text)
{
    const QVariant old = item.value();
    // What the text doesn't speak of, the stretch for instance, stays.
    QFont font = (old.userType() == QMetaType::QString ? fromStored(old.toString()) : old).value<QFont>();
    const QStringList parts = text.split(QLatin1Char(','));
    const QString family = parts.first().trimmed();
    if (family.isEmpty()) {
        return {};
    }
    font.setFamily(family);
    for (const Word &word : words) {
        // A light or a demi-bold font is not "bold", nor is it to become a normal one.
        if ((font.*word.isSet)()) {
            (font.*word.set)(false);
        }
    }
    for (int i = 1; i < parts.size(); ++i) {
        if (!apply(parts.at(i).trimmed(), &font)) {
            return {};
        }
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

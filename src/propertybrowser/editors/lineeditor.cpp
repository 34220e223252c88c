#include "propertybrowser/editors/lineeditor.h"

#include "extensionfile/textpattern.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/wholematch.h"

const TextCodec &LineEditor::codec()
{
    static const TextCodec codec = [] {
        TextCodec c {};
        // Blanks around what is typed are no part of it: no file would bring them back.
        c.parse = [](const PropertyItem &item, const QString &typed) {
            const QString text = typed.trimmed();
            if (text.isEmpty() && item.data(PropertyKey::MayBeEmpty).toBool()) {
                return QVariant(text);
            }
            const bool matches = TextPattern::matches(WholeMatch::patternOf(item), text, TextPattern::Lines::One);
            return matches ? QVariant(text) : QVariant();
        };
        c.format = [](const QVariant &value) { return value.toString(); };
        c.hint = WholeMatch::hint;
        c.emptyIsText = true;
        return c;
    }();
    return codec;
}

PropertyEditor *LineEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, codec(), parent);
}

PropertyDisplay LineEditor::display(const PropertyItem &item)
{
    const QString shown = codec().shownText(item);
    const QString problem = codec().problemOf(item);
    return { shown, problem.isEmpty() ? WholeMatch::doubtAbout(item, shown) : problem };
}

#include "propertybrowser/editors/lineeditor.h"

#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/wholematch.h"

#include <QCoreApplication>

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
            const bool matches = WholeMatch::matches(WholeMatch::patternOf(item), text, WholeMatch::Lines::One);
            return matches ? QVariant(text) : QVariant();
        };
        c.format = [](const QVariant &value) { return value.toString(); };
        c.hint = [](const PropertyItem &item) {
            return QCoreApplication::translate("PropertyBrowser", "Must match %1").arg(WholeMatch::patternOf(item));
        };
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

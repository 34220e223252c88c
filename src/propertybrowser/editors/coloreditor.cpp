#include "propertybrowser/editors/coloreditor.h"

#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertyitem.h"

#include <QColor>
#include <QCoreApplication>
#include <QIcon>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QToolButton>

namespace {

QString format(const QVariant &value)
{
    const auto color = value.value<QColor>();
    if (!color.isValid()) {
        return value.toString();
    }
    return color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
}

const TextCodec codec = [] {
    TextCodec c {};
    c.parse = [](const PropertyItem & /*item*/, const QString &text) {
        return QColor::isValidColor(text) ? QVariant(QColor(text)) : QVariant();
    };
    c.format = format;
    c.hint = [](const PropertyItem & /*item*/) {
        return QCoreApplication::translate("PropertyBrowser", "A colour: #rrggbb, #aarrggbb or a name");
    };
    return c;
}();

void choose(TextEntryEditor *editor)
{
    QColor chosen;
    const auto current = editor->typedValue().value<QColor>();
    if (editor->runDialog([&] { chosen = PropertyDialogs::chooseColor(editor->window(), current); })
        && chosen.isValid()) {
        editor->choose(format(chosen));
    }
}

QIcon sample(const QColor &color, const QWidget *widget)
{
    const int side = widget->fontMetrics().ascent();
    const qreal ratio = widget->devicePixelRatioF();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(color.isValid() ? color : QColor(Qt::transparent));
    QPainter painter(&pixmap);
    painter.setPen(widget->palette().color(QPalette::Mid));
    painter.drawRect(0, 0, side - 1, side - 1);
    return QIcon(pixmap);
}

} // namespace

PropertyEditor *ColorEditor::create(const PropertyItem &item, QWidget *parent)
{
    auto *editor = new TextEntryEditor(item, codec, parent);
    QToolButton *button
        = editor->addButton(QString(), QCoreApplication::translate("PropertyBrowser", "Choose a colour"), choose);
    const auto showSample = [editor, button] { button->setIcon(sample(editor->typedValue().value<QColor>(), editor)); };
    showSample();
    QObject::connect(editor->line(), &QLineEdit::textChanged, button, showSample);
    return editor;
}

PropertyDisplay ColorEditor::display(const PropertyItem &item)
{
    return { codec.shownText(item), codec.problemOf(item), codec.ownValue(item).value<QColor>() };
}

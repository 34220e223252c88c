#include "propertybrowser/editors/recteditor.h"

#include "propertybrowser/editors/numberlistcodec.h"
#include "propertybrowser/editors/textentryeditor.h"

#include <QCoreApplication>
#include <QRect>

namespace {

struct RectKind
{
    static constexpr int Count = 4;

    static QString zero() { return QStringLiteral("0,0 0x0"); }
    static QString hint()
    {
        return QCoreApplication::translate("PropertyBrowser", "A rectangle as 10,20 640x480: corner, size");
    }
    static QVariant value(const QVector<int> &n) { return QRect(n.at(0), n.at(1), n.at(2), n.at(3)); }

    static QVector<int> of(const QVariant &value)
    {
        const QRect rect = value.toRect();
        return { rect.x(), rect.y(), rect.width(), rect.height() };
    }
};

const TextCodec rectCodec = numberListCodec<RectKind>();

} // namespace

PropertyEditor *RectEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, rectCodec, parent);
}

PropertyDisplay RectEditor::display(const PropertyItem &item)
{
    return { rectCodec.shownText(item), rectCodec.problemOf(item) };
}

#include "propertybrowser/editors/sizeeditor.h"

#include "propertybrowser/editors/numberlistcodec.h"
#include "propertybrowser/editors/textentryeditor.h"

#include <QCoreApplication>
#include <QSize>

namespace {

struct SizeKind
{
    static constexpr int Count = 2;

    static QString zero() { return QStringLiteral("0x0"); }
    static QString hint() { return QCoreApplication::translate("PropertyBrowser", "A size as 640x480"); }
    static QVariant value(const QVector<int> &n) { return QSize(n.at(0), n.at(1)); }

    static QVector<int> of(const QVariant &value)
    {
        const QSize size = value.toSize();
        return { size.width(), size.height() };
    }
};

const TextCodec sizeCodec = numberListCodec<SizeKind>();

} // namespace

PropertyEditor *SizeEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, sizeCodec, parent);
}

PropertyDisplay SizeEditor::display(const PropertyItem &item)
{
    return { sizeCodec.shownText(item), sizeCodec.problemOf(item) };
}

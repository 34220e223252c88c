#include "propertybrowser/editors/pointeditor.h"

#include "propertybrowser/editors/numberlistcodec.h"
#include "propertybrowser/editors/textentryeditor.h"

#include <QCoreApplication>
#include <QPoint>

namespace {

struct PointKind
{
    static constexpr int Count = 2;

    static QString zero() { return QStringLiteral("0,0"); }
    static QString hint() { return QCoreApplication::translate("PropertyBrowser", "A point as 10,20"); }
    static QVariant value(const QVector<int> &n) { return QPoint(n.at(0), n.at(1)); }

    static QVector<int> of(const QVariant &value)
    {
        const QPoint point = value.toPoint();
        return { point.x(), point.y() };
    }
};

const TextCodec pointCodec = numberListCodec<PointKind>();

} // namespace

PropertyEditor *PointEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new TextEntryEditor(item, pointCodec, parent);
}

PropertyDisplay PointEditor::display(const PropertyItem &item)
{
    return { pointCodec.shownText(item), pointCodec.problemOf(item) };
}

#include "draglabel.h"

#include <QPainter>
#include <QStyle>
#include <QTreeWidgetItem>
#include <QWidget>

namespace {

constexpr int padding = 5;     // pixels around and between icon and text
constexpr int widestText = 36; // average characters

} // namespace

DragLabel DragLabel::ofRow(const QTreeWidgetItem *row)
{
    return { row->icon(0), row->text(1).isEmpty() ? row->text(0) : row->text(1) };
}

QPixmap DragLabel::pixmap(const QWidget *widget) const
{
    const QFontMetrics metrics(widget->font());
    // One line, and nobody lays out the rest of a very long one.
    const QString line = text.left(4 * widestText).simplified();
    const QString shown = metrics.elidedText(line, Qt::ElideMiddle, metrics.averageCharWidth() * widestText);
    if (shown.isEmpty() && icon.isNull())
        return {};
    const int iconSize = icon.isNull() ? 0 : widget->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, widget);
    const int beforeText = padding + (iconSize > 0 ? iconSize + padding : 0);
    const QSize size(
        beforeText + metrics.horizontalAdvance(shown) + padding, qMax(iconSize, metrics.height()) + padding);

    const qreal ratio = widget->devicePixelRatioF();
    QPixmap pixmap(size * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(widget->font());
    const QPalette &palette = widget->palette();
    painter.setPen(palette.color(QPalette::Highlight));
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawRoundedRect(QRectF(QPointF(0, 0), size).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    if (iconSize > 0)
        icon.paint(&painter, padding, (size.height() - iconSize) / 2, iconSize, iconSize);
    painter.setPen(palette.color(QPalette::Text));
    painter.drawText(QRect(QPoint(beforeText, 0), size), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    return pixmap;
}

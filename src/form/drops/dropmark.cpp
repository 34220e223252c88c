#include "dropmark.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace {

constexpr qreal width = 2;

QColor mixed(const QColor &one, const QColor &other)
{
    return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2, (one.blue() + other.blue()) / 2);
}

/// The row may be a selected one, filled with the very colour of the mark. A seam in the colour of the background keeps
/// them apart.
void strokeWithSeam(QPainter *painter, const QPalette &palette, const QPen &pen, const QPainterPath &path)
{
    QPen seam(palette.color(QPalette::Base), pen.widthF() + 2);
    seam.setCapStyle(Qt::RoundCap);
    painter->strokePath(path, seam);
    painter->strokePath(path, pen);
}

void paintFrame(QPainter *painter, const QPalette &palette, const QRectF &row)
{
    QColor fill = palette.color(QPalette::Highlight);
    QPainterPath path;
    path.addRoundedRect(row, 3, 3);
    strokeWithSeam(painter, palette, QPen(fill, width), path);
    fill.setAlpha(50);
    painter->fillPath(path, fill);
}

void paintLine(QPainter *painter, const QPalette &palette, const QRectF &row, qreal y)
{
    constexpr qreal radius = 3;
    QPainterPath path;
    path.addEllipse(QPointF(row.left() + radius, y), radius, radius);
    path.moveTo(row.left() + 2 * radius, y);
    path.lineTo(row.right(), y);
    strokeWithSeam(painter, palette, QPen(palette.color(QPalette::Highlight), width), path);
}

void paintRefusal(QPainter *painter, const QPalette &palette, const QRectF &row)
{
    const QColor muted = mixed(palette.color(QPalette::Text), palette.color(QPalette::Base));
    QPainterPath path;
    path.addRoundedRect(row, 3, 3);
    strokeWithSeam(painter, palette, QPen(muted, 1, Qt::DashLine), path);

    // The sign is on a patch of its own, so that it can be told from the row's text.
    const qreal size = qMin<qreal>(row.height() - 4, 14);
    const QRectF sign(row.right() - size - 5, row.center().y() - size / 2, size, size);
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette.color(QPalette::Base));
    painter->drawEllipse(sign.adjusted(-2, -2, 2, 2));
    painter->setPen(QPen(muted, width));
    painter->setBrush(Qt::NoBrush);
    const QRectF ring = sign.adjusted(1, 1, -1, -1);
    painter->drawEllipse(ring);
    const qreal reach = ring.width() / 2 * 0.7;
    painter->drawLine(ring.center() + QPointF(-reach, -reach), ring.center() + QPointF(reach, reach));
}

} // namespace

void DropMark::paint(QPainter *painter, const QPalette &palette, const QRect &row, DropPlan::Place place)
{
    if (row.isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF inner = QRectF(row).adjusted(1.5, 1.5, -1.5, -1.5);
    switch (place) {
    case DropPlan::Place::Into:
        paintFrame(painter, palette, inner);
        break;
    case DropPlan::Place::Before:
        paintLine(painter, palette, inner, inner.top());
        break;
    case DropPlan::Place::After:
        paintLine(painter, palette, inner, inner.bottom());
        break;
    case DropPlan::Place::Nothing:
        paintRefusal(painter, palette, inner);
        break;
    }
    painter->restore();
}

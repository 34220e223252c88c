#include "propertybrowser/invalidmark.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace {

constexpr double LeastContrast = 4.5;

// In the pixels of a plain screen.
constexpr double WaveStep = 3.0; ///< half a wave
constexpr double WaveHeight = 2.0;
constexpr double WaveWidth = 1.2; ///< of the pen
constexpr double WaveMargin = 2.0;
constexpr int Waves = 4; ///< in a tile

double luminance(const QColor &color)
{
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// From `start`, which is down, to the right.
void strokeWave(QPainter *painter, const QPointF &start, double length, const QColor &color)
{
    QPainterPath wave(start);
    bool up = true;
    for (double x = WaveStep; x <= length; x += WaveStep) {
        wave.lineTo(start.x() + x, start.y() - (up ? WaveHeight : 0));
        up = !up;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color, WaveWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(wave);
    painter->restore();
}

} // namespace

InvalidMark::InvalidMark(QWidget *target) : QWidget(target->parentWidget()), m_target(target)
{
    setObjectName(QStringLiteral("invalidMark"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    target->installEventFilter(this);
    follow();
    hide();
}

QColor InvalidMark::color(const QColor &background, const QColor &text)
{
    const QColor reds[] = { QColor(0xc6, 0x28, 0x28), QColor(0xff, 0x8a, 0x80) };
    const QColor best = contrast(reds[0], background) >= contrast(reds[1], background) ? reds[0] : reds[1];
    return contrast(best, background) >= LeastContrast ? best : text;
}

void InvalidMark::paintWave(QPainter *painter, const QRectF &rect, const QColor &color)
{
    // A few waves, repeated: stroking hundreds of short lines takes longer than all else in a sheet.
    const double ratio = painter->device()->devicePixelRatioF();
    const QSizeF size(Waves * 2 * WaveStep, WaveHeight + 2 * WaveMargin);
    const QPointF place(std::floor(rect.left()), std::floor(rect.bottom() - WaveHeight - WaveMargin));
    const QSizeF pixels = size * ratio;
    const double length = std::floor(rect.width() / WaveStep) * WaveStep;
    if (length <= 0) {
        return;
    }
    if (pixels.toSize() != pixels) {
        // It would not join in the middle of a pixel.
        strokeWave(painter, QPointF(rect.left(), rect.bottom()), length, color);
        return;
    }
    QPixmap tile(pixels.toSize());
    tile.setDevicePixelRatio(ratio);
    tile.fill(Qt::transparent);
    {
        QPainter onTile(&tile);
        const QPointF start = QPointF(rect.left(), rect.bottom()) - place;
        strokeWave(&onTile, start - QPointF(2 * WaveStep, 0), size.width() + 4 * WaveStep, color);
    }
    painter->drawTiledPixmap(QRectF(place, QSizeF(length, size.height())), tile);
}

bool InvalidMark::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_target && (event->type() == QEvent::Resize || event->type() == QEvent::Move)) {
        follow();
    }
    return QWidget::eventFilter(watched, event);
}

void InvalidMark::paintEvent(QPaintEvent * /*event*/)
{
    const QPalette palette = m_target->palette();
    const QColor ink = color(palette.color(QPalette::Base), palette.color(QPalette::Text));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), 2, 2);
    paintWave(&painter, QRectF(rect()).adjusted(4, 0, -4, -3.5), ink);
}

void InvalidMark::follow()
{
    setGeometry(m_target->geometry());
    raise();
}

#include "propertybrowser/invalidmark.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double LeastContrast = 4.5;

// In the pixels of a plain screen.
constexpr double WaveStep = 3.0; ///< half a wave
constexpr double WaveHeight = 2.0;
constexpr double WaveWidth = 1.2; ///< of the pen

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

QColor InvalidMark::paler(const QColor &background, const QColor &text)
{
    constexpr int steps = 20;
    QColor pale = text;
    for (int step = 1; step < steps; ++step) {
        const double share = double(step) / steps;
        const auto mixed = [share](double from, double to) { return from + (to - from) * share; };
        const QColor next = QColor::fromRgbF(mixed(text.redF(), background.redF()),
            mixed(text.greenF(), background.greenF()), mixed(text.blueF(), background.blueF()));
        if (contrast(next, background) < LeastContrast) {
            break;
        }
        pale = next;
    }
    return pale;
}

void InvalidMark::paintWave(QPainter *painter, const QRectF &rect, const QColor &color)
{
    QPainterPath wave(rect.bottomLeft());
    bool up = true;
    for (double x = WaveStep; x <= rect.width(); x += WaveStep) {
        wave.lineTo(rect.left() + x, rect.bottom() - (up ? WaveHeight : 0));
        up = !up;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color, WaveWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(wave);
    painter->restore();
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

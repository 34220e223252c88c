#include "core/frameslices.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

namespace Core {

namespace {

/// As QPainter::fillRect(), but each part that children leave by itself, for a clip of one rectangle is quick.
void fillBetweenChildren(QPainter *painter, const QRect &rect, const QColor &color)
{
    const QPaintEngine *engine = painter->paintEngine();
    const QRegion seen = engine ? engine->systemClip() : QRegion();
    if (seen.rectCount() <= 1 || painter->hasClipping()) {
        painter->fillRect(rect, color);
        return;
    }
    const QTransform &toDevice = painter->deviceTransform();
    const QPoint offset(qRound(toDevice.dx()), qRound(toDevice.dy()));
    painter->save();
    for (const QRect &part : seen.intersected(rect.translated(offset))) {
        painter->setClipRect(part.translated(-offset));
        painter->fillRect(part.translated(-offset), color);
    }
    painter->restore();
}

} // namespace

FrameSlices::FrameSlices(const QImage &picture)
    : m_picture(picture), m_middle(picture.width() / 2), m_last(picture.width() - 1)
{
    const QRgb ground = m_picture.pixel(m_middle, m_middle);
    const auto width = [&](int x, int y, int dx, int dy) {
        int lines = 0;
        while (m_picture.pixel(x + lines * dx, y + lines * dy) != ground)
            ++lines;
        return lines;
    };
    m_edges = { width(0, m_middle, 1, 0), width(m_middle, 0, 0, 1), width(m_last, m_middle, -1, 0),
        width(m_middle, m_last, 0, -1) };
}

bool FrameSlices::canPaint(const QPainter &painter)
{
    return painter.deviceTransform().type() <= QTransform::TxTranslate && painter.device()
        && qFuzzyCompare(painter.device()->devicePixelRatioF(), 1.0);
}

void FrameSlices::paint(QPainter *painter, const QRect &frame) const
{
    const QRect inner = frame.marginsRemoved(m_edges);
    paintPart(painter, inner, m_middle, m_middle);
    for (int line = 0; line < m_edges.left(); ++line)
        paintPart(painter, { frame.left() + line, inner.top(), 1, inner.height() }, line, m_middle);
    for (int line = 0; line < m_edges.top(); ++line)
        paintPart(painter, { inner.left(), frame.top() + line, inner.width(), 1 }, m_middle, line);
    for (int line = 0; line < m_edges.right(); ++line)
        paintPart(painter, { frame.right() - line, inner.top(), 1, inner.height() }, m_last - line, m_middle);
    for (int line = 0; line < m_edges.bottom(); ++line)
        paintPart(painter, { inner.left(), frame.bottom() - line, inner.width(), 1 }, m_middle, m_last - line);

    const int right = m_last + 1 - m_edges.right();
    const int bottom = m_last + 1 - m_edges.bottom();
    paintCorner(painter, frame.topLeft(), { 0, 0, m_edges.left(), m_edges.top() });
    paintCorner(painter, { inner.right() + 1, frame.top() }, { right, 0, m_edges.right(), m_edges.top() });
    paintCorner(painter, { frame.left(), inner.bottom() + 1 }, { 0, bottom, m_edges.left(), m_edges.bottom() });
    paintCorner(
        painter, { inner.right() + 1, inner.bottom() + 1 }, { right, bottom, m_edges.right(), m_edges.bottom() });
}

void FrameSlices::paintPart(QPainter *painter, const QRect &part, int x, int y) const
{
    const QColor color = m_picture.pixelColor(x, y);
    if (color.alpha() > 0)
        fillBetweenChildren(painter, part, color);
}

void FrameSlices::paintCorner(QPainter *painter, const QPoint &place, const QRect &source) const
{
    // An empty rectangle would mean the whole picture.
    if (!source.isEmpty())
        painter->drawImage(place, m_picture, source);
}

} // namespace Core

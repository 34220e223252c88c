#pragma once

#include <QImage>
#include <QMargins>

class QPainter;

namespace Core {

/// The corners, edges and ground of a frame, taken from a small picture of it. A style that strokes a frame has it cut,
/// each line of the screen by itself, to what the children of the widget leave; filling the edges of a high one within
/// what they leave takes a tenth of that.
class FrameSlices final
{
public:
    /// \a picture: square, of a frame whose edges are no more than a third of it each, and of one color lengthwise.
    explicit FrameSlices(const QImage &picture);

    /// False where a pixel of the picture is not one of the painter's.
    static bool canPaint(const QPainter &painter);

    /// \a frame: no smaller than the picture.
    void paint(QPainter *painter, const QRect &frame) const;

private:
    void paintPart(QPainter *painter, const QRect &part, int x, int y) const;
    void paintCorner(QPainter *painter, const QPoint &place, const QRect &source) const;

    QImage m_picture;
    int m_middle;
    int m_last;
    QMargins m_edges; ///< pixels, without lines that look like the ground
};

} // namespace Core

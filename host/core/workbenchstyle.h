#pragma once

#include "core/core_global.h"

#include <QProxyStyle>

namespace Core {

/// The style that the program has anyway, without the pictures that it reads from files: each picture costs the loading
/// of every image plug-in, before the first window is on screen, and looks coarse on a dense one. Icons of what is
/// mostly hidden are made when they are painted, and the frame of a group box is drawn. Other frames look as the style
/// has them, but their edges are filled instead of stroked. GUI thread; QApplication owns it.
class CORE_EXPORT WorkbenchStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    /// \a base as for QProxyStyle: taken over; null for the program's default style.
    explicit WorkbenchStyle(QStyle *base = nullptr);

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
        const QWidget *widget = nullptr) const override;

private:
    void drawGroupBox(const QStyleOption &option, QPainter *painter, const QWidget *widget) const;
    /// False: not a frame that can be drawn here.
    template <typename Option>
    bool drawFrame(PrimitiveElement element, const Option &option, QPainter *painter, const QWidget *widget) const;

    bool m_isFusion;
};

} // namespace Core

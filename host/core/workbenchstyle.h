#pragma once

#include "core/core_global.h"

#include <QProxyStyle>

namespace Core {

/// The style that the program has anyway, without the pictures that Fusion reads from files for the first window: the
/// first of them costs the loading of every image plug-in. The frame of a group box is drawn, and icons of what is
/// mostly hidden are made when they are painted.
///
/// What Fusion only hints at on dark grounds is drawn to be seen: the frames of boxes that are not ticked, and of
/// fields and views that have the focus. A selection in a view without the focus has the colours of an inactive window.
/// GUI thread; QApplication owns it.
class CORE_EXPORT WorkbenchStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr) const override;
};

} // namespace Core

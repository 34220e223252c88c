#pragma once

#include "core/core_global.h"

#include <QProxyStyle>

namespace Core {

/// The style that the program has anyway, without the pictures that Fusion reads from files for the first window: the
/// first of them costs the loading of every image plug-in. The frame of a group box is drawn, and icons of what is
/// mostly hidden are made when they are painted. GUI thread; QApplication owns it.
class CORE_EXPORT WorkbenchStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr) const override;
};

} // namespace Core

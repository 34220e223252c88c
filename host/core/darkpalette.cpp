#include "core/darkpalette.h"

#include "core/workbenchstyle.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace Core {

void useDarkPalette()
{
    const QColor window(0x2d, 0x2f, 0x33);
    const QColor base(0x1f, 0x21, 0x24);
    const QColor text(0xe6, 0xe6, 0xe6);
    const QColor faint(0x9d, 0xa0, 0xa5);
    const QColor accent(0x36, 0x74, 0xbd);

    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, base.lighter(130));
    palette.setColor(QPalette::ToolTipBase, window.lighter(120));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, window.lighter(115));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, QColor(0xff, 0x6b, 0x60));
    palette.setColor(QPalette::Link, accent.lighter(140));
    palette.setColor(QPalette::LinkVisited, QColor(0xb2, 0x94, 0xe0));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, window.lighter(150));

    QApplication::setStyle(new WorkbenchStyle(QStyleFactory::create(QStringLiteral("Fusion"))));
    QApplication::setPalette(palette);
}

} // namespace Core

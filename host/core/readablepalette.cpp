#include "core/readablepalette.h"

#include <algorithm>
#include <cmath>

namespace Core {

namespace {

double luminance(const QColor &color)
{
    const auto linear
        = [](double part) { return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    const auto part = [share](double a, double b) { return a + (b - a) * share; };
    return QColor::fromRgbF(
        part(from.redF(), to.redF()), part(from.greenF(), to.greenF()), part(from.blueF(), to.blueF()));
}

} // namespace

double contrast(const QColor &left, const QColor &right)
{
    const double first = luminance(left) + 0.05;
    const double second = luminance(right) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

QColor standingOut(const QColor &ink, const QColor &ground, double least)
{
    constexpr int steps = 20;
    const QColor end = contrast(Qt::black, ground) > contrast(Qt::white, ground) ? Qt::black : Qt::white;
    QColor found = ink;
    for (int step = 1; step <= steps && contrast(found, ground) < least; ++step)
        found = mixed(ink, end, double(step) / steps);
    return found;
}

QPalette readable(QPalette palette)
{
    using Role = QPalette::ColorRole;
    static const std::pair<Role, Role> inks[] = { { QPalette::Text, QPalette::AlternateBase },
        { QPalette::Text, QPalette::Base }, { QPalette::PlaceholderText, QPalette::Base },
        { QPalette::WindowText, QPalette::Window }, { QPalette::ButtonText, QPalette::Button },
        { QPalette::ToolTipText, QPalette::ToolTipBase }, { QPalette::Link, QPalette::Window },
        { QPalette::Link, QPalette::Base }, { QPalette::HighlightedText, QPalette::Highlight } };
    // White on the highlight's colour is what people know, so it is that which gives way.
    const QColor onHighlight = palette.color(QPalette::Active, QPalette::HighlightedText);
    palette.setColor(QPalette::Active, QPalette::Highlight,
        standingOut(palette.color(QPalette::Active, QPalette::Highlight), onHighlight, readableContrast));
    const QColor unfocused
        = mixed(palette.color(QPalette::Active, QPalette::Highlight), palette.color(QPalette::Base), 0.6);
    for (const auto group : { QPalette::Inactive, QPalette::Disabled }) {
        palette.setColor(group, QPalette::Highlight, unfocused);
        palette.setColor(group, QPalette::HighlightedText, palette.color(group, QPalette::Text));
    }
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        for (const auto &[ink, ground] : inks)
            palette.setColor(
                group, ink, standingOut(palette.color(group, ink), palette.color(group, ground), readableContrast));
    }
    return palette;
}

QPalette darkPalette()
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
    return palette;
}

} // namespace Core

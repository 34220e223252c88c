#include "core/workbenchstyle.h"

#include "core/readablepalette.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QGroupBox>
#include <QIconEngine>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>

namespace Core {

namespace {

/// An icon of a style that is made when it is painted.
class LateIcon final : public QIconEngine
{
public:
    LateIcon(const QProxyStyle *style, QStyle::StandardPixmap which) : m_style(style), m_which(which) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }
    [[nodiscard]] QIconEngine *clone() const override { return new LateIcon(*this); }

private:
    [[nodiscard]] QIcon icon() const { return m_style ? m_style->baseStyle()->standardIcon(m_which) : QIcon(); }

    QPointer<const QProxyStyle> m_style;
    QStyle::StandardPixmap m_which;
};

/// The ground of a group box begins below its title, as Fusion has it.
QRect frameOf(const QStyle &style, const QStyleOption &option, const QWidget *widget)
{
    const auto *group = qobject_cast<const QGroupBox *>(widget);
    int top = 3;
    if (!group || group->isCheckable() || !group->title().isEmpty())
        top += qMax(style.pixelMetric(QStyle::PM_ExclusiveIndicatorHeight), option.fontMetrics.height());
    return option.rect.adjusted(0, top, 0, 0);
}

/// Whether what is selected in the view is not what the keys go to.
bool isWithoutFocus(const QWidget *view)
{
    const QWidget *focus = QApplication::focusWidget();
    return view && focus != view && !view->isAncestorOf(focus);
}

void strokeFrame(QPainter *painter, const QRect &rect, const QColor &color)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(color);
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter->restore();
}

} // namespace

void WorkbenchStyle::drawControl(
    ControlElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option);
    if (element != CE_ItemViewItem || !item || !isWithoutFocus(item->widget)) {
        QProxyStyle::drawControl(element, option, painter, widget);
        // Fusion shows a button's only after Tab, and none of a link or of a menu's title.
        const bool isTitle = element == CE_MenuBarItem && option->state.testFlag(State_Selected)
            && !option->state.testFlag(State_Sunken);
        if (isTitle || (element == CE_PushButton && option->state.testFlag(State_HasFocus)))
            strokeFrame(painter, option->rect,
                standingOut(option->palette.color(QPalette::Highlight), option->palette.color(QPalette::Window),
                    visibleContrast));
        return;
    }
    QStyleOptionViewItem inactive(*item);
    inactive.state &= ~State_Active;
    QProxyStyle::drawControl(element, &inactive, painter, widget);
}

void WorkbenchStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex *option, QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if ((control == CC_ComboBox || control == CC_SpinBox) && option->state.testFlag(State_HasFocus))
        strokeFrame(painter, option->rect,
            standingOut(
                option->palette.color(QPalette::Highlight), option->palette.color(QPalette::Window), visibleContrast));
}

void WorkbenchStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option);
    if ((element == PE_PanelItemViewRow || element == PE_PanelItemViewItem) && item && isWithoutFocus(widget)) {
        QStyleOptionViewItem inactive(*item);
        inactive.state &= ~State_Active;
        QProxyStyle::drawPrimitive(element, &inactive, painter, widget);
        return;
    }
    // Fusion lays the colour of selections over the row, which takes its text's contrast; a frame is enough.
    const auto *focus = qstyleoption_cast<const QStyleOptionFocusRect *>(option);
    if (element == PE_FrameFocusRect && focus && qobject_cast<const QAbstractItemView *>(widget)) {
        const QColor ground
            = focus->backgroundColor.isValid() ? focus->backgroundColor : option->palette.color(QPalette::Base);
        strokeFrame(
            painter, option->rect, standingOut(option->palette.color(QPalette::Highlight), ground, visibleContrast));
        return;
    }
    if (element != PE_FrameGroupBox) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        const QPalette &palette = option->palette;
        const QColor base = palette.color(QPalette::Base);
        if (element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck)
            strokeFrame(painter, option->rect.adjusted(1, 1, -1, -1),
                standingOut(palette.color(QPalette::Mid), base, visibleContrast));
        else if (option->state.testFlag(State_HasFocus)
            && (element == PE_PanelLineEdit
                || (element == PE_Frame && qobject_cast<const QAbstractItemView *>(widget))))
            strokeFrame(painter, option->rect, standingOut(palette.color(QPalette::Highlight), base, visibleContrast));
        return;
    }
    QColor color = option->palette.color(QPalette::WindowText);
    const QRect box = frameOf(*this, *option, widget);
    const QRect inner = box.adjusted(1, 1, -1, -1);
    color.setAlpha(8);
    painter->fillRect(inner, color);
    // Filled, for what is stroked is cut to what the children leave, line by line; the corners look round so.
    color.setAlpha(44);
    painter->fillRect(inner.left(), box.top(), inner.width(), 1, color);
    painter->fillRect(inner.left(), box.bottom(), inner.width(), 1, color);
    painter->fillRect(box.left(), inner.top(), 1, inner.height(), color);
    painter->fillRect(box.right(), inner.top(), 1, inner.height(), color);
}

QIcon WorkbenchStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption *option, const QWidget *widget) const
{
    // In every menu bar and in every field that can be cleared; seen in few.
    if (standardIcon == SP_ToolBarHorizontalExtensionButton || standardIcon == SP_LineEditClearButton)
        return QIcon(new LateIcon(this, standardIcon));
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}

} // namespace Core

#include "core/workbenchstyle.h"

#include "core/frameslices.h"

#include <QAbstractItemModel>
#include <QGroupBox>
#include <QHeaderView>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>

namespace Core {

namespace {

constexpr int GroupMargin = 3; // pixels above the frame, as Fusion has it
constexpr int FrameAlpha = 44;
constexpr int GroundAlpha = 8;

constexpr int PictureSize = 16; // pixels; Fusion's widest edge has three


/// An icon of a style that is made when it is asked for anything.
class LaterIcon final : public QIconEngine
{
public:
    LaterIcon(const QProxyStyle *style, QStyle::StandardPixmap which) : m_style(style), m_which(which) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }
    [[nodiscard]] QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override
    {
        return icon().availableSizes(mode, state);
    }
    [[nodiscard]] QString iconName() const override { return icon().name(); }
    [[nodiscard]] QIconEngine *clone() const override { return new LaterIcon(*this); }

private:
    [[nodiscard]] const QIcon &icon() const
    {
        if (m_icon.isNull() && m_style)
            m_icon = m_style->baseStyle()->standardIcon(m_which);
        return m_icon;
    }

    QPointer<const QProxyStyle> m_style;
    QStyle::StandardPixmap m_which;
    mutable QIcon m_icon;
};

/// The ground of a group box begins below its title, as Fusion has it.
QRect frameOf(const QStyle &style, const QStyleOption &option, const QWidget *widget)
{
    const auto *group = qobject_cast<const QGroupBox *>(widget);
    int top = GroupMargin;
    if (!group || group->isCheckable() || !group->title().isEmpty())
        top += qMax(style.pixelMetric(QStyle::PM_ExclusiveIndicatorHeight), option.fontMetrics.height());
    return option.rect.adjusted(0, top, 0, 0);
}

} // namespace

WorkbenchStyle::WorkbenchStyle(QStyle *base)
    : QProxyStyle(base),
      m_isFusion(baseStyle()->objectName().compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0)
{ }

void WorkbenchStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    if (m_isFusion && element == PE_FrameGroupBox) {
        drawGroupBox(*option, painter, widget);
        return;
    }
    const auto *tabs = qstyleoption_cast<const QStyleOptionTabWidgetFrame *>(option);
    if (m_isFusion && element == PE_Frame && drawFrame(element, *option, painter, widget))
        return;
    if (m_isFusion && element == PE_FrameTabWidget && tabs && drawFrame(element, *tabs, painter, widget))
        return;
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void WorkbenchStyle::drawGroupBox(const QStyleOption &option, QPainter *painter, const QWidget *widget) const
{
    QColor frame = option.palette.color(QPalette::WindowText);
    QColor ground = frame;
    frame.setAlpha(FrameAlpha);
    ground.setAlpha(GroundAlpha);
    const QRect box = frameOf(*this, option, widget);
    const QRect inner = box.adjusted(1, 1, -1, -1);
    painter->fillRect(inner, ground);
    // Without the corners, which look round so.
    painter->fillRect(inner.left(), box.top(), inner.width(), 1, frame);
    painter->fillRect(inner.left(), box.bottom(), inner.width(), 1, frame);
    painter->fillRect(box.left(), inner.top(), 1, inner.height(), frame);
    painter->fillRect(box.right(), inner.top(), 1, inner.height(), frame);
}

template <typename Option>
bool WorkbenchStyle::drawFrame(
    PrimitiveElement element, const Option &option, QPainter *painter, const QWidget *widget) const
{
    const bool isLarge = qMin(option.rect.width(), option.rect.height()) >= PictureSize;
    if (!isLarge || !FrameSlices::canPaint(*painter))
        return false;
    QImage picture(PictureSize, PictureSize, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    {
        Option small(option);
        small.rect = picture.rect();
        QPainter onPicture(&picture);
        QProxyStyle::drawPrimitive(element, &small, &onPicture, widget);
    }
    FrameSlices(picture).paint(painter, option.rect);
    return true;
}

QIcon WorkbenchStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption *option, const QWidget *widget) const
{
    // In every menu bar and in every field that can be cleared; seen in few.
    if (standardIcon == SP_ToolBarHorizontalExtensionButton || standardIcon == SP_LineEditClearButton)
        return QIcon(new LaterIcon(this, standardIcon));
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}

QSize WorkbenchStyle::sizeFromContents(
    ContentsType type, const QStyleOption *option, const QSize &size, const QWidget *widget) const
{
    const auto *header = type == CT_HeaderSection ? qobject_cast<const QHeaderView *>(widget) : nullptr;
    const auto *section = qstyleoption_cast<const QStyleOptionHeader *>(option);
    if (!header || !section || header->highlightSections() || !header->model()
        || header->model()->headerData(section->section, header->orientation(), Qt::FontRole).isValid())
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    QStyleOptionHeader asShown(*section);
    asShown.fontMetrics = header->fontMetrics();
    return QProxyStyle::sizeFromContents(type, &asShown, size, widget);
}

} // namespace Core

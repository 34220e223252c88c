#include "formattabbar.h"

#include "form/drops/pointdrop.h"
#include "form/realizationtablewidget.h"
#include "form/treeitemmimedata.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QEvent>
#include <QIcon>
#include <QPixmap>
#include <QStyleOption>
#include <QStylePainter>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>

namespace {

/// Only a derived class may exchange the bar.
struct Opened : QTabWidget
{
    using QTabWidget::setTabBar;
};

/// Whether other tabs have places for what is dragged.
bool goesElsewhere(const QDropEvent *event)
{
    return qobject_cast<RealizationTableWidget *>(event->source())
        || PointDrop::takes(TreeItemMimeData::nodeOf(event->mimeData()));
}

} // namespace

void FormatTabBar::putInto(QTabWidget *tabs)
{
    auto *bar = new FormatTabBar(tabs);
    bar->setObjectName(tabs->tabBar()->objectName());
    // The frame around the page is the base.
    bar->setDrawBase(false);
    bar->setAcceptDrops(true);
    // The arrows of the keyboard do what those of the bar do.
    for (QToolButton *arrow : bar->findChildren<QToolButton *>())
        arrow->setFocusPolicy(Qt::NoFocus);
    (tabs->*&Opened::setTabBar)(bar);
    tabs->setElideMode(Qt::ElideNone);
}

QSize FormatTabBar::tabSizeHint(int index) const
{
    const Look look(tabText(index), !tabIcon(index).isNull());
    if (index >= m_measured.size())
        m_measured.resize(count());
    Measured &measured = m_measured[index];
    // Nearly always the very same string; another one when tabs have come or gone before it.
    if (measured.size.isValid() && measured.hasIcon == look.second && measured.label == look.first)
        return measured.size;
    const auto known = m_sizes.constFind(look);
    const QSize size = known != m_sizes.constEnd() ? *known : QTabBar::tabSizeHint(index);
    m_sizes.insert(look, size);
    measured = { look.first, look.second, size };
    return size;
}

void FormatTabBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        m_sizes.clear();
        m_measured.clear();
    }
    QTabBar::changeEvent(event);
}

void FormatTabBar::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    // The buttons that scroll cover the end.
    int right = width();
    const auto buttons = findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QToolButton *button : buttons) {
        if (button->isVisible())
            right = qMin(right, button->x());
    }
    int cutLeft = -1;
    int cutRight = -1;
    for (int index = 0; index < count(); ++index) {
        const QRect rect = tabRect(index);
        if (rect.right() < 0)
            continue;
        if (rect.left() >= width())
            break;
        if (rect.left() < 0)
            cutLeft = index;
        if (rect.right() > right && rect.left() < right)
            cutRight = index;
        if (index != currentIndex())
            paintTab(painter, index);
    }
    if (currentIndex() >= 0)
        paintTab(painter, currentIndex());
    if (cutLeft >= 0)
        paintTear(painter, cutLeft, true);
    if (cutRight >= 0)
        paintTear(painter, cutRight, false);
    if (!m_showsIcons) {
        QTimer::singleShot(0, this, [this] {
            m_showsIcons = true;
            update();
        });
    }
}

void FormatTabBar::paintTab(QStylePainter &painter, int index)
{
    QStyleOptionTab option;
    initStyleOption(&option, index);
    if (!m_showsIcons && !option.icon.isNull()) {
        QPixmap blank(option.iconSize);
        blank.fill(Qt::transparent);
        option.icon = QIcon(blank);
    }
    painter.drawControl(QStyle::CE_TabBarTab, option);
}

void FormatTabBar::paintTear(QStylePainter &painter, int index, bool left)
{
    QStyleOptionTab option;
    initStyleOption(&option, index);
    option.rect = rect();
    option.rect = style()->subElementRect(
        left ? QStyle::SE_TabBarTearIndicatorLeft : QStyle::SE_TabBarTearIndicatorRight, &option, this);
    painter.drawPrimitive(left ? QStyle::PE_IndicatorTabTearLeft : QStyle::PE_IndicatorTabTearRight, option);
}

void FormatTabBar::dragEnterEvent(QDragEnterEvent *event)
{
    // Else there is no news of where it moves to.
    event->setAccepted(goesElsewhere(event));
}

void FormatTabBar::dragMoveEvent(QDragMoveEvent *event)
{
    hover(tabAt(event->pos()));
    event->ignore();
}

void FormatTabBar::dragLeaveEvent(QDragLeaveEvent *event)
{
    hover(-1);
    QTabBar::dragLeaveEvent(event);
}

void FormatTabBar::dropEvent(QDropEvent *event)
{
    hover(-1);
    event->ignore();
}

void FormatTabBar::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_hoverTimer.timerId())
        return QTabBar::timerEvent(event);
    m_hoverTimer.stop();
    if (m_hovered < count())
        setCurrentIndex(m_hovered);
}

void FormatTabBar::hover(int index)
{
    if (index == m_hovered)
        return;
    m_hovered = index;
    if (index < 0 || index == currentIndex())
        m_hoverTimer.stop();
    else
        m_hoverTimer.start(hoverDelay, this);
}

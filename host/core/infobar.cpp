#include "core/infobar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

namespace Core {

namespace {

constexpr double AccentShare = 0.2;
const QColor accent(0xe8, 0xa3, 0x17);

QColor mixed(const QColor &base, const QColor &other, double share)
{
    const auto part = [share](int a, int b) { return int(a + (b - a) * share); };
    return { part(base.red(), other.red()), part(base.green(), other.green()), part(base.blue(), other.blue()) };
}

} // namespace

InfoBar::InfoBar(const QString &objectName, QWidget *parent)
    : QFrame(parent), m_icon(new QLabel(this)), m_text(new QLabel(this)), m_buttons(new QHBoxLayout)
{
    setObjectName(objectName);
    hide();
    m_text->setObjectName(objectName + QLatin1String("Text"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setMinimumWidth(120);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 6, 8, 7);
    layout->setSpacing(10);
    layout->addWidget(m_icon);
    layout->addWidget(m_text, 1);
    layout->addLayout(m_buttons);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void InfoBar::tell(const QString &text)
{
    const bool news = isHidden() || text != m_text->text();
    if (m_icon->pixmap(Qt::ReturnByValue).isNull()) {
        const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        m_icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    }
    m_text->setText(text);
    setAccessibleName(text);
    show();
    if (news) {
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

QPushButton *InfoBar::addButton(const QString &objectName, const QString &text)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    m_buttons->addWidget(button);
    return button;
}

void InfoBar::paintEvent(QPaintEvent *)
{
    const QColor window = palette().color(QPalette::Window);
    QPainter painter(this);
    painter.fillRect(rect(), mixed(window, accent, AccentShare));
    painter.setPen(mixed(window, accent, 3 * AccentShare));
    painter.drawLine(rect().bottomLeft(), rect().bottomRight());
}

} // namespace Core

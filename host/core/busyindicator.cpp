#include "core/busyindicator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

namespace Core {

namespace {
constexpr int DelayMilliseconds = 150;
}

BusyIndicator::BusyIndicator(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("busyIndicator"));
    auto *label = new QLabel(tr("Reading plug-ins…"), this);
    auto *bar = new QProgressBar(this);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setFixedWidth(120);
    bar->setMaximumHeight(label->sizeHint().height());
    bar->setAccessibleName(label->text());
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 4, 0);
    layout->addWidget(label);
    layout->addWidget(bar);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();

    m_delay.setSingleShot(true);
    m_delay.setInterval(DelayMilliseconds);
    connect(&m_delay, &QTimer::timeout, this, &QWidget::show);
}

void BusyIndicator::setBusy(bool busy)
{
    if (!busy) {
        m_delay.stop();
        hide();
    } else if (!isVisible() && !m_delay.isActive()) {
        m_delay.start();
    }
}

} // namespace Core

#include "core/busymonitor.h"

#include "core/idocument.h"

#include <QDynamicPropertyChangeEvent>
#include <QThreadPool>
#include <QVariant>

#include <algorithm>

namespace Core {

namespace {

constexpr char BusyProperty[] = "busy";
constexpr int FastInterval = 40; // milliseconds
constexpr int SlowInterval = 500;
constexpr int QuietLooksUntilSlow = 10;

} // namespace

BusyMonitor::BusyMonitor(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &BusyMonitor::look);
}

void BusyMonitor::addDocument(IDocument *document)
{
    m_documents.append(document);
    document->installEventFilter(this);
    m_quietLooks = 0;
    m_timer.start(FastInterval);
}

bool BusyMonitor::isBusy() const
{
    return QThreadPool::globalInstance()->activeThreadCount() > 0
        || std::any_of(m_documents.cbegin(), m_documents.cend(),
            [](const QPointer<QObject> &document) { return document && document->property(BusyProperty).toBool(); });
}

bool BusyMonitor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::DynamicPropertyChange
        && static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName() == BusyProperty) {
        m_quietLooks = 0;
        m_timer.start(FastInterval);
        look();
    }
    return QObject::eventFilter(watched, event);
}

void BusyMonitor::look()
{
    m_documents.removeAll(QPointer<QObject>());
    const bool busy = isBusy();
    m_quietLooks = busy ? 0 : m_quietLooks + 1;
    if (m_documents.isEmpty() && !busy)
        m_timer.stop();
    else if (m_quietLooks == QuietLooksUntilSlow)
        m_timer.start(SlowInterval);
    else if (busy && m_timer.interval() != FastInterval)
        m_timer.start(FastInterval);
    if (busy == m_wasBusy)
        return;
    m_wasBusy = busy;
    Q_EMIT busyChanged(busy);
}

} // namespace Core

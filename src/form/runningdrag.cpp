#include "runningdrag.h"

#include "draglabel.h"

#include <QDrag>
#include <QMimeData>
#include <QWidget>

#include <memory>

RunningDrag::~RunningDrag()
{
    if (!m_died)
        return;
    *m_died = true;
    // As a child of the dying widget it would go under the feet of its own event loop.
    if (m_drag)
        m_drag->setParent(nullptr);
    QDrag::cancel();
}

void RunningDrag::run(QWidget *source, QMimeData *payload, const DragLabel &label, const std::function<void()> &ended)
{
    std::unique_ptr<QMimeData> owned(payload);
    if (isRunning())
        return;
    bool died = false;
    const QPointer<QDrag> drag(new QDrag(source));
    drag->setMimeData(owned.release());
    drag->setPixmap(label.pixmap(source));
    drag->setHotSpot(DragLabel::hotSpot());
    m_drag = drag;
    m_died = &died;
    drag->exec(Qt::CopyAction);
    if (died) {
        if (drag)
            drag->deleteLater();
        return;
    }
    ended();
    m_died = nullptr;
}

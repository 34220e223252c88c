#include "core/filedrops.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QUrl>
#include <QWidget>

namespace Core {

namespace {

QString firstLocalFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls)
        if (url.isLocalFile())
            return url.toLocalFile();
    return QString();
}

} // namespace

FileDrops::FileDrops(QWidget *window) : QObject(window), m_window(window)
{
    // Whatever accepts no drops leaves them to the window.
    window->setAcceptDrops(true);
    QCoreApplication::instance()->installEventFilter(this);
}

bool FileDrops::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove && event->type() != QEvent::Drop)
        return false;
    const auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || widget->window() != m_window || m_asking)
        return false;
    auto *drop = static_cast<QDropEvent *>(event);
    const QString path = firstLocalFile(drop->mimeData());
    if (path.isEmpty())
        return false;
    if (widget->property("takesFiles").toBool() && event->type() != QEvent::DragEnter) {
        const QScopedValueRollback<bool> asking(m_asking, true);
        drop->ignore();
        QCoreApplication::sendEvent(watched, event);
        if (drop->isAccepted())
            return true;
    }
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (event->type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, path] { Q_EMIT dropped(path); }, Qt::QueuedConnection);
    return true;
}

} // namespace Core

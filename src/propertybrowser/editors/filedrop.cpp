#include "propertybrowser/editors/filedrop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <utility>

namespace {

QString firstFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile()) {
            return url.toLocalFile();
        }
    }
    return {};
}

} // namespace

FileDrop::FileDrop(QWidget *widget, std::function<Taker(const QPoint &at)> takerAt)
    : QObject(widget), m_takerAt(std::move(takerAt))
{
    widget->setAcceptDrops(true);
    widget->setProperty("takesFiles", true);
    widget->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto *drop = static_cast<QDropEvent *>(event);
    const QString path = firstFile(drop->mimeData());
    const Taker taker = path.isEmpty() ? Taker() : m_takerAt(drop->pos());
    drop->setAccepted(taker != nullptr);
    if (!taker) {
        return true;
    }
    drop->setDropAction(Qt::CopyAction);
    if (type == QEvent::Drop) {
        QTimer::singleShot(0, this, [taker, path] { taker(path); });
    }
    return true;
}

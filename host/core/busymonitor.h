#pragma once

#include "core/core_global.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace Core {

class IDocument;

/// Tells whether anything works in the background: the global thread pool, or a document that says so with its property
/// "busy". The pool has no signal, so it is looked at by a timer: often while something is going on, twice a second
/// while a document is open, and never otherwise. Owned by the EditorManager.
class CORE_EXPORT BusyMonitor final : public QObject
{
    Q_OBJECT

public:
    explicit BusyMonitor(QObject *parent = nullptr);

    void addDocument(IDocument *document);

    /// The state at this moment.
    [[nodiscard]] bool isBusy() const;

Q_SIGNALS:
    void busyChanged(bool busy);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void look();

    QList<QPointer<QObject>> m_documents;
    QTimer m_timer;
    int m_quietLooks = 0;
    bool m_wasBusy = false;
};

} // namespace Core

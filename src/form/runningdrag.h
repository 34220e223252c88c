#pragma once

#include <QPointer>

#include <functional>

class QDrag;
struct DragLabel;
class QMimeData;
class QWidget;

/// The drag that a widget has started and that is running. Owned by the widget, which may die in mid-drag: files arrive
/// and editors close while the drag's event loop runs. GUI thread.
class RunningDrag final
{
public:
    RunningDrag() = default;
    ~RunningDrag();
    RunningDrag(const RunningDrag &) = delete;
    RunningDrag &operator=(const RunningDrag &) = delete;

    [[nodiscard]] bool isRunning() const { return m_died != nullptr; }

    /// Drags @p payload, of which it becomes the owner, from @p source, as a copy, with @p label beside the pointer;
    /// returns when the drag is over, at once when one is running. Then @p ended is called while isRunning() still
    /// holds, unless this object has died.
    void run(QWidget *source, QMimeData *payload, const DragLabel &label, const std::function<void()> &ended);

private:
    QPointer<QDrag> m_drag;
    bool *m_died = nullptr;
};

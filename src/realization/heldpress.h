#pragma once

#include <QObject>
#include <QPersistentModelIndex>

#include <functional>

class QAbstractItemView;

/// What a press of the left button has made current in a view is shown when the button goes up: a drag may begin with
/// it, and then nothing that it could be dropped onto may have moved. Owned by the view. GUI thread.
class HeldPress final : public QObject
{
public:
    /// @p show shows what is current; it is called when the button goes up and nobody has said shown() by then.
    HeldPress(QAbstractItemView *view, std::function<void()> show);

    /// Another row has become current: true when that is to be shown later, as the button is down.
    [[nodiscard]] bool holdsBack();
    /// The current row is shown.
    void shown() { m_pending = false; }
    /// The press was the beginning of a drag that has ended: what was current and selected before is so again, unless
    /// the row that was dragged has been shown meanwhile.
    void putBack();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAbstractItemView *m_view;
    std::function<void()> m_show;
    QPersistentModelIndex m_before; ///< current before the press
    bool m_down = false;
    bool m_pending = false;
    bool m_dragged = false; ///< since the last press
};

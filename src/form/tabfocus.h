#pragma once

#include <QObject>

#include <functional>

class QWidget;

/// Does something when the focus comes to a widget by Tab or Shift+Tab, once the widget has taken it: a sheet follows
/// it to the current row then, as it follows a click. Owned by the widget. GUI thread.
class TabFocus final : public QObject
{
    Q_OBJECT

public:
    static void onArrival(QWidget *widget, const std::function<void()> &action);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    TabFocus(QWidget *widget, std::function<void()> action);

    std::function<void()> m_action;
};

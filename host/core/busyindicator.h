#pragma once

#include <QTimer>
#include <QWidget>

namespace Core {

/// The text and the moving bar in the status bar while something works in the background. Work of less than 150 ms is
/// not shown, so that nothing flickers.
class BusyIndicator final : public QWidget
{
    Q_OBJECT

public:
    explicit BusyIndicator(QWidget *parent = nullptr);

    void setBusy(bool busy);

private:
    QTimer m_delay;
};

} // namespace Core

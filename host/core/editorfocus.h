#pragma once

#include <QObject>
#include <QPointer>

class QDockWidget;
class QWidget;

namespace Core {

class MainWindow;

/// Where the keys go in the window: into a file that has just been opened, and back to where they went in it when a
/// dock is left with Escape. Owned by the window. GUI thread.
class EditorFocus final : public QObject
{
    Q_OBJECT

public:
    EditorFocus(MainWindow *window, QWidget *centre);

    /// Escape in @p dock leads back, where nothing in it takes that key.
    void watch(QDockWidget *dock);
    /// To where the focus was in the editor or on the start page last, else to the first place there.
    void giveBack();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MainWindow *m_window;
    QWidget *m_centre;
    QPointer<QWidget> m_last;
};

} // namespace Core

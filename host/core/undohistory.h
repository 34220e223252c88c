#pragma once

#include "core/core_global.h"
#include "core/undoabledocument.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <vector>

class QAction;
class QToolButton;

namespace Core {

class EditorManager;
class IEditor;
class MainWindow;

/// Undo and redo for the document of one window: the states that it had, one for each change that was committed. Taken
/// when the event loop is idle, so that a large document does not slow down typing. At most 200 are kept, and 64 MiB of
/// them; the oldest go first. In a text field what was typed there is undone first.
///
/// Enters itself into the menu "Edit", and offers to undo a deletion in the status line. Owned by the window; GUI
/// thread.
class CORE_EXPORT UndoHistory final : public QObject
{
    Q_OBJECT

public:
    UndoHistory(EditorManager &editors, MainWindow &window);

    /// Forgets everything, and begins with the document of @p editor, which may be null.
    void setEditor(IEditor *editor);
    void undo();
    void redo();

    static constexpr int MostSteps = 200;
    static constexpr qint64 MostBytes = 64 * 1024 * 1024;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Takes the state that the document has now, unless it is known.
    void take();
    /// The change that is about to be undone must be known before that.
    void takePending();
    void goTo(size_t index);
    void dropOldest();
    void update();
    void tellDeletion(const QString &text);
    [[nodiscard]] QString changeText(size_t index) const;

    EditorManager &m_editors;
    MainWindow &m_window;
    QPointer<IEditor> m_editor;
    UndoableDocument *m_document = nullptr;
    std::vector<UndoableDocument::State> m_states;
    size_t m_current = 0;
    bool m_restoring = false;
    QTimer m_idle { this };
    QAction *m_undo;
    QAction *m_redo;
    QToolButton *m_undoDeletion;
};

} // namespace Core

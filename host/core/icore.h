#pragma once

#include "core/core_global.h"

#include <QObject>

class QDockWidget;
class QMainWindow;
class QSettings;
class QString;

namespace Core {

class EditorManager;
class IEditor;
class MainWindow;

/// What the Core plug-in offers to other plug-ins, from their initialize() until their aboutToShutdown(). GUI thread
/// only.
class CORE_EXPORT ICore final : public QObject
{
    Q_OBJECT

public:
    ~ICore() override;

    /// For connecting to the signals. Null outside of the time named above; the functions below must not be called
    /// then.
    [[nodiscard]] static ICore *instance();

    [[nodiscard]] static QMainWindow *mainWindow();
    /// Kept from run to run, but for runs that only do one thing and quit.
    [[nodiscard]] static QSettings *settings();
    [[nodiscard]] static EditorManager *editorManager();
    /// Null when no file is open.
    [[nodiscard]] static IEditor *currentEditor();

    /// Adds the dock with an entry in the menu "View". The dock needs an object name (its place is remembered by it)
    /// and belongs to the window afterwards; a plug-in deletes its dock when it shuts down.
    static void addDockWidget(Qt::DockWidgetArea area, QDockWidget *dock);
    /// Opens the file as the menu "File" does: in this window if it is empty, else in a second one of its own process.
    static void openFile(const QString &path);

Q_SIGNALS:
    void currentEditorChanged(Core::IEditor *editor);

private:
    friend class CorePlugin;
    ICore(MainWindow &window, EditorManager &editors, QSettings &settings);

    MainWindow &m_window;
    EditorManager &m_editors;
    QSettings &m_settings;
};

} // namespace Core

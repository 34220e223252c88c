#pragma once

#include "core/core_global.h"
#include "core/editormanager.h"
#include "core/recentfiles.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>

class QAction;
class QDockWidget;
class QMessageBox;
class QSettings;
class QStackedWidget;

namespace Core {

class BusyIndicator;
class WelcomePage;

/// The window of the workbench: menus, docks, the one editor of this process or the welcome page, and every message to
/// the user. It never blocks: messages and questions are opened, and what depends on the answer goes on from there.
/// Uses the manager and the settings it is given, both of which must outlive it.
class CORE_EXPORT MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// Starts a second process on a file; false when that fails.
    using Launcher = std::function<bool(const QString &path)>;

    MainWindow(EditorManager &editors, QSettings &settings, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// What to do with a further file while one is open.
    void setLauncher(Launcher launcher) { m_launcher = std::move(launcher); }

    /// Opens the file here, or in a second process when another one is open; the open one is only raised. Tells
    /// failures.
    void openFile(const QString &path);
    /// Opens the file in this window, which must be empty. Tells nothing.
    [[nodiscard]] OpenOutcome openHere(const QString &path);

    [[nodiscard]] IEditor *currentEditor() const { return m_editor; }

    void addDock(Qt::DockWidgetArea area, QDockWidget *dock);
    /// Shows in the status bar that some plug-ins could not be loaded.
    void setPluginProblems(int count);

    /// The place on the screen of the run before, or a sensible one.
    void restorePlace();

signals:
    void currentEditorChanged(Core::IEditor *editor);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void createMenus();
    void createStatusBar();
    QAction *addAction(QMenu *menu, const QString &iconName, const QString &text, const QKeySequence &shortcut,
        void (MainWindow::*slot)());

    void chooseFile();
    void save();
    void revert();
    void replaceByFresh();
    void closeFile();
    void quit();
    void fillRecentMenu();
    void showAbout();
    void showAboutPlugins();

    /// Calls \a proceed at once when nothing is unsaved, else once the user has saved successfully or discarded.
    void confirmThen(const std::function<void()> &proceed);
    /// True when the file was written and there is nothing to tell about it.
    bool saveAndTell();
    void showMessage(const QString &objectName, const QString &text, const QString &path, const QString &reason);
    void attach(IEditor *editor);
    void detach(IEditor *editor);
    void updateState();
    void savePlace();

    EditorManager &m_editors;
    QSettings &m_settings;
    RecentFiles m_recentFiles;
    Launcher m_launcher;
    IEditor *m_editor = nullptr;
    QPointer<QMessageBox> m_question;
    QStackedWidget *m_stack = nullptr;
    WelcomePage *m_welcome = nullptr;
    BusyIndicator *m_busy = nullptr;
    QMenu *m_recentMenu = nullptr;
    QMenu *m_viewMenu = nullptr;
    QAction *m_saveAction = nullptr;
    QAction *m_revertAction = nullptr;
    QAction *m_closeAction = nullptr;
    bool m_closeConfirmed = false;
};

} // namespace Core

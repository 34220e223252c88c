#pragma once

#include "core/core_global.h"
#include "core/editormanager.h"
#include "core/recentfiles.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>

class QAction;
class QDockWidget;
class QMenu;
class QMessageBox;
class QSettings;
class QStackedWidget;

namespace Core {

class BusyIndicator;
class EditorFocus;
class FileCare;
class FileSaving;
class RecoveryStore;
class WelcomePage;
struct DiskState;
struct RecoveryCopy;

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

    /// Asked before a file is opened: true when another window shows it, which has come forward then.
    using Elsewhere = std::function<bool(const QString &path)>;
    void setElsewhere(Elsewhere isElsewhere) { m_isElsewhere = std::move(isElsewhere); }

    /// Where the recovery copies are. Without it nothing is kept over a crash and nothing offered after one.
    void setRecoveryStore(std::shared_ptr<const RecoveryStore> store);
    [[nodiscard]] FileCare &fileCare() { return *m_care; }

    /// Opens the file here, or in a second process when another one is open; a window that shows it is only raised.
    /// Tells failures.
    void openFile(const QString &path);
    /// Opens the file in this window, which must be empty. Tells nothing.
    [[nodiscard]] OpenOutcome openHere(const QString &path);

    /// Out of the icons and before the other windows, or asks for attention where the system doesn't let it.
    void comeForward();
    /// A warning or an error, by @p objectName, about the file @p path.
    void showMessage(const QString &objectName, const QString &text, const QString &path, const QString &reason);

    [[nodiscard]] IEditor *currentEditor() const { return m_editor; }

    /// For what has a class of its own and wants an entry there. It is shown once it has one.
    [[nodiscard]] QMenu *editMenu() const { return m_editMenu; }

    void addDock(Qt::DockWidgetArea area, QDockWidget *dock);
    /// Where it was last before it came to a dock.
    void focusEditor();
    /// Shows in the status bar that some plug-ins could not be loaded.
    void setPluginProblems(int count);

    /// Ends the program without a question, since the system wants it to: unsaved changes are kept as a recovery copy.
    /// Waits a moment for a document that can't tell its content yet; a second call doesn't wait.
    void endSession();

    /// The place on the screen of the run before, or a sensible one.
    void restorePlace();

Q_SIGNALS:
    void currentEditorChanged(Core::IEditor *editor);
    /// A person sees it from now on; not when a fresh editor takes the place of another one on the file.
    void fileOpened(Core::IEditor *editor);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createMenus();
    /// A menu of the menu bar that is seen once it has an entry.
    [[nodiscard]] QMenu *createGrowingMenu(const QString &title, const QString &objectName);
    void createStatusBar();
    QAction *addAction(QMenu *menu, const QString &iconName, const QString &text, const QKeySequence &shortcut,
        void (MainWindow::*slot)());

    void newFile();
    void chooseFile();
    void save();
    void explainSaveAs();
    void revert();
    /// Puts a fresh editor on the file in place of the present one, and the view to where it stood. False, with the
    /// reason, when there is none; the present one stays then.
    [[nodiscard]] bool replaceByFresh(QString *error);
    void reload();
    void restore(const QString &path, const RecoveryCopy &copy);
    /// As restore(), in a window of its own when another file is open here.
    void openRecovered(const QString &path, const RecoveryCopy &copy);
    void showRecoveredFiles();
    void replaceByRecovered(const QString &path, const RecoveryCopy &copy);
    void askThen(
        const QString &objectName, const QString &text, const QString &answer, const std::function<void()> &proceed);
    void closeFile();
    /// Gives up what is not saved.
    void closeEditor();
    void quit();
    void fillRecentMenu();
    void showAbout();
    void showAboutPlugins();

    /// Calls @p proceed at once when nothing is unsaved, else once the user has saved successfully or discarded.
    void confirmThen(const std::function<void()> &proceed);
    /// @p opened is the state of the file before the editor read it.
    void attach(IEditor *editor, const DiskState &opened);
    void detach(IEditor *editor);
    void updateState();
    void quitOnceKept();
    void savePlace();

    EditorManager &m_editors;
    QSettings &m_settings;
    RecentFiles m_recentFiles;
    Launcher m_launcher;
    Elsewhere m_isElsewhere;
    std::shared_ptr<const RecoveryStore> m_recoveryStore;
    IEditor *m_editor = nullptr;
    QPointer<QMessageBox> m_question;
    QStackedWidget *m_stack = nullptr;
    FileCare *m_care = nullptr;
    EditorFocus *m_focus = nullptr;
    FileSaving *m_saving = nullptr;
    WelcomePage *m_welcome = nullptr;
    BusyIndicator *m_busy = nullptr;
    QMenu *m_editMenu = nullptr;
    QMenu *m_viewMenu = nullptr;
    QMenu *m_recentMenu = nullptr;
    QAction *m_recoveredAction = nullptr;
    QAction *m_saveAction = nullptr;
    QAction *m_saveAsAction = nullptr;
    QAction *m_revertAction = nullptr;
    QAction *m_closeAction = nullptr;
    bool m_closeConfirmed = false;
    QElapsedTimer m_sinceAskedToEnd;
};

} // namespace Core

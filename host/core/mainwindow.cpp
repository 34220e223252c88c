#include "core/mainwindow.h"

#include "core/aboutpluginsdialog.h"
#include "core/busyindicator.h"
#include "core/diskstate.h"
#include "core/editorfocus.h"
#include "core/filecare.h"
#include "core/filedrops.h"
#include "core/filesaving.h"
#include "core/guidewindow.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/newfiledialog.h"
#include "core/undohistory.h"
#include "core/welcomepage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace Core {

namespace {

constexpr QSize InitialSize(1280, 800);

QString geometryKey()
{
    return QStringLiteral("MainWindow/Geometry");
}

QString stateKey()
{
    return QStringLiteral("MainWindow/State");
}

QString pathOf(IEditor *editor)
{
    return editor->document()->filePath().toString();
}

/// Two names of one file count as the same.
bool isSameFile(const QString &a, const QString &b)
{
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return canonical.isEmpty() ? QFileInfo(a).absoluteFilePath() == QFileInfo(b).absoluteFilePath()
                               : canonical == QFileInfo(b).canonicalFilePath();
}

QString shortPath(const QString &path)
{
    const QString home = QDir::homePath();
    if (home.size() > 1 && (path == home || path.startsWith(home + QLatin1Char('/'))))
        return QLatin1Char('~') + path.mid(home.size());
    return path;
}

QIcon themeIcon(const QString &name)
{
    static const QHash<QString, QStyle::StandardPixmap> fallbacks {
        { QStringLiteral("document-open"), QStyle::SP_DialogOpenButton },
        { QStringLiteral("document-save"), QStyle::SP_DialogSaveButton },
        { QStringLiteral("document-revert"), QStyle::SP_BrowserReload },
        { QStringLiteral("window-close"), QStyle::SP_DialogCloseButton },
    };
    const QIcon icon = QIcon::fromTheme(name);
    return icon.isNull() && fallbacks.contains(name) ? QApplication::style()->standardIcon(fallbacks.value(name))
                                                     : icon;
}

} // namespace

MainWindow::MainWindow(EditorManager &editors, QSettings &settings, QWidget *parent)
    : QMainWindow(parent), m_editors(editors), m_settings(settings), m_recentFiles(settings),
      m_stack(new QStackedWidget(this)), m_welcome(new WelcomePage(m_recentFiles, m_stack))
{
    setObjectName(QStringLiteral("mainWindow"));
    connect(new FileDrops(this), &FileDrops::dropped, this, &MainWindow::openFile);
    m_stack->setObjectName(QStringLiteral("centralStack"));
    m_stack->addWidget(m_welcome);
    auto *centre = new QWidget(this);
    auto *column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_care = new FileCare(m_editors, *column, this);
    m_saving = new FileSaving(m_editors, *m_care, *this, *column);
    column->addWidget(m_stack, 1);
    setCentralWidget(centre);
    createMenus();
    createStatusBar();
    new UndoHistory(m_editors, *this);
    m_focus = new EditorFocus(this, m_stack);

    connect(m_welcome, &WelcomePage::openRequested, this, &MainWindow::chooseFile);
    connect(m_welcome, &WelcomePage::recoveredFilesRequested, this, &MainWindow::showRecoveredFiles);
    connect(m_welcome, &WelcomePage::fileRequested, this, &MainWindow::openFile);
    connect(&m_editors, &EditorManager::aboutToClose, this, &MainWindow::detach);
    connect(&m_editors, &EditorManager::documentChanged, this, &MainWindow::updateState);
    connect(m_care, &FileCare::reloadWanted, this, &MainWindow::reload);
    connect(m_care, &FileCare::restoreWanted, this, &MainWindow::restore);
    connect(m_care, &FileCare::copyFailed, this, [this](const QString &reason) {
        statusBar()->showMessage(tr("No recovery copy can be written: %1").arg(reason));
    });
    updateState();
}

MainWindow::~MainWindow()
{
    if (m_editor)
        m_editors.close(m_editor);
}

void MainWindow::createMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&File"));
    addAction(file, QStringLiteral("document-new"), tr("&New…"), QKeySequence::New, &MainWindow::newFile)
        ->setObjectName(QStringLiteral("newAction"));
    addAction(file, QStringLiteral("document-open"), tr("&Open…"), QKeySequence::Open, &MainWindow::chooseFile);
    m_recentMenu = file->addMenu(tr("Open &Recent"));
    m_recentMenu->setObjectName(QStringLiteral("recentMenu"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &MainWindow::fillRecentMenu);
    m_recoveredAction
        = addAction(file, QString(), tr("Recovered &Files…"), QKeySequence(), &MainWindow::showRecoveredFiles);
    m_recoveredAction->setObjectName(QStringLiteral("recoveredFilesAction"));
    m_recoveredAction->setEnabled(false);
    file->addSeparator();
    m_saveAction = addAction(file, QStringLiteral("document-save"), tr("&Save"), QKeySequence::Save, &MainWindow::save);
    m_saveAction->setObjectName(QStringLiteral("saveAction"));
    m_saveAsAction = addAction(file, QStringLiteral("document-save-as"), tr("Save &As…"),
        QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S), &MainWindow::explainSaveAs);
    m_saveAsAction->setObjectName(QStringLiteral("saveAsAction"));
    m_revertAction = addAction(
        file, QStringLiteral("document-revert"), tr("Re&vert to Saved"), QKeySequence(), &MainWindow::revert);
    m_revertAction->setObjectName(QStringLiteral("revertAction"));
    file->addSeparator();
    m_closeAction = addAction(
        file, QStringLiteral("window-close"), tr("&Close"), QKeySequence(Qt::CTRL + Qt::Key_W), &MainWindow::closeFile);
    m_closeAction->setObjectName(QStringLiteral("closeAction"));
    QAction *quitAction = addAction(
        file, QStringLiteral("application-exit"), tr("&Quit"), QKeySequence(Qt::CTRL + Qt::Key_Q), &MainWindow::quit);
    quitAction->setObjectName(QStringLiteral("quitAction"));
    quitAction->setMenuRole(QAction::QuitRole);

    // Alt+E is a button's on the pages of the editor.
    m_editMenu = createGrowingMenu(tr("E&dit"), QStringLiteral("editMenu"));
    m_viewMenu = createGrowingMenu(tr("&View"), QStringLiteral("viewMenu"));

    QMenu *help = menuBar()->addMenu(tr("&Help"));
    GuideWindow::addEntries(help, this);
    addAction(help, QString(), tr("About &Plug-ins…"), QKeySequence(), &MainWindow::showAboutPlugins)
        ->setObjectName(QStringLiteral("aboutPluginsAction"));
    addAction(help, QStringLiteral("help-about"), tr("&About"), QKeySequence(), &MainWindow::showAbout)
        ->setObjectName(QStringLiteral("aboutAction"));
}

QMenu *MainWindow::createGrowingMenu(const QString &title, const QString &objectName)
{
    QMenu *menu = menuBar()->addMenu(title);
    menu->setObjectName(objectName);
    menu->menuAction()->setVisible(false);
    menu->installEventFilter(this);
    return menu;
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ActionAdded) {
        if (auto *menu = qobject_cast<QMenu *>(watched))
            menu->menuAction()->setVisible(true);
    }
    return QMainWindow::eventFilter(watched, event);
}

QAction *MainWindow::addAction(
    QMenu *menu, const QString &iconName, const QString &text, const QKeySequence &shortcut, void (MainWindow::*slot)())
{
    QAction *action = menu->addAction(text);
    action->setShortcut(shortcut);
    // Reading them takes a tenth of the time to the first picture of the window.
    if (!iconName.isEmpty()) {
        connect(menu, &QMenu::aboutToShow, action, [action, iconName] {
            if (action->icon().isNull())
                action->setIcon(themeIcon(iconName));
        });
    }
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void MainWindow::createStatusBar()
{
    m_busy = new BusyIndicator(this);
    statusBar()->addPermanentWidget(m_busy);
    connect(&m_editors.busyMonitor(), &BusyMonitor::busyChanged, m_busy, &BusyIndicator::setBusy);
}

void MainWindow::addDock(Qt::DockWidgetArea area, QDockWidget *dock)
{
    addDockWidget(area, dock);
    m_focus->watch(dock);
    m_viewMenu->addAction(dock->toggleViewAction());
    // A dock that came after restorePlace() gets its old place by itself this way.
    restoreDockWidget(dock);
}

void MainWindow::focusEditor()
{
    m_focus->giveBack();
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    // Buttons leave Return to dialogs, which this is none.
    auto *button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || !button || button->window() != this) {
        QMainWindow::keyPressEvent(event);
        return;
    }
    auto *tool = qobject_cast<QToolButton *>(button);
    if (tool && tool->menu())
        tool->showMenu();
    else
        button->click();
}

void MainWindow::setPluginProblems(int count)
{
    if (count == 0)
        return;
    auto *button = new QToolButton(this);
    button->setObjectName(QStringLiteral("pluginProblemsButton"));
    button->setAutoRaise(true);
    button->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    button->setText(
        count == 1 ? tr("A plug-in could not be loaded") : tr("%n plug-ins could not be loaded", nullptr, count));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(button, &QToolButton::clicked, this, &MainWindow::showAboutPlugins);
    statusBar()->addPermanentWidget(button);
}

void MainWindow::restorePlace()
{
    // The frame comes on top, and would push the status line off a small screen.
    const int frame
        = style()->pixelMetric(QStyle::PM_TitleBarHeight) + style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize available = screen()->availableGeometry().size();
    resize(InitialSize.boundedTo(available - QSize(frame, 2 * frame)));
    restoreGeometry(m_settings.value(geometryKey()).toByteArray());
    restoreState(m_settings.value(stateKey()).toByteArray());
}

void MainWindow::savePlace()
{
    m_settings.setValue(geometryKey(), saveGeometry());
    m_settings.setValue(stateKey(), saveState());
}

// Opening ------------------------------------------------------------------------------------------------------------

void MainWindow::openFile(const QString &path)
{
    if (m_editors.isWorking())
        return;
    const QString file = QFileInfo(path).absoluteFilePath();
    if (m_editor && isSameFile(file, pathOf(m_editor))) {
        comeForward();
        return;
    }
    if (m_isElsewhere && m_isElsewhere(file))
        return;
    if (m_editor) {
        if (!m_launcher || !m_launcher(file))
            showMessage(
                QStringLiteral("errorMessage"), tr("No second window could be started for the file."), file, QString());
        return;
    }
    const OpenOutcome outcome = openHere(file);
    if (!outcome.editor) {
        // At the start the window waits for the file; the message needs one to stand on.
        show();
        showMessage(QStringLiteral("errorMessage"), tr("The file could not be opened."), file, outcome.error);
    }
    m_care->offerCopies(file);
}

OpenOutcome MainWindow::openHere(const QString &path)
{
    Q_ASSERT(!m_editor);
    const DiskState state = DiskState::of(path);
    const OpenOutcome outcome = m_editors.open(path);
    if (outcome.editor) {
        attach(outcome.editor, state);
        Q_EMIT fileOpened(m_editor);
    }
    return outcome;
}

void MainWindow::comeForward()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    QWidget *dialog = QApplication::activeModalWidget();
    QWidget *front = dialog ? dialog : this;
    front->raise();
    // It knows of no such wish, and says so each time.
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        front->activateWindow();
    QApplication::alert(front);
}

void MainWindow::newFile()
{
    const QString known = m_editor ? pathOf(m_editor) : m_recentFiles.files().value(0);
    const QString place
        = known.isEmpty() ? QDir::homePath() : QFileInfo(QFileInfo(known).absolutePath()).absolutePath();
    auto *dialog = new NewFileDialog(place, this);
    // After the dialog is gone: opening may show a message.
    connect(dialog, &NewFileDialog::created, this, &MainWindow::openFile, Qt::QueuedConnection);
    dialog->open();
}

void MainWindow::chooseFile()
{
    auto *dialog = new QFileDialog(this, tr("Open a File"));
    dialog->setObjectName(QStringLiteral("openDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({ tr("Extension files (extension.xml)"), tr("All files (*)") });
    const QStringList recent = m_recentFiles.files();
    if (m_editor)
        dialog->setDirectory(QFileInfo(pathOf(m_editor)).absolutePath());
    else if (!recent.isEmpty())
        dialog->setDirectory(QFileInfo(recent.first()).absolutePath());
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::openFile);
    dialog->open();
}

void MainWindow::fillRecentMenu()
{
    m_recentMenu->clear();
    const QStringList files = m_recentFiles.files();
    for (const QString &path : files) {
        QString text = shortPath(path);
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
        connect(m_recentMenu->addAction(text), &QAction::triggered, this, [this, path] { openFile(path); });
    }
    m_recentMenu->addSeparator();
    QAction *clear = m_recentMenu->addAction(tr("Clear Menu"));
    clear->setEnabled(!files.isEmpty());
    connect(clear, &QAction::triggered, this, [this] {
        m_recentFiles.clear();
        m_welcome->refresh();
    });
}

void MainWindow::setRecoveryStore(std::shared_ptr<const RecoveryStore> store)
{
    m_recoveryStore = std::move(store);
    m_recoveredAction->setEnabled(m_recoveryStore != nullptr);
    m_care->setRecoveryStore(m_recoveryStore);
    m_welcome->setRecoveryStore(m_recoveryStore);
}

void MainWindow::attach(IEditor *editor, const DiskState &opened)
{
    auto *holder = new QWidget(m_stack);
    holder->setObjectName(QStringLiteral("editorHolder"));
    auto *layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (QWidget *toolBar = editor->toolBar())
        layout->addWidget(toolBar);
    if (QWidget *widget = editor->widget()) {
        layout->addWidget(widget, 1);
        widget->show();
        holder->setFocusProxy(widget);
    }
    m_stack->addWidget(holder);
    m_stack->setCurrentWidget(holder);
    holder->setFocus(Qt::OtherFocusReason);
    m_editor = editor;
    m_care->attach(editor, opened);
    m_saving->setEditor(editor);
    m_recentFiles.add(pathOf(editor));
    updateState();
    Q_EMIT currentEditorChanged(m_editor);
}

void MainWindow::detach(IEditor *editor)
{
    if (editor != m_editor)
        return;
    m_care->detach();
    m_saving->setEditor(nullptr);
    m_editor = nullptr;
    // The editor's widgets are not the window's to delete.
    if (QWidget *toolBar = editor->toolBar())
        toolBar->setParent(nullptr);
    if (QWidget *widget = editor->widget())
        widget->setParent(nullptr);
    QWidget *holder = m_stack->currentWidget();
    m_stack->setCurrentWidget(m_welcome);
    m_welcome->setFocus(Qt::OtherFocusReason);
    m_stack->removeWidget(holder);
    delete holder;
    updateState();
    Q_EMIT currentEditorChanged(nullptr);
}

// Saving and closing -------------------------------------------------------------------------------------------------

void MainWindow::save()
{
    if (m_editor && !m_editors.isWorking())
        m_saving->save();
}

void MainWindow::explainSaveAs()
{
    m_saving->explainSaveAs();
}

void MainWindow::revert()
{
    if (!m_editor || m_editors.isWorking() || m_question)
        return;
    const auto proceed = [this] {
        QString error;
        if (m_editor && !m_editors.isWorking() && !replaceByFresh(&error))
            showMessage(
                QStringLiteral("errorMessage"), tr("The file could not be read again."), pathOf(m_editor), error);
    };
    if (m_editors.isModified(m_editor))
        askThen(QStringLiteral("revertPrompt"),
            tr("Revert to the file on disk? What was changed since the last save is lost."), tr("&Revert"), proceed);
    else
        proceed();
}

void MainWindow::askThen(
    const QString &objectName, const QString &text, const QString &answer, const std::function<void()> &proceed)
{
    m_question = new QMessageBox(QMessageBox::Question, windowTitle(), text, QMessageBox::Cancel, this);
    m_question->setObjectName(objectName);
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setTextFormat(Qt::PlainText);
    const QPushButton *button = m_question->addButton(answer, QMessageBox::DestructiveRole);
    m_question->setDefaultButton(QMessageBox::Cancel);
    connect(button, &QPushButton::clicked, this, proceed, Qt::QueuedConnection);
    m_question->open();
}

void MainWindow::closeFile()
{
    confirmThen([this] { closeEditor(); });
}

void MainWindow::closeEditor()
{
    if (!m_editor)
        return;
    m_care->dropCopy();
    m_editors.close(m_editor);
}

void MainWindow::confirmThen(const std::function<void()> &proceed)
{
    if (m_editors.isWorking())
        return;
    if (m_question) {
        m_question->raise();
        m_question->activateWindow();
        return;
    }
    if (!m_editor || !m_editors.isModified(m_editor)) {
        proceed();
        return;
    }
    // What was wanted before is asked anew.
    m_saving->forgetWhatFollows();
    m_question = new QMessageBox(QMessageBox::Question, tr("Unsaved Changes"),
        tr("Save the changes to %1 before closing it?").arg(shortPath(pathOf(m_editor))),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    m_question->setObjectName(QStringLiteral("savePrompt"));
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setTextFormat(Qt::PlainText);
    m_question->setDefaultButton(QMessageBox::Save);
    connect(
        m_question, &QDialog::finished, this,
        [this, proceed](int answer) {
            m_question.clear();
            if (answer == QMessageBox::Save && m_editor)
                m_saving->save(proceed);
            else if (answer == QMessageBox::Discard)
                proceed();
        },
        // After the box is gone: saving may take a while, and closing deletes the parent of the box.
        Qt::QueuedConnection);
    m_question->open();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_closeConfirmed && m_editor && (m_editors.isWorking() || m_editors.isModified(m_editor))) {
        event->ignore();
        confirmThen([this] {
            const QScopedValueRollback<bool> confirmed(m_closeConfirmed, true);
            close();
        });
        return;
    }
    savePlace();
    closeEditor();
    event->accept();
}

// Telling ------------------------------------------------------------------------------------------------------------

void MainWindow::showMessage(const QString &objectName, const QString &text, const QString &path, const QString &reason)
{
    m_saving->showMessage(objectName, text, path, reason);
}

void MainWindow::updateState()
{
    m_saveAction->setEnabled(m_editor);
    m_saveAsAction->setEnabled(m_editor);
    m_revertAction->setEnabled(m_editor);
    m_closeAction->setEnabled(m_editor);
    if (!m_editor) {
        setWindowModified(false);
        setWindowTitle(tr("ExtPoint Workbench"));
        return;
    }
    const QFileInfo file(pathOf(m_editor));
    // Qt reads "[*]" in a title as the place of the mark; doubled it stands for itself.
    QString name = m_editor->document()->displayName();
    QString directory = shortPath(file.absolutePath());
    name.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    directory.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    setWindowTitle(tr("%1[*] — %2 — ExtPoint Workbench").arg(name, directory));
    const bool modified = m_editors.isModified(m_editor);
    setWindowModified(modified);
    m_care->setModified(modified);
}

void MainWindow::showAbout()
{
    auto *box = new QMessageBox(QMessageBox::NoIcon, tr("About ExtPoint Workbench"),
        tr("ExtPoint Workbench %1").arg(QCoreApplication::applicationVersion()), QMessageBox::Ok, this);
    box->setObjectName(QStringLiteral("aboutBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(tr("A small host for editor plug-ins. It opens one file per window."));
    box->setDetailedText(GuideWindow::installedText(QStringLiteral("copyright")));
    box->open();
}

void MainWindow::showAboutPlugins()
{
    (new AboutPluginsDialog(this))->open();
}

} // namespace Core

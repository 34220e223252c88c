#include "core/mainwindow.h"

#include "core/diskstate.h"
#include "core/filecare.h"
#include "core/filesaving.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/recoveredfilesdialog.h"
#include "core/recoverystore.h"
#include "core/viewkeeper.h"
#include "core/welcomepage.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>

// What the window does for FileCare: another editor in place of the present one, and the end that the system asks for.

namespace Core {

namespace {

constexpr int LongestWaitForCopy = 5000;
constexpr int CopyRetryInterval = 50;

} // namespace

void MainWindow::reload()
{
    QString error;
    if (!m_editor || m_editors.isWorking())
        return;
    if (replaceByFresh(&error))
        statusBar()->showMessage(
            tr("%1 was read again: another program has changed it").arg(m_editor->document()->displayName()),
            FileSaving::StatusMessageTime);
    else
        m_care->tellUnreadable(error);
}

bool MainWindow::replaceByFresh(QString *error)
{
    // Makes the old editor take in what is typed in a field. When it goes it would do so, too, but at a time when what
    // the process has one of may be the fresh editor's.
    (void)m_editors.isModified(m_editor);
    const QString path = m_editor->document()->filePath().toString();
    const auto *oldView = dynamic_cast<const ViewKeeper *>(m_editor);
    const QVariantMap view = oldView ? oldView->viewState() : QVariantMap();
    const QPointer<QWidget> focus = QApplication::focusWidget();
    // The fresh editor first: when the file can't be read any more, the old one with its changes stays. The old one is
    // gone before the event loop turns, so nothing that it still does in the background reaches the fresh one.
    const DiskState state = DiskState::of(path);
    const OpenOutcome outcome = m_editors.open(path);
    if (!outcome.editor) {
        *error = outcome.error;
        return false;
    }
    m_care->dropCopy();
    m_editors.close(m_editor);
    attach(outcome.editor, state);
    if (focus && focus->isVisible())
        focus->setFocus(Qt::OtherFocusReason);
    if (auto *freshView = dynamic_cast<ViewKeeper *>(outcome.editor))
        freshView->setViewState(view);
    return true;
}

void MainWindow::restore(const QString &path, const RecoveryCopy &copy)
{
    if (m_editors.isWorking() || m_question)
        return;
    if (m_editor && m_editors.isModified(m_editor))
        askThen(QStringLiteral("restorePrompt"),
            tr("Restore the changes that were kept? What was changed since the file was opened is lost."),
            tr("&Restore"), [this, path, copy] { replaceByRecovered(path, copy); });
    else
        replaceByRecovered(path, copy);
}

void MainWindow::replaceByRecovered(const QString &path, const RecoveryCopy &copy)
{
    if (m_editors.isWorking())
        return;
    const DiskState state = DiskState::of(path);
    const OpenOutcome outcome = m_editors.openRecovered(path, copy.data);
    if (!outcome.editor) {
        showMessage(
            QStringLiteral("errorMessage"), tr("The changes could not be restored."), copy.fileName, outcome.error);
        return;
    }
    if (m_editor) {
        m_care->dropCopy();
        m_editors.close(m_editor);
    }
    m_care->adopt(path, copy);
    attach(outcome.editor, state);
    m_care->offerCopies(path);
}

void MainWindow::openRecovered(const QString &path, const RecoveryCopy &copy)
{
    const RecoveryKey key = RecoveryStore::keyOf(path);
    QString error;
    if (m_editor && RecoveryStore::keyOf(m_editor->document()->filePath().toString()).hash != key.hash) {
        // The other window offers it to whoever opens the file there.
        if (m_recoveryStore->assign(copy, key, &error))
            openFile(path);
        else
            showMessage(QStringLiteral("errorMessage"), tr("The changes could not be restored."), path, error);
        return;
    }
    // That window offers it.
    if (!m_editor && m_isElsewhere && m_isElsewhere(path))
        return;
    const DiskState state = DiskState::of(path);
    if (m_editor || path == copy.key.path || state.kind == DiskState::Missing || state.hash == copy.originalHash)
        restore(path, copy);
    else if (!m_question)
        askThen(QStringLiteral("recoverPrompt"),
            tr("%1 is not what the kept changes were made to. Open them in its place? Saving replaces the file then.")
                .arg(QDir::toNativeSeparators(path)),
            tr("&Open"), [this, path, copy] {
                if (!m_editor)
                    replaceByRecovered(path, copy);
            });
}

void MainWindow::showRecoveredFiles()
{
    auto *dialog = new RecoveredFilesDialog(m_recoveryStore, this);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        // After the dialog is gone: restoring may take a while, and may ask.
        QMetaObject::invokeMethod(
            this, [this, path = dialog->chosenPath(), copy = dialog->chosenCopy()] { openRecovered(path, copy); },
            Qt::QueuedConnection);
    });
    connect(dialog, &QDialog::finished, this, [this] {
        m_welcome->refresh();
        m_care->offerAgain();
    });
    dialog->open();
}

void MainWindow::endSession()
{
    if (m_sinceAskedToEnd.isValid()) {
        QCoreApplication::quit();
        return;
    }
    m_sinceAskedToEnd.start();
    quitOnceKept();
}

void MainWindow::quitOnceKept()
{
    if (m_editor)
        (void)m_editors.isModified(m_editor);
    if (m_care->flush() || m_sinceAskedToEnd.hasExpired(LongestWaitForCopy))
        QCoreApplication::quit();
    else
        QTimer::singleShot(CopyRetryInterval, this, &MainWindow::quitOnceKept);
}

void MainWindow::quit()
{
    close();
}

} // namespace Core

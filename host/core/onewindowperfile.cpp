#include "core/onewindowperfile.h"

#include "core/editormanager.h"
#include "core/filecare.h"
#include "core/filesaving.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/mainwindow.h"

#include <QDir>
#include <QStatusBar>
#include <QTimer>

#include <utility>

namespace Core {

namespace {

constexpr int FollowInterval = 50; // milliseconds
// By this a Wayland compositor knows that it was the user who wanted a window to come forward.
constexpr char activationToken[] = "XDG_ACTIVATION_TOKEN";

} // namespace

OneWindowPerFile::OneWindowPerFile(MainWindow &window, EditorManager &editors)
    : QObject(&window), m_window(window), m_editors(editors)
{
    connect(&m_claims, &FileClaims::asked, this, &OneWindowPerFile::show);
    // Once the window has made up its mind: a fresh editor may follow.
    connect(&window, &MainWindow::currentEditorChanged, this, &OneWindowPerFile::follow, Qt::QueuedConnection);
    window.setElsewhere([this](const QString &path) {
        // It may turn out that it can't be opened.
        QTimer::singleShot(0, this, &OneWindowPerFile::follow);
        return isElsewhere({ path, 0, 0 });
    });
}

bool OneWindowPerFile::isElsewhere(const FileTarget &target)
{
    const bool isMine = !m_window.currentEditor();
    const QByteArray token = qgetenv(activationToken);
    const FileClaims::Answer answer = isMine ? m_claims.claim(target, token) : m_claims.ask(target, token);
    if (answer == FileClaims::Answer::Taken) {
        m_window.statusBar()->showMessage(tr("%1 is open in another window").arg(QDir::toNativeSeparators(target.path)),
            FileSaving::StatusMessageTime);
        return true;
    }
    m_noAnswer = m_noAnswer || (isMine && answer == FileClaims::Answer::Silent);
    return false;
}

void OneWindowPerFile::follow()
{
    if (m_editors.isWorking()) {
        QTimer::singleShot(FollowInterval, this, &OneWindowPerFile::follow);
        return;
    }
    IEditor *editor = m_window.currentEditor();
    if (!editor) {
        m_claims.release();
        m_noAnswer = false;
        return;
    }
    const QString path = editor->document()->filePath().toString();
    m_claims.hold(path);
    if (!std::exchange(m_noAnswer, false))
        return;
    m_window.show();
    m_window.showMessage(QStringLiteral("secondWindowMessage"),
        tr("This file has a second window now: another one has it open, but does not answer."), path,
        tr("What is saved in one of them is not in the other one until that reads the file again."));
}

void OneWindowPerFile::show(const FileTarget &target, const QByteArray &token)
{
    if (!token.isEmpty())
        qputenv(activationToken, token);
    m_window.comeForward();
    qunsetenv(activationToken);
    IEditor *editor = m_window.currentEditor();
    if (!editor || m_editors.isWorking())
        return;
    if (target.line > 0)
        editor->gotoLine(target.line, qMax(0, target.column - 1));
    // The other process may have found some that are new.
    m_window.fileCare().offerCopies(editor->document()->filePath().toString());
}

} // namespace Core

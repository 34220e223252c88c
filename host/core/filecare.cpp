#include "core/filecare.h"

#include "core/editormanager.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/recoverabledocument.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPushButton>
#include <QThread>

namespace Core {

namespace {

constexpr int RetryInterval = 200; // milliseconds

/// False in the middle of a drag, a menu or a dialog: what runs there still needs the editor.
bool canBeReplaced()
{
    return QThread::currentThread()->loopLevel() <= 1 && !QApplication::activePopupWidget()
        && !QApplication::activeModalWidget() && QApplication::mouseButtons() == Qt::NoButton;
}

} // namespace

FileCare::FileCare(EditorManager &editors, QBoxLayout &place, QObject *parent)
    : QObject(parent), m_editors(editors),
      m_recoveryBar(new InfoBar(QStringLiteral("recoveryBar"), place.parentWidget())),
      m_changeBar(new InfoBar(QStringLiteral("changeBar"), place.parentWidget()))
{
    place.addWidget(m_recoveryBar);
    place.addWidget(m_changeBar);
    const QAbstractButton *restore = m_recoveryBar->addButton(QStringLiteral("restoreButton"), tr("&Restore"));
    const QAbstractButton *discard = m_recoveryBar->addButton(QStringLiteral("discardButton"), tr("D&iscard"));
    m_reloadButton = m_changeBar->addButton(QStringLiteral("reloadButton"), tr("Re&load"));
    m_keepButton = m_changeBar->addButton(QStringLiteral("keepButton"), QString());

    // Later: what the window does then may take a while.
    connect(
        restore, &QAbstractButton::clicked, this,
        [this] {
            if (!m_copies.empty())
                Q_EMIT restoreWanted(m_offeredPath, RecoveryCopy(m_copies.front()));
        },
        Qt::QueuedConnection);
    connect(discard, &QAbstractButton::clicked, this, &FileCare::discardCopy);
    connect(m_reloadButton, &QAbstractButton::clicked, this, &FileCare::reloadWanted, Qt::QueuedConnection);
    connect(m_keepButton, &QAbstractButton::clicked, this, &FileCare::keepMine);
    m_later.setSingleShot(true);
    m_later.setInterval(RetryInterval);
    connect(&m_later, &QTimer::timeout, this, &FileCare::onDiskChanged);
    // For file systems that tell nothing of changes made on other machines.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive && m_watch)
            m_watch->lookSoon();
    });
}

FileCare::~FileCare() = default;

void FileCare::setIntervals(int recovery, int settle)
{
    m_recoveryInterval = recovery;
    m_settleTime = settle;
}

void FileCare::attach(IEditor *editor, const DiskState &opened)
{
    m_editor = editor;
    m_dropped = false;
    const QString path = editor->document()->filePath().toString();
    m_watch = std::make_unique<FileWatch>(path, opened);
    if (m_settleTime > 0)
        m_watch->setSettleTime(m_settleTime);
    connect(m_watch.get(), &FileWatch::changed, this, &FileCare::onDiskChanged);
    const auto *recoverable = dynamic_cast<const RecoverableDocument *>(editor->document());
    if (!recoverable || !m_store)
        return;
    m_keeper = std::make_unique<RecoveryKeeper>(*recoverable, RecoveryStore::keyOf(path), m_store);
    m_keeper->setOriginal(opened.hash);
    if (m_recoveryInterval > 0)
        m_keeper->setInterval(m_recoveryInterval);
    connect(m_keeper.get(), &RecoveryKeeper::failed, this, &FileCare::copyFailed);
}

void FileCare::detach()
{
    // The system may tell the program to end with text in a field that nobody has left yet.
    if (m_keeper && !m_dropped) {
        if (m_editors.isModified(m_editor))
            m_keeper->setModified(true);
        flush();
    }
    m_later.stop();
    m_keeper.reset();
    m_watch.reset();
    m_editor = nullptr;
    m_modified = false;
    m_changeBar->hide();
    m_recoveryBar->hide();
    m_copies.clear();
}

void FileCare::setModified(bool modified)
{
    m_modified = modified;
    m_dropped = m_dropped && !modified;
    if (m_keeper)
        m_keeper->setModified(modified);
}

void FileCare::dropCopy()
{
    m_dropped = true;
    if (m_keeper)
        m_keeper->drop();
}

bool FileCare::flush()
{
    return !m_keeper || m_keeper->flush();
}

void FileCare::flushBeforeExit()
{
    if (!m_keeper || m_dropped)
        return;
    m_keeper->flushHere();
    if (!m_editors.isModified(m_editor))
        return;
    m_keeper->setModified(true);
    m_keeper->flushHere();
}

// Changes by others ---------------------------------------------------------------------------------------------------

QString FileCare::name() const
{
    const QFileInfo file(m_editor->document()->filePath().toString());
    return QFileInfo(file.absolutePath()).fileName() + QLatin1Char('/') + file.fileName();
}

void FileCare::onDiskChanged()
{
    if (!m_watch)
        return;
    if (m_editors.isWorking() || !canBeReplaced()) {
        m_later.start();
        return;
    }
    const DiskState &now = m_watch->seen();
    if (now == m_watch->known()) {
        hideChangeBar();
        return;
    }
    if (now.kind == DiskState::Missing) {
        m_editors.setAhead(m_editor, true);
        tell(tr("%1 is no longer on the disk. Saving writes it again.").arg(name()), false);
        return;
    }
    m_editors.setAhead(m_editor, false);
    if (m_editors.isModified(m_editor))
        tell(tr("%1 was changed by another program, and you have unsaved changes. Reloading gives yours up; keeping "
                "them lets the next save replace what the other program wrote.")
                 .arg(name()),
            true);
    else
        Q_EMIT reloadWanted();
}

void FileCare::tellUnreadable(const QString &reason)
{
    if (m_editor)
        tell(tr("%1 was changed by another program, and can't be read as it is now: %2").arg(name(), reason), true);
}

void FileCare::tell(const QString &text, bool canReload)
{
    m_reloadButton->setVisible(canReload);
    m_keepButton->setText(canReload ? tr("&Keep Mine") : tr("&OK"));
    m_changeBar->tell(text);
}

void FileCare::hideChangeBar()
{
    m_changeBar->hide();
    m_editors.setAhead(m_editor, false);
}

void FileCare::keepMine()
{
    m_changeBar->hide();
    if (!m_watch)
        return;
    m_watch->setKnown(m_watch->seen());
    if (m_keeper)
        m_keeper->setOriginal(m_watch->known().hash);
    // Also where the document has no change of its own: it is not what stands on the disk.
    m_editors.setAhead(m_editor, true);
}

bool FileCare::maySave()
{
    if (!m_watch)
        return true;
    const IEditor *editor = m_editor;
    m_watch->look();
    if (m_editor != editor)
        return false;
    const DiskState &now = m_watch->seen();
    if (now == m_watch->known() || now.kind == DiskState::Missing)
        return true;
    onDiskChanged();
    return false;
}

void FileCare::saved()
{
    if (!m_watch)
        return;
    m_watch->setKnown(DiskState::of(m_editor->document()->filePath().toString()));
    if (m_keeper)
        m_keeper->setOriginal(m_watch->known().hash);
    hideChangeBar();
}

// Recovery ------------------------------------------------------------------------------------------------------------

void FileCare::offerCopies(const QString &path)
{
    if (!m_store)
        return;
    m_offeredPath = path;
    m_copies = m_store->abandoned(RecoveryStore::keyOf(path));
    showNextCopy();
}

void FileCare::offerAgain()
{
    if (!m_copies.empty())
        offerCopies(QString(m_offeredPath));
}

void FileCare::showNextCopy()
{
    if (m_copies.empty()) {
        m_recoveryBar->hide();
        return;
    }
    const RecoveryCopy &copy = m_copies.front();
    const DiskState now = DiskState::of(m_offeredPath);
    QString text = tr("The workbench ended with unsaved changes to this file. They were kept on %1.")
                       .arg(QLocale().toString(copy.time.toLocalTime(), QLocale::ShortFormat));
    if (!copy.key.path.isEmpty() && !QFileInfo::exists(copy.key.path) && copy.key.path != m_offeredPath)
        text += QLatin1Char(' ') + tr("It was %1 then.").arg(QDir::toNativeSeparators(copy.key.path));
    if (now.kind == DiskState::Missing)
        text += QLatin1Char(' ') + tr("The file itself is no longer there.");
    else if (now.hash != copy.originalHash)
        text += QLatin1Char(' ')
            + tr("The file itself was changed since: saving after a restore replaces what was written then.");
    m_recoveryBar->tell(text);
}

void FileCare::discardCopy()
{
    if (m_copies.empty())
        return;
    m_store->remove(m_copies.front());
    m_copies.erase(m_copies.begin());
    showNextCopy();
}

void FileCare::adopt(const QString &path, const RecoveryCopy &copy)
{
    QString error;
    if (m_store->write(RecoveryStore::keyOf(path), copy.originalHash, copy.data, &error))
        m_store->remove(copy);
    else
        Q_EMIT copyFailed(error);
}

} // namespace Core

#pragma once

#include "core/core_global.h"
#include "core/diskstate.h"
#include "core/filewatch.h"
#include "core/infobar.h"
#include "core/recoverykeeper.h"
#include "core/recoverystore.h"

#include <QObject>
#include <QTimer>

#include <memory>

class QAbstractButton;
class QBoxLayout;

namespace Core {

class EditorManager;
class IEditor;

/// Looks after the file of the window's editor: notices when others change it, keeps the recovery copy of unsaved
/// changes, and asks about both in bars at the head of the window. It decides and asks; the window does what is wanted.
/// Owned by MainWindow; GUI thread.
class CORE_EXPORT FileCare final : public QObject
{
    Q_OBJECT

public:
    /// Adds its bars to @p place, whose widget must outlive it, as must @p editors.
    FileCare(EditorManager &editors, QBoxLayout &place, QObject *parent = nullptr);
    ~FileCare() override;

    /// Without a store nothing is kept and nothing offered.
    void setRecoveryStore(std::shared_ptr<const RecoveryStore> store) { m_store = std::move(store); }
    /// See RecoveryKeeper and FileWatch, in milliseconds; for editors that are attached from now on.
    void setIntervals(int recovery, int settle);

    /// @p opened is the state of the file before the editor read it.
    void attach(IEditor *editor, const DiskState &opened);
    /// To be called while the editor is whole. What is unsaved is kept unless dropCopy() was called before.
    void detach();
    /// To be called after every change of the editor's document.
    void setModified(bool modified);

    /// Looks whether the file is still as it was opened or saved last. When it isn't, saving would destroy what
    /// somebody else wrote: false, and the user has been asked or the file been read again.
    [[nodiscard]] bool maySave();
    void saved();
    /// The user has given up the changes.
    void dropCopy();
    /// Brings unsaved changes to disk; false when the document can't tell them at the moment.
    bool flush();
    /// The same when the process is ending without having been asked; what is being typed last, since the window may
    /// not bear being touched any more.
    void flushBeforeExit();

    /// Offers what earlier processes have left behind of the file, open or not.
    void offerCopies(const QString &path);
    /// Offers no more what has been decided on elsewhere.
    void offerAgain();
    /// The copy is this process's own from now on, as one of the file @p path.
    void adopt(const QString &path, const RecoveryCopy &copy);
    /// For a file that can't be read again.
    void tellUnreadable(const QString &reason);

Q_SIGNALS:
    /// A fresh editor is wanted in place of the present one; what is not saved may be lost. Failures are for
    /// tellUnreadable().
    void reloadWanted();
    void restoreWanted(const QString &path, const Core::RecoveryCopy &copy);
    /// No recovery copy can be written.
    void copyFailed(const QString &reason);

private:
    void onDiskChanged();
    void keepMine();
    void tell(const QString &text, bool canReload);
    void hideChangeBar();
    void showNextCopy();
    void discardCopy();
    [[nodiscard]] QString name() const;

    EditorManager &m_editors;
    std::shared_ptr<const RecoveryStore> m_store;
    int m_recoveryInterval = 0; // 0: as it is by default, both
    int m_settleTime = 0;
    IEditor *m_editor = nullptr;
    std::unique_ptr<FileWatch> m_watch;
    std::unique_ptr<RecoveryKeeper> m_keeper;
    QTimer m_later;
    bool m_modified = false;
    bool m_dropped = false;

    QString m_offeredPath;
    std::vector<RecoveryCopy> m_copies;

    InfoBar *m_recoveryBar;
    InfoBar *m_changeBar;
    QAbstractButton *m_reloadButton;
    QAbstractButton *m_keepButton;
};

} // namespace Core

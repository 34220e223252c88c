#pragma once

#include "core/core_global.h"
#include "core/recoverystore.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <memory>

namespace Core {

class RecoverableDocument;

/// Keeps the recovery copy of one modified document: writes it a few seconds after a change, and drops it once the
/// changes are saved or given up. The disk is written on a thread of its own, since it may be slow. Owned by FileCare;
/// @p document must outlive it. GUI thread.
class CORE_EXPORT RecoveryKeeper final : public QObject
{
    Q_OBJECT

public:
    RecoveryKeeper(const RecoverableDocument &document, const RecoveryKey &key,
        std::shared_ptr<const RecoveryStore> store, QObject *parent = nullptr);
    /// The copy stays, as it was written last.
    ~RecoveryKeeper() override;

    /// The longest time from a change to its copy, in milliseconds, but for what the document itself makes wait.
    void setInterval(int milliseconds) { m_interval = milliseconds; }
    /// DiskState::hash of the file that the changes are changes of.
    void setOriginal(const QByteArray &hash) { m_originalHash = hash; }

    /// To be called after every change of the document. False drops the copy.
    void setModified(bool modified);
    /// Removes this process's copy; a later change makes a new one.
    void drop();
    /// Writes now what is not written yet, and returns when that is done. False when the document can't tell its
    /// content at the moment.
    bool flush();
    /// As flush(), on the calling thread alone, for a process that is being torn down.
    void flushHere();

Q_SIGNALS:
    /// A copy could not be written; told once for one document.
    void failed(const QString &reason);

private:
    bool write();

    const RecoverableDocument &m_document;
    const RecoveryKey m_key;
    const std::shared_ptr<const RecoveryStore> m_store;
    QByteArray m_originalHash;
    QByteArray m_written;
    QTimer m_timer;
    QThreadPool m_pool;
    int m_interval;
    bool m_modified = false;
    bool m_failed = false;
};

} // namespace Core

#include "core/recoverykeeper.h"

#include "core/recoverabledocument.h"

#include <QMetaObject>

namespace Core {

namespace {

constexpr int Interval = 2500;     // milliseconds
constexpr int RetryInterval = 250; // while the document can't tell its content
constexpr int LongestWaitForWriting = 2000;

} // namespace

RecoveryKeeper::RecoveryKeeper(const RecoverableDocument &document, const RecoveryKey &key,
    std::shared_ptr<const RecoveryStore> store, QObject *parent)
    : QObject(parent), m_document(document), m_key(key), m_store(std::move(store)), m_interval(Interval)
{
    // One thread, so that copies are written in the order in which they were made.
    m_pool.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (!write())
            m_timer.start(RetryInterval);
    });
}

RecoveryKeeper::~RecoveryKeeper()
{
    m_pool.waitForDone();
}

void RecoveryKeeper::setModified(bool modified)
{
    if (!modified) {
        drop();
        return;
    }
    m_modified = true;
    // Not started anew by each change: somebody who works without a pause gets copies, too.
    if (!m_timer.isActive())
        m_timer.start(m_interval);
}

void RecoveryKeeper::drop()
{
    m_timer.stop();
    m_modified = false;
    m_written.clear();
    m_pool.waitForDone();
    m_store->drop(m_key);
}

bool RecoveryKeeper::flush()
{
    if (!m_modified)
        return true;
    if (!write())
        return false;
    m_timer.stop();
    m_pool.waitForDone();
    return true;
}

void RecoveryKeeper::flushHere()
{
    const QByteArray data = m_modified ? m_document.recoveryData() : QByteArray();
    if (data.isEmpty() || !m_pool.waitForDone(LongestWaitForWriting))
        return;
    QString error;
    if (!m_store->write(m_key, m_originalHash, data, &error))
        qWarning("%s", qUtf8Printable(error));
}

bool RecoveryKeeper::write()
{
    const QByteArray data = m_document.recoveryData();
    if (data.isEmpty())
        return false;
    if (data == m_written)
        return true;
    m_written = data;
    m_pool.start([this, data, original = m_originalHash] {
        QString error;
        const bool done = m_store->write(m_key, original, data, &error);
        QMetaObject::invokeMethod(
            this,
            [this, done, error] {
                const bool first = !done && !m_failed;
                m_failed = !done;
                if (!done) {
                    m_written.clear();
                    if (m_modified && !m_timer.isActive())
                        m_timer.start(m_interval);
                }
                if (first)
                    Q_EMIT failed(error);
            },
            Qt::QueuedConnection);
    });
    return true;
}

} // namespace Core

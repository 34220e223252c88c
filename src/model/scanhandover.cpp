#include "scanhandover.h"

#include "scansequence.h"

#include <QMetaObject>

ScanHandover::ScanHandover(int count, const ExtensionFile::FileIdentity &opened, ScanSequence *receiver)
    : m_slots(size_t(count)), m_opened(opened), m_receiver(receiver)
{ }

ScanHandover::~ScanHandover() = default;

bool ScanHandover::claim(int index)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Slot &slot = m_slots[size_t(index)];
    if (!m_receiver || slot.claimed)
        return false;
    slot.claimed = true;
    return true;
}

void ScanHandover::put(int index, const QString &path, std::unique_ptr<ScannedFile> file)
{
    if (file)
        file->setIsOpenedFile(m_opened.isSameAs(ExtensionFile::FileIdentity::of(path)));
    std::unique_ptr<ScannedFile> unwanted;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Slot &slot = m_slots[size_t(index)];
        slot.arrived = true;
        if (!m_receiver)
            unwanted = std::move(file);
        else
            slot.file = std::move(file);
        if (m_receiver && index == m_awaited) {
            m_awaited = -1;
            // Posted under the lock: the receiver can't go between the test and the call.
            QMetaObject::invokeMethod(m_receiver, &ScanSequence::wake, Qt::QueuedConnection);
        }
    }
    m_arrived.notify_all();
}

bool ScanHandover::take(int index, std::unique_ptr<ScannedFile> *file)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Slot &slot = m_slots[size_t(index)];
    if (!slot.arrived) {
        m_awaited = index;
        return false;
    }
    *file = std::move(slot.file);
    return true;
}

void ScanHandover::waitFor(int index)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_arrived.wait(lock, [this, index] { return m_slots[size_t(index)].arrived; });
}

void ScanHandover::abandon()
{
    std::vector<Slot> unwanted;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_receiver = nullptr;
    for (Slot &slot : m_slots) {
        unwanted.emplace_back();
        unwanted.back().file = std::move(slot.file);
    }
}

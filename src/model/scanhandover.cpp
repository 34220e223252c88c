#include "scanhandover.h"

#include "scansequence.h"

#include <QMetaObject>
#include <QThreadPool>

#include <utility>

ScanHandover::ScanHandover(int count, const ExtensionFile::FileIdentity &opened, ScanSequence *receiver)
    : m_slots(size_t(count)), m_opened(opened), m_receiver(receiver)
{ }

ScanHandover::~ScanHandover() = default;

bool ScanHandover::claim(int index)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Slot &slot = m_slots[size_t(index)];
    if (!m_receiver || slot.state != Slot::Waiting)
        return false;
    slot.state = Slot::Claimed;
    slot.claimed = Clock::now();
    return true;
}

void ScanHandover::noteRead(int index)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_slots[size_t(index)].state = Slot::Read;
}

void ScanHandover::put(int index, const QString &path, ScanResult result)
{
    if (result.file)
        result.file->setIsOpenedFile(m_opened.isSameAs(ExtensionFile::FileIdentity::of(path)));
    bool wasSlow = false;
    ScanResult unwanted;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Slot &slot = m_slots[size_t(index)];
        wasSlow = slot.isSlow;
        m_slow -= wasSlow ? 1 : 0;
        slot.state = Slot::Arrived;
        m_hasNews = true;
        (m_receiver ? slot.result : unwanted) = std::move(result);
        // Posted under the lock: the receiver can't go between the test and the call.
        if (m_receiver && std::exchange(m_receiverWaits, false))
            QMetaObject::invokeMethod(m_receiver, &ScanSequence::wake, Qt::QueuedConnection);
    }
    if (wasSlow)
        QThreadPool::globalInstance()->reserveThread();
    m_news.notify_all();
}

bool ScanHandover::take(int index, ScanResult *result)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Slot &slot = m_slots[size_t(index)];
    m_receiverWaits = slot.state != Slot::Arrived;
    if (m_receiverWaits)
        return false;
    *result = std::move(slot.result);
    return true;
}

bool ScanHandover::hasArrived(int index) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_slots[size_t(index)].state == Slot::Arrived;
}

bool ScanHandover::waitForNews(std::chrono::milliseconds longest)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_news.wait_for(lock, longest, [this] { return m_hasNews; });
    return std::exchange(m_hasNews, false);
}

int ScanHandover::countSlow(std::chrono::milliseconds time, int most)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Clock::time_point begun = Clock::now() - time;
    int count = 0;
    for (Slot &slot : m_slots) {
        if (slot.state != Slot::Claimed || slot.isSlow || slot.claimed > begun || m_slow >= most)
            continue;
        slot.isSlow = true;
        ++m_slow;
        ++count;
    }
    return count;
}

bool ScanHandover::isSlow(int index) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Slot &slot = m_slots[size_t(index)];
    return slot.isSlow && slot.state == Slot::Claimed;
}

int ScanHandover::forgotten() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    int found = -1;
    for (size_t i = 0; i < m_slots.size(); ++i) {
        const Slot::State state = m_slots[i].state;
        if (state == Slot::Claimed || state == Slot::Read)
            return -1;
        if (state == Slot::Waiting && found < 0)
            found = int(i);
    }
    return found;
}

void ScanHandover::abandon()
{
    std::vector<ScanResult> unwanted;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_receiver = nullptr;
    for (Slot &slot : m_slots)
        unwanted.push_back(std::move(slot.result));
}

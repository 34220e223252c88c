#pragma once

#include "announcement.h"
#include "extensionfile/regularfile.h"
#include "scanbudget.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

class ScanSequence;

/// Where the reading tasks of one scan leave what they read, and where the GUI thread fetches it. Shared by the
/// sequence and its tasks; the last one to let go destroys it. Thread-safe.
///
/// Nobody ever waits here for the GUI thread, so a task can't block the pool and the GUI thread may wait for a task.
class ScanHandover final
{
public:
    using Clock = std::chrono::steady_clock;

    /// Slots for @p count files. @p receiver is woken when a file has arrived that it asked for in vain. @p opened is
    /// the file that is open: another reading of it is marked as such.
    ScanHandover(int count, const ExtensionFile::FileIdentity &opened, ScanSequence *receiver);
    ~ScanHandover();

    /// True for the first caller only: it reads file @p index. False for everybody once the scan is abandoned.
    [[nodiscard]] bool claim(int index);

    /// The bytes of file @p index are there: it waits for nobody any longer.
    void noteRead(int index);

    /// Hands over what was read from @p path. Destroyed on the spot when the scan is abandoned.
    void put(int index, const QString &path, ScanResult result);

    /// True when file @p index has arrived, with what came of it. Otherwise the receiver is woken as soon as any does.
    [[nodiscard]] bool take(int index, ScanResult *result);
    [[nodiscard]] bool hasArrived(int index) const;

    /// Returns when a file has arrived since the last call, or after @p longest; false when none has.
    bool waitForNews(std::chrono::milliseconds longest);

    /// How many files have been waited for, by the thread that reads them, for longer than @p time by now and were not
    /// counted before; @p most at a time. Each of them is to get a stand-in for its thread, which is taken back from
    /// the global pool when the file arrives after all.
    [[nodiscard]] int countSlow(std::chrono::milliseconds time, int most);
    /// Whether file @p index was counted so, and is still waited for.
    [[nodiscard]] bool isSlow(int index) const;

    /// A file that nobody reads while nobody reads any other; -1 when there is none, or somebody does.
    [[nodiscard]] int forgotten() const;

    [[nodiscard]] ScanBudget *budget() { return &m_budget; }

    /// The receiver is going: nothing is started any more, and what still arrives is destroyed.
    void abandon();

private:
    struct Slot
    {
        enum State { Waiting, Claimed, Read, Arrived };

        State state = Waiting;
        bool isSlow = false;
        Clock::time_point claimed;
        ScanResult result;
    };

    mutable std::mutex m_mutex;
    std::condition_variable m_news;
    std::vector<Slot> m_slots;
    const ExtensionFile::FileIdentity m_opened;
    ScanBudget m_budget;
    ScanSequence *m_receiver;
    int m_slow = 0;
    bool m_hasNews = false;
    bool m_receiverWaits = false;
};

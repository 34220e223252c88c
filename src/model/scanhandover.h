#pragma once

#include "announcement.h"
#include "extensionfile/regularfile.h"
#include "scanbudget.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

class ScanSequence;

/// Where the reading tasks of one scan leave what they read, and where the GUI thread fetches it in the order of the
/// directory listing. Shared by the sequence and its tasks; the last one to let go destroys it. Thread-safe.
///
/// Nobody ever waits here for the GUI thread, so a task can't block the pool and the GUI thread may wait for a task.
class ScanHandover final
{
public:
    /// Slots for @p count files. @p receiver is woken when the file that it waits for has arrived. @p opened is the
    /// file that is open: another reading of it is marked as such.
    ScanHandover(int count, const ExtensionFile::FileIdentity &opened, ScanSequence *receiver);
    ~ScanHandover();

    /// True for the first caller only: it reads file @p index. False for everybody once the scan is abandoned.
    [[nodiscard]] bool claim(int index);

    /// Hands over what was read from @p path; null says that there was nothing to read. Destroyed on the spot when the
    /// scan is abandoned.
    void put(int index, const QString &path, std::unique_ptr<ScannedFile> file);

    /// True when file @p index has arrived, with the file (which may be null). Otherwise the receiver is woken as soon
    /// as it does.
    [[nodiscard]] bool take(int index, std::unique_ptr<ScannedFile> *file);

    /// Blocks until file @p index has arrived. Only for a file that was claimed, else nobody would bring it.
    void waitFor(int index);

    [[nodiscard]] ScanBudget *budget() { return &m_budget; }

    /// The receiver is going: nothing is started any more, and what still arrives is destroyed.
    void abandon();

private:
    struct Slot
    {
        bool claimed = false;
        bool arrived = false;
        std::unique_ptr<ScannedFile> file;
    };

    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::vector<Slot> m_slots;
    const ExtensionFile::FileIdentity m_opened;
    ScanBudget m_budget;
    ScanSequence *m_receiver;
    int m_awaited = -1;
};

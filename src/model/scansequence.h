#pragma once

#include "announcement.h"
#include "extensionfile/regularfile.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

class PointTreeWidgetItem;
class ScanHandover;

/// What came of one file of a scan.
struct FileNews
{
    enum Outcome { Read, Missing, Unreadable, Unchanged };

    int index; ///< in the list of the scan
    Outcome outcome;
    QString reason; ///< "path:line:column: reason", in one line; of an unreadable one
    ExtensionFile::FileStamp stamp;
};

/// One scan: starts a reading task for each file and takes the results in, on its own thread, in the order of the
/// list, whatever the order in which the tasks finish.
///
/// Results are taken in portions of a few milliseconds with a turn of the event loop between them, so that a scan of
/// any size leaves the window responsive. A file that takes long (on a network that has gone, say) gets a thread in
/// place of the one that it holds, and the others pass it after two seconds. Created and owned by the manager; may be
/// destroyed at any moment, also from within a call that it makes.
class ScanSequence final : public QObject
{
    Q_OBJECT

public:
    /// Called once for each announcement; @p index is the position of the file in the list, and @p isOpened says that
    /// it is the file that is open.
    using Receiver = std::function<void(int index, bool isOpened, const Announcement &)>;

    struct Roots
    {
        PointTreeWidgetItem *points;
        PointTreeWidgetItem *data;
        PointTreeWidgetItem *third;
    };

    ScanSequence(const QStringList &paths, const ExtensionFile::FileIdentity &opened, const Roots &roots,
        Receiver receiver, QObject *parent = nullptr);

    /// Leaves out what is as it was: the stamps of the files, one for each path. Call before start().
    void setKnown(QVector<ExtensionFile::FileStamp> known) { m_known = std::move(known); }
    ~ScanSequence() override;

    /// Starts one task per path on the global pool when the event loop has nothing else to do. Call once.
    void start();

    /// Waits for the tasks and takes everything in before it returns. No user input is handled meanwhile. Gives up when
    /// nothing has arrived for @p patience; the scan goes on then.
    void complete(std::chrono::milliseconds patience);

    /// The files that have not been read yet, in the order of the list.
    [[nodiscard]] QStringList awaited() const;

    /// Has the next portion taken in when the event loop has had its turn.
    void wake();

Q_SIGNALS:
    void portionDelivered();
    /// A file has come; what it brings follows. In the middle of a portion: what is connected may not end the scan.
    void arrived(const FileNews &news);

    /// Everything has been taken in. Emitted once.
    void finished();

private:
    enum class Progress { Waiting, Interrupted, Done };

    void startTasks();
    /// To be called a few times a second: whatever takes long shall keep nothing but itself waiting.
    void tend();
    void readHere(int index);
    void giveThreadBack();

    /// Takes in what has arrived, up to the time that a portion may take.
    void deliverPortion();
    Progress deliver(bool withinBudget);
    /// Fetches the next file; false when it has not arrived.
    [[nodiscard]] bool fetch();
    void conclude(Progress progress);

    QStringList m_paths;
    QVector<ExtensionFile::FileStamp> m_known;
    Roots m_roots;
    Receiver m_receiver;
    std::shared_ptr<ScanHandover> m_handover;
    std::deque<int> m_next; ///< the file being taken in, or to be taken in next, and those after it
    QSet<int> m_passed;     ///< those of them that the others have passed
    std::unique_ptr<ScannedFile> m_current;
    QElapsedTimer m_waiting; ///< for the first of m_next; invalid while it is there
    int m_idleLooks = 0;
    bool m_hasOwnThread = false; ///< beside those that the pool has
    bool m_started = false;
    bool m_haveCurrent = false;
    bool m_finished = false;
    bool m_delivered = false; ///< since portionDelivered() was emitted last
    QTimer m_nextTurn;
    QTimer m_tending;
};

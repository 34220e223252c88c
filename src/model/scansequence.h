#pragma once

#include "announcement.h"
#include "extensionfile/regularfile.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class PointTreeWidgetItem;
class ScanHandover;

/// One scan: starts a reading task for each file and takes the results in, on its own thread, in the order of the
/// list, whatever the order in which the tasks finish.
///
/// Results are taken in portions of a few milliseconds with a turn of the event loop between them, so that a scan of
/// any size leaves the window responsive. Created and owned by the manager; may be destroyed at any moment, also from
/// within a call that it makes.
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
    ~ScanSequence() override;

    /// Starts one task per path on the global pool when the event loop has nothing else to do. Call once.
    void start();

    /// Reads what no task has begun, waits for the others and takes everything in before it returns. No user input is
    /// handled meanwhile.
    void complete();

    [[nodiscard]] bool isFinished() const { return m_finished; }

    /// Has the next portion taken in when the event loop has had its turn.
    void wake();

Q_SIGNALS:
    void portionDelivered();

    /// Everything has been taken in. Emitted once.
    void finished();

private:
    enum class Progress { Waiting, Interrupted, Done };

    void startTasks();

    /// Takes in what has arrived, up to the time that a portion may take.
    void deliverPortion();
    Progress deliver(bool withinBudget);
    void conclude(Progress progress);

    QStringList m_paths;
    Roots m_roots;
    Receiver m_receiver;
    std::shared_ptr<ScanHandover> m_handover;
    std::unique_ptr<ScannedFile> m_current;
    int m_next = 0; ///< the file being taken in, or to be taken in next
    bool m_haveCurrent = false;
    bool m_finished = false;
    bool m_delivered = false; ///< since portionDelivered() was emitted last
    QTimer m_nextTurn;
};

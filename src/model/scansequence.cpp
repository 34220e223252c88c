#include "scansequence.h"

#include "scanhandover.h"
#include "taskread.h"

#include <QPointer>
#include <QThread>
#include <QThreadPool>

#include <numeric>
#include <utility>

namespace {

// A quarter of a frame at 60 Hz: the rest stays for painting and input.
constexpr qint64 portionBudgetNs = 4 * 1000 * 1000;

// The first portion comes a frame late, so that the window that has just opened is painted first.
constexpr int firstTurnMs = 16;

// Looking at the clock costs as much as a small announcement.
constexpr int announcementsPerLookAtClock = 16;

constexpr std::chrono::milliseconds lookInterval(250);

// A file that is read for so long waits for something: its thread does nothing, and another may.
constexpr std::chrono::milliseconds slowTime(250);
constexpr int mostStandIns = 64;

// So long a file keeps its place in the order of the listing.
constexpr qint64 longestWaitForOneMs = 2000;

// While others have all threads of the pool, one is added; where none can be started, tasks wait for ever.
constexpr int idleLooksBeforeAnotherThread = 1;
constexpr int idleLooksBeforeReadingHere = 3;

} // namespace

ScanSequence::ScanSequence(const QStringList &paths, const ExtensionFile::FileIdentity &opened, const Roots &roots,
    Receiver receiver, QObject *parent)
    : QObject(parent), m_paths(paths), m_roots(roots), m_receiver(std::move(receiver)),
      m_handover(std::make_shared<ScanHandover>(paths.size(), opened, this)), m_next(size_t(paths.size()))
{
    std::iota(m_next.begin(), m_next.end(), 0);
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(firstTurnMs);
    connect(&m_nextTurn, &QTimer::timeout, this, &ScanSequence::deliverPortion);
    m_tending.setInterval(int(lookInterval.count()));
    connect(&m_tending, &QTimer::timeout, this, &ScanSequence::tend);
}

ScanSequence::~ScanSequence()
{
    m_handover->abandon();
    giveThreadBack();
}

void ScanSequence::start()
{
    // Once the event loop has nothing else to do: what opened the file may go on with building the window, which is to
    // be seen before the processors are busy.
    QTimer::singleShot(0, this, &ScanSequence::startTasks);
}

void ScanSequence::startTasks()
{
    if (std::exchange(m_started, true))
        return;
    for (int i = 0; i < m_paths.size(); ++i) {
        auto *task = new TaskRead(m_paths.at(i), m_roots.points, m_roots.data, m_roots.third);
        task->setKnown(m_known.value(i));
        task->setHandover(m_handover, i);
        QThreadPool::globalInstance()->start(task);
    }
    m_nextTurn.start();
    m_tending.start();
}

void ScanSequence::complete(std::chrono::milliseconds patience)
{
    if (m_finished)
        return;
    startTasks();
    const QPointer<ScanSequence> alive(this);
    QElapsedTimer sinceNews;
    sinceNews.start();
    while (!sinceNews.hasExpired(patience.count())) {
        const Progress progress = deliver(false);
        if (alive)
            conclude(progress);
        if (!alive || m_finished)
            return;
        const bool readsHere = m_idleLooks >= idleLooksBeforeReadingHere;
        if (m_handover->waitForNews(readsHere ? std::chrono::milliseconds(0) : lookInterval))
            sinceNews.restart();
        else
            tend();
    }
}

void ScanSequence::tend()
{
    if (m_finished)
        return;
    for (int slow = m_handover->countSlow(slowTime, mostStandIns); slow > 0; --slow)
        QThreadPool::globalInstance()->releaseThread();
    const int forgotten = m_handover->forgotten();
    m_idleLooks = forgotten < 0 ? 0 : m_idleLooks + 1;
    if (m_idleLooks == idleLooksBeforeAnotherThread && !std::exchange(m_hasOwnThread, true))
        QThreadPool::globalInstance()->releaseThread();
    if (m_idleLooks >= idleLooksBeforeReadingHere)
        readHere(forgotten);
    if (m_waiting.isValid() && m_waiting.hasExpired(longestWaitForOneMs) && m_handover->isSlow(m_next.front())) {
        m_waiting.invalidate();
        m_passed.insert(m_next.front());
        m_next.push_back(m_next.front());
        m_next.pop_front();
        wake();
    }
}

void ScanSequence::giveThreadBack()
{
    if (std::exchange(m_hasOwnThread, false))
        QThreadPool::globalInstance()->reserveThread();
}

void ScanSequence::readHere(int index)
{
    if (!m_handover->claim(index))
        return;
    m_handover->put(index, m_paths.at(index),
        TaskRead::read(
            m_paths.at(index), m_roots.points, m_roots.data, thread(), m_handover->budget(),
            [this, index] { m_handover->noteRead(index); }, m_known.value(index)));
    // As quickly as the window allows, once it is known that nobody else does.
    QTimer::singleShot(0, this, &ScanSequence::tend);
}

QStringList ScanSequence::awaited() const
{
    QStringList paths;
    for (int i = 0; i < m_paths.size() && !m_finished; ++i) {
        if (!m_handover->hasArrived(i))
            paths.append(m_paths.at(i));
    }
    return paths;
}

void ScanSequence::wake()
{
    if (!m_nextTurn.isActive())
        m_nextTurn.start();
}

void ScanSequence::deliverPortion()
{
    if (m_finished)
        return;
    m_nextTurn.setInterval(0);
    const QPointer<ScanSequence> alive(this);
    const Progress progress = deliver(true);
    if (alive)
        conclude(progress);
}

ScanSequence::Progress ScanSequence::deliver(bool withinBudget)
{
    const QPointer<ScanSequence> alive(this);
    QElapsedTimer clock;
    clock.start();
    int untilLook = announcementsPerLookAtClock;
    const auto outOfTime = [&] {
        if (!withinBudget || --untilLook > 0)
            return false;
        untilLook = announcementsPerLookAtClock;
        return clock.nsecsElapsed() > portionBudgetNs;
    };

    while (!m_next.empty()) {
        if (!m_haveCurrent && !fetch())
            return Progress::Waiting;
        while (m_current && !m_current->atEnd()) {
            // The receiver may save, close or delete whatever it likes: nothing but members is trusted after the call.
            m_delivered = true;
            const bool isOpened = m_current->isOpenedFile();
            if (const Announcement *announcement = m_current->next())
                m_receiver(m_next.front(), isOpened, Announcement(*announcement));
            if (!alive)
                return Progress::Done;
            if (outOfTime()) {
                if (m_current)
                    m_current->putAside();
                return Progress::Interrupted;
            }
        }
        if (m_haveCurrent) {
            m_haveCurrent = false;
            m_current.reset();
            m_next.pop_front();
        }
        if (outOfTime())
            return Progress::Interrupted;
    }
    return Progress::Done;
}

bool ScanSequence::fetch()
{
    ScanResult result;
    for (size_t tried = 0; !m_handover->take(m_next.front(), &result); ++tried) {
        if (!m_passed.contains(m_next.front()) && !m_waiting.isValid())
            m_waiting.start();
        // Those that were passed stand at the end, and any of them may be there now.
        if (!m_passed.contains(m_next.front()) || tried == m_next.size())
            return false;
        m_next.push_back(m_next.front());
        m_next.pop_front();
    }
    m_waiting.invalidate();
    m_haveCurrent = true;
    m_current = std::move(result.file);
    const FileNews::Outcome outcome = result.isUnchanged ? FileNews::Unchanged
        : !result.failure.isEmpty()                      ? FileNews::Unreadable
        : m_current                                      ? FileNews::Read
                                                         : FileNews::Missing;
    Q_EMIT arrived({ m_next.front(), outcome, result.failure, result.stamp });
    return true;
}

void ScanSequence::conclude(Progress progress)
{
    const QPointer<ScanSequence> alive(this);
    if (progress == Progress::Interrupted)
        m_nextTurn.start();
    if (std::exchange(m_delivered, false))
        Q_EMIT portionDelivered();
    if (!alive || progress != Progress::Done || m_finished)
        return;
    m_finished = true;
    giveThreadBack();
    Q_EMIT finished();
}

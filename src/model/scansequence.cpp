#include "scansequence.h"

#include "scanhandover.h"
#include "taskread.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QThread>
#include <QThreadPool>

#include <utility>

namespace {

// A quarter of a frame at 60 Hz: the rest stays for painting and input.
constexpr qint64 portionBudgetNs = 4 * 1000 * 1000;

// The first portion comes a frame late, so that the window that has just opened is painted first.
constexpr int firstTurnMs = 16;

// Looking at the clock costs as much as a small announcement.
constexpr int announcementsPerLookAtClock = 16;

} // namespace

ScanSequence::ScanSequence(const QStringList &paths, const ExtensionFile::FileIdentity &opened, const Roots &roots,
    Receiver receiver, QObject *parent)
    : QObject(parent), m_paths(paths), m_roots(roots), m_receiver(std::move(receiver)),
      m_handover(std::make_shared<ScanHandover>(paths.size(), opened, this))
{
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(firstTurnMs);
    connect(&m_nextTurn, &QTimer::timeout, this, &ScanSequence::deliverPortion);
}

ScanSequence::~ScanSequence()
{
    m_handover->abandon();
}

void ScanSequence::start()
{
    // Once the event loop has nothing else to do: what opened the file may go on with building the window, which is to
    // be seen before the processors are busy.
    QTimer::singleShot(0, this, &ScanSequence::startTasks);
}

void ScanSequence::startTasks()
{
    for (int i = m_next; i < m_paths.size() && !m_finished; ++i) {
        auto *task = new TaskRead(m_paths.at(i), m_roots.points, m_roots.data, m_roots.third);
        task->setHandover(m_handover, i);
        QThreadPool::globalInstance()->start(task);
    }
    m_nextTurn.start();
}

void ScanSequence::complete()
{
    if (m_finished)
        return;
    const QPointer<ScanSequence> alive(this);
    for (int i = m_next + (m_haveCurrent ? 1 : 0); i < m_paths.size(); ++i) {
        if (m_handover->claim(i))
            m_handover->put(i, m_paths.at(i),
                TaskRead::read(m_paths.at(i), m_roots.points, m_roots.data, thread(), m_handover->budget()));
        else
            m_handover->waitFor(i);
    }
    const Progress progress = deliver(false);
    if (alive)
        conclude(progress);
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

    while (m_next < m_paths.size()) {
        if (!m_haveCurrent) {
            if (!m_handover->take(m_next, &m_current))
                return Progress::Waiting;
            m_haveCurrent = true;
        }
        while (m_current && !m_current->atEnd()) {
            // The receiver may save, close or delete whatever it likes: nothing but members is trusted after the call.
            m_delivered = true;
            const bool isOpened = m_current->isOpenedFile();
            if (const Announcement *announcement = m_current->next())
                m_receiver(m_next, isOpened, Announcement(*announcement));
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
            ++m_next;
        }
        if (outOfTime())
            return Progress::Interrupted;
    }
    return Progress::Done;
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
    m_nextTurn.stop();
    Q_EMIT finished();
}

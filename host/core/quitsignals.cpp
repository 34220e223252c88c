#include "core/quitsignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace Core {

namespace {

// All that a signal handler may do is to write here.
volatile std::sig_atomic_t pipeEnd = -1;

void onSignal(int)
{
    const int code = errno;
    const char byte = 0;
    // A full pipe holds enough news already.
    if (::write(pipeEnd, &byte, 1) < 0)
        errno = 0;
    errno = code;
}

} // namespace

QuitSignals::QuitSignals(QObject *parent) : QObject(parent)
{
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    pipeEnd = m_pipe[1];
    auto *notifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char bytes[64];
        while (::read(m_pipe[0], bytes, sizeof bytes) > 0) { }
        Q_EMIT asked();
    });
    for (const int number : { SIGTERM, SIGINT, SIGHUP }) {
        Replaced replaced = { number, {} };
        struct sigaction action = {};
        action.sa_handler = onSignal;
        action.sa_flags = SA_RESTART;
        if (::sigaction(number, nullptr, &replaced.action) == 0 && replaced.action.sa_handler != SIG_IGN
            && ::sigaction(number, &action, nullptr) == 0)
            m_replaced.push_back(replaced);
    }
}

QuitSignals::~QuitSignals()
{
    for (const Replaced &replaced : m_replaced)
        (void)::sigaction(replaced.number, &replaced.action, nullptr);
    pipeEnd = -1;
    if (m_pipe[0] >= 0) {
        delete findChild<QSocketNotifier *>();
        ::close(m_pipe[0]);
        ::close(m_pipe[1]);
    }
}

} // namespace Core

#include "workbench/outofmeans.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace Workbench {

namespace {

std::terminate_handler defaultTerminate = nullptr;

/// Takes no memory.
[[noreturn]] void end(const char *line)
{
    static std::atomic_flag ending = ATOMIC_FLAG_INIT;
    // Threads run out of it at the same time.
    while (ending.test_and_set())
        ::pause();
    (void)!::write(STDERR_FILENO, line, std::strlen(line));
    ::_exit(EXIT_FAILURE);
}

[[noreturn]] void endWithoutMemory()
{
    end("extpoint-workbench: Out of memory.\n");
}

/// Qt's containers throw where the operator new calls its handler.
[[noreturn]] void endByException()
{
    try {
        if (const std::exception_ptr exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (const std::bad_alloc &) {
        endWithoutMemory();
    } catch (...) {
        // A fault of the program's.
    }
    defaultTerminate();
    std::abort();
}

/// C libraries that get no memory write to where nothing is, or abort. Whether that was it shows when there is none
/// now; otherwise the fault is met again, with what the system does about it.
void endIfOutOfMemory(int)
{
    constexpr size_t aLittle = 1024 * 1024; // as much as malloc() asks the system for
    if (::mmap(nullptr, aLittle, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) == MAP_FAILED)
        endWithoutMemory();
}

/// Leaves the signal to who has it already: a sanitizer, say.
void takeOver(int signal)
{
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
        return;
    action.sa_handler = endIfOutOfMemory;
    action.sa_flags = int(SA_RESETHAND);
    (void)::sigaction(signal, &action, nullptr);
}

} // namespace

void endWhenOutOfMemory()
{
    takeOver(SIGSEGV);
    takeOver(SIGABRT);
    std::set_new_handler(endWithoutMemory);
    defaultTerminate = std::set_terminate(endByException);
}

} // namespace Workbench

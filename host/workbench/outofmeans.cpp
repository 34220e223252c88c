#include "workbench/outofmeans.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <unistd.h>

namespace Workbench {

namespace {

std::terminate_handler defaultHandler = nullptr;

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
    defaultHandler();
    std::abort();
}

} // namespace

void endWhenOutOfMemory()
{
    std::set_new_handler(endWithoutMemory);
    defaultHandler = std::set_terminate(endByException);
}

} // namespace Workbench

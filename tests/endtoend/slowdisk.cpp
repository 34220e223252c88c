// Preloaded into the program: a disk that takes its time, so that a test can do something while the plug-ins are being
// read and need not be quicker than the reading.
//
// EXTPOINT_HELD_FILE   opening the file of this path waits ...
// EXTPOINT_HELD_WHILE  ... as long as there is a file of this path.
// EXTPOINT_SLOW_FILES  opening any extension.xml takes this many milliseconds.

#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr useconds_t PollInterval = 5'000; // microseconds

bool endsWith(const char *text, const char *end)
{
    const std::size_t length = std::strlen(text);
    const std::size_t endLength = std::strlen(end);
    return length >= endLength && std::strcmp(text + length - endLength, end) == 0;
}

void takeTime(const char *path)
{
    const char *held = std::getenv("EXTPOINT_HELD_FILE");
    const char *gate = std::getenv("EXTPOINT_HELD_WHILE");
    struct stat status;
    if (held && gate && std::strcmp(path, held) == 0)
        while (::stat(gate, &status) == 0)
            ::usleep(PollInterval);
    const char *slow = std::getenv("EXTPOINT_SLOW_FILES");
    if (slow && endsWith(path, "/extension.xml"))
        ::usleep(useconds_t(std::atoi(slow)) * 1'000);
}

} // namespace

extern "C" int open(const char *path, int flags, ...)
{
    using Open = int (*)(const char *path, int flags, ...);
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    takeTime(path);
    return reinterpret_cast<Open>(::dlsym(RTLD_NEXT, "open64"))(path, flags, mode);
}

extern "C" int open64(const char *path, int flags, ...) __attribute__((alias("open")));

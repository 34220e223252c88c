#include "nodememory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

namespace {

// It has to stay below the 128 KiB from which the allocator maps memory apart (M_MMAP_THRESHOLD) or gives it back at
// once (M_TRIM_THRESHOLD).
constexpr std::size_t roomSize = 96 * 1024;

} // namespace

void NodeMemory::makeRoom()
{
    void *const room = std::malloc(roomSize);
    if (!room)
        return;
#ifdef MADV_POPULATE_WRITE
    // A kernel that doesn't know this (before 5.14) says so, and no more.
    const auto pageSize = std::uintptr_t(::sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(room) + pageSize - 1) / pageSize * pageSize;
    const auto end = (reinterpret_cast<std::uintptr_t>(room) + roomSize) / pageSize * pageSize;
    ::madvise(reinterpret_cast<void *>(begin), end - begin, MADV_POPULATE_WRITE);
#endif
    std::free(room);
}

#include "hostmemory.h"

#include <cstddef>

#include <sys/mman.h>
#include <unistd.h>

namespace {

// Not more than that: a host may ask for it back at once when a gigabyte is free.
constexpr std::size_t mostNeeded = 768 * 1024 * 1024; // bytes

} // namespace

void HostMemory::fetch()
{
    void *const memory = ::mmap(nullptr, mostNeeded, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return;
    // Whole blocks, as the samples ask for; the others come out of blocks, too.
    ::madvise(memory, mostNeeded, MADV_HUGEPAGE);
    const auto pageSize = std::size_t(::sysconf(_SC_PAGESIZE));
    auto *const bytes = static_cast<volatile char *>(memory);
    for (std::size_t at = 0; at < mostNeeded; at += pageSize)
        bytes[at] = 1;
    ::munmap(memory, mostNeeded);
}

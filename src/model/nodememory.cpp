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

std::uintptr_t roundedUp(std::uintptr_t address, std::size_t unit)
{
    return (address + unit - 1) / unit * unit;
}

std::size_t pageSize()
{
    static const auto size = std::size_t(::sysconf(_SC_PAGESIZE));
    return size;
}

void advise(std::uintptr_t begin, std::uintptr_t end, int advice)
{
    // A kernel that doesn't know the advice says so, and no more.
    if (begin < end)
        ::madvise(reinterpret_cast<void *>(begin), end - begin, advice);
}

#if defined(__GLIBC__) && defined(MADV_HUGEPAGE) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

/// The heap of one thread, in large pages. One of them costs a fraction of what the 512 cost that it takes the place
/// of, but the system makes one only where nothing of it has been written to, and where the heap has grown over all of
/// it. So the heap, which would grow by what is asked for, is made to grow by whole large pages, ahead of what is
/// needed. Where the allocator is another one, or does otherwise than expected, this does nothing.
class LargePages final
{
public:
    /// @p room has just been allocated, as large as rooms are, and freed again.
    void prepare(std::uintptr_t room)
    {
        const bool sameHeap = room / heapSize == m_heap;
        // Enough is left; or it was a hole, and the heap has not grown.
        if (m_heaps > mostHeaps || (sameHeap && room + ahead <= m_end))
            return;
        if (!sameHeap) {
            ++m_heaps;
            m_heap = room / heapSize;
            advise(roundedUp(room, pageSize()), roundedUp(room + 1, heapSize), MADV_HUGEPAGE);
        }
        m_end = roundedUp(room + ahead + growth, largePage);
        makeMapsRare();
        void *const volatile grown = std::malloc(m_end - room - bookkeeping);
        std::free(grown);
    }

private:
    static constexpr std::size_t largePage = 2 * 1024 * 1024; // of x86-64 and, with pages of 4 KiB, of AArch64
    static constexpr std::size_t growth = 2 * largePage;
    static constexpr std::size_t ahead = 3 * roomSize;
    static constexpr std::size_t largestBlock = growth + 2 * largePage; // more than prepare() asks for
    // Of every thread but the main one (HEAP_MAX_SIZE); begins at a multiple of it, and is reserved as a whole.
    static constexpr std::size_t heapSize = 64 * 1024 * 1024;
    // More than the allocator puts around a block and behind the last one.
    static constexpr std::size_t bookkeeping = 64;

    /// Once a block of this size has been freed, the allocator takes smaller ones from the heap, and leaves twice as
    /// much to it when it is free again: see M_MMAP_THRESHOLD in mallopt(3).
    static void makeMapsRare()
    {
        static const bool done = [] {
            void *const volatile block = std::malloc(largestBlock);
            std::free(block);
            return true;
        }();
        (void)done;
    }

    static constexpr int mostHeaps = 100; // after so many it must be another allocator

    int m_heaps = 0;           ///< met so far
    std::uintptr_t m_heap = 0; ///< address by size
    std::uintptr_t m_end = 0;
};

#else

class LargePages final
{
public:
    void prepare(std::uintptr_t) { }
};

#endif

} // namespace

void NodeMemory::makeRoom()
{
    void *const volatile room = std::malloc(roomSize);
    const auto place = reinterpret_cast<std::uintptr_t>(room);
    std::free(room);
    if (!place)
        return;
    thread_local LargePages pages;
    pages.prepare(place);
    // Of what is left to small pages; writing to fresh ones costs an interruption for each.
#ifdef MADV_POPULATE_WRITE
    advise(roundedUp(place, pageSize()), (place + roomSize) / pageSize() * pageSize(), MADV_POPULATE_WRITE);
#endif
}

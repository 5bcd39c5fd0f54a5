// Huge pages for the heap.
//
// Idea:    propagation jumps between thousands of watch sets and clauses, and on pages of 4 kB pays for most
//          jumps with a walk over page tables. The heap is made to grow by a large piece of address space at
//          once, before anything stands in it, and the system is asked to back the piece by huge pages as it
//          is touched.
// Keeps:   what the system will not do is left out; the program runs the same way on small pages.
// Cost:    address space. Memory is taken when it is touched, in steps of 2 MB instead of 4 kB.
// Source:  own.
// Differs: the allocator has a tunable for this, but a process can set it only for those that it starts.
#include "heap_pages.h"

#include <climits> // tells the C library
#ifdef __GLIBC__
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace vexor_tool {

#ifdef __GLIBC__

namespace {

constexpr int range_bytes = 256 << 20;
// Once the range is full, blocks from this size on live outside the heap, where the system moves them without
// a copy when they grow.
constexpr int large_block_bytes = 4 << 20;

} // namespace

void ask_for_huge_pages() {
    mallopt(M_MMAP_THRESHOLD, large_block_bytes);
    mallopt(M_TRIM_THRESHOLD, INT_MAX); // what is given back would come again without the advice
    mallopt(M_TOP_PAD, range_bytes);
    char* const begin = static_cast<char*>(sbrk(0));
    std::free(std::malloc(large_block_bytes / 2)); // the heap takes the whole range
    char* const end = static_cast<char*>(sbrk(0));
    mallopt(M_TOP_PAD, large_block_bytes);
    if (end <= begin) return;
    auto const page_bytes = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    std::uintptr_t const misplaced = reinterpret_cast<std::uintptr_t>(begin) % page_bytes;
    char* const first = begin + (misplaced == 0 ? 0 : page_bytes - misplaced);
    if (first < end) static_cast<void>(madvise(first, static_cast<std::size_t>(end - first), MADV_HUGEPAGE));
}

#else

void ask_for_huge_pages() {}

#endif

} // namespace vexor_tool

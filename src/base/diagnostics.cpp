#include "base/diagnostics.h"

#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace vexor {

namespace {

int the_verbosity_level = 0;

} // namespace

void set_verbosity_level(int level) { the_verbosity_level = level; }
int get_verbosity_level() { return the_verbosity_level; }

std::uint64_t get_memory_used() {
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr) return 0;
    unsigned long long pages = 0;
    if (std::fscanf(file, "%llu", &pages) != 1) pages = 0;
    std::fclose(file);
    return pages * static_cast<std::uint64_t>(getpagesize());
}

double get_cpu_time() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) / 1000000;
}

} // namespace vexor

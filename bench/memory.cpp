#include "memory.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <malloc.h>
#include <string>

namespace bench {

namespace {

double heapInUse()
{
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

double bytesOf(const char* file, const std::string& key)
{
    std::ifstream lines(file);
    for (std::string word; lines >> word;) {
        if (word == key) {
            double kilobytes = 0;
            lines >> kilobytes;
            return kilobytes * 1024;
        }
        lines.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return 0;
}

/// Sets the kernel's record of the highest resident size to the present one.
void forgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

} // namespace

MemoryUse memoryOf(const std::function<void()>& take, const std::function<void()>& giveBack)
{
    ::malloc_trim(0); // pages of earlier cases would hide what this one takes
    const double heapBefore = heapInUse();
    forgetPeak();
    const double residentBefore = bytesOf("/proc/self/smaps_rollup", "Rss:");
    take();
    const double kept = heapInUse() - heapBefore;
    const double peak = bytesOf("/proc/self/status", "VmHWM:") - residentBefore;
    giveBack();
    return { kept, std::max(kept, peak) }; // parts of pages that were resident before do not show
}

} // namespace bench

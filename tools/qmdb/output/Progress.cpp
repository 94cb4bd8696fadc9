#include "output/Progress.h"

#include "common/leftovers.h"

#include <cstdio>
#include <fmt/format.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr std::chrono::milliseconds firstShownAfter { 1000 };
constexpr std::chrono::milliseconds shownEvery { 100 };

} // namespace

Progress::Progress(std::size_t total, std::string_view what)
    : total_(total)
    , what_(what)
    , terminal_(::isatty(STDERR_FILENO) == 1)
    , next_(Clock::now() + firstShownAfter)
{
}

Progress::~Progress()
{
    if (shown_) {
        clearTerminalLine();
        noteTerminalLine(false);
    }
}

void Progress::step()
{
    ++done_;
    if (!terminal_ || Clock::now() < next_) {
        return;
    }
    noteTerminalLine(true);
    shown_ = true;
    clearTerminalLine();
    fmt::print(stderr, "{} of {} {}", done_, total_, what_);
    next_ = Clock::now() + shownEvery;
}

} // namespace tool

#pragma once

#include "check/lines.h"

#include <cstddef>
#include <functional>

namespace tool::check {

/// Does jobs 0 to `count` - 1 in as many threads as there are processors, each job once, and hands the
/// context what they have found. A job uses only the context that it is given. `step` is called when one is
/// done, by one thread at a time.
void doInThreads(Context& context, std::size_t count,
    const std::function<void(Context& own, std::size_t job)>& job, const std::function<void()>& step);

} // namespace tool::check

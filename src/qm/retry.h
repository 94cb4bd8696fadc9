#pragma once

#include <cerrno>

namespace qm {

/// Repeats a system call that a signal has interrupted. Not for ever, so that a file system that answers
/// nothing else cannot hang the host.
template <class Call>
auto retried(Call&& call) noexcept
{
    constexpr int mostTries = 1000;
    auto result = call();
    for (int tries = 1; result < 0 && errno == EINTR && tries < mostTries; ++tries) {
        result = call();
    }
    return result;
}

} // namespace qm

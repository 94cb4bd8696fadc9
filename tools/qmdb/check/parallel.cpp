#include "check/parallel.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace tool::check {

namespace {

constexpr std::size_t fewJobs = 16; ///< which one thread does before others are up
constexpr unsigned mostThreads = 8; ///< beyond which the file system is what is waited for

/// What one thread has found.
struct Share {
    Findings findings;
    std::size_t files = 0;
};

std::size_t threadsFor(std::size_t jobs)
{
    return jobs < fewJobs ? 1 : std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
}

} // namespace

void doInThreads(Context& context, std::size_t count,
    const std::function<void(Context& own, std::size_t job)>& job, const std::function<void()>& step)
{
    std::atomic<std::size_t> next = 0;
    std::mutex stepping;
    const auto work = [&] {
        Share share;
        Context own { context.root, share.findings };
        for (std::size_t i = next++; i < count; i = next++) {
            job(own, i);
            const std::lock_guard lock(stepping);
            step();
        }
        share.files = own.files;
        return share;
    };
    std::vector<std::future<Share>> others;
    for (std::size_t i = 1; i < threadsFor(count); ++i) {
        others.push_back(std::async(std::launch::async, work));
    }
    std::vector<Share> shares;
    shares.push_back(work());
    std::ranges::transform(
        others, std::back_inserter(shares), [](std::future<Share>& other) { return other.get(); });
    for (const Share& share : shares) {
        context.findings.add(share.findings);
        context.files += share.files;
    }
}

} // namespace tool::check

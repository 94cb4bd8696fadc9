// The critical section: one thread at a time, and what the system refuses.

#include "qm/CQMCriticalSection.h"
#include "qm/EQMException.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <semaphore.h>
#include <thread>
#include <utility>

namespace {

thread_local int refusal = 0; ///< the error that the next call on a semaphore fails with
std::atomic<int> held = 0;

/// In place of the system's: a semaphore of one place, which counts who holds it.
int answer(const std::function<void()>& act)
{
    if (refusal != 0) {
        errno = std::exchange(refusal, 0);
        return -1;
    }
    act();
    return 0;
}

} // namespace

extern "C" {

int sem_init(sem_t*, int, unsigned) noexcept
{
    return answer([] { held = 0; });
}

int sem_destroy(sem_t*) noexcept
{
    return 0;
}

int sem_wait(sem_t*)
{
    return answer([] {
        for (int free = 0; !held.compare_exchange_weak(free, 1); free = 0) {
            std::this_thread::yield();
        }
    });
}

int sem_post(sem_t*) noexcept
{
    return answer([] { held = 0; });
}

} // extern "C"

namespace {

using qm::CQMCriticalSection;
using qm::ErrorCode;

TEST(CriticalSection, letsOneThreadIn)
{
    constexpr int rounds = 20000;
    CQMCriticalSection section;
    int sum = 0; // not atomic
    const auto add = [&] {
        for (int i = 0; i < rounds; ++i) {
            refusal = i % 100 == 0 ? EINTR : 0; // a signal is no reason to give up
            section.Enter();
            ++sum;
            section.Leave();
        }
    };
    std::thread other(add);
    add();
    other.join();
    EXPECT_EQ(sum, 2 * rounds);
}

/// The code and the system's error number of the exception; 0 without one.
std::pair<unsigned long, int> thrown(int number, const std::function<void()>& act)
{
    refusal = number;
    try {
        act();
    } catch (const qm::EQMException& exception) {
        return { exception.code, exception.subcode };
    }
    return {};
}

TEST(CriticalSection, saysWhatTheSystemRefuses)
{
    CQMCriticalSection section;
    const auto make = [] { const CQMCriticalSection another; };
    const auto enter = [&] { section.Enter(); };
    const auto leave = [&] { section.Leave(); };
    const auto is
        = [](ErrorCode code, int number = 0) { return std::pair(static_cast<unsigned long>(code), number); };
    EXPECT_EQ(thrown(EPERM, make), is(ErrorCode::AccessDenied));
    EXPECT_EQ(thrown(EDEADLK, enter), is(ErrorCode::WouldDeadlock));
    for (const std::function<void()>& act : { std::function<void()>(make), { enter }, { leave } }) {
        EXPECT_EQ(thrown(ENOSYS, act), is(ErrorCode::NotSupported));
        EXPECT_EQ(thrown(EINVAL, act), is(ErrorCode::LockFailed, EINVAL));
    }
}

} // namespace

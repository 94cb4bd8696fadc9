#include "common/leftovers.h"

#include <array>
#include <climits>
#include <csignal>
#include <string_view>
#include <unistd.h>

namespace tool {

namespace {

/// A signal handler can neither allocate nor lock: the paths stand in fixed places.
struct Slot {
    volatile std::sig_atomic_t used = 0;
    std::array<char, PATH_MAX> path {};
};

constexpr int none = -1;
std::array<Slot, 4> slots;

volatile std::sig_atomic_t lineBegun = 0;

int freeSlot()
{
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (!slots[i].used) {
            return static_cast<int>(i);
        }
    }
    return none;
}

extern "C" void removeLeftovers(int signal)
{
    if (lineBegun) {
        clearTerminalLine();
    }
    for (auto slot = slots.rbegin(); slot != slots.rend(); ++slot) {
        if (slot->used && ::unlink(slot->path.data()) != 0) {
            ::rmdir(slot->path.data());
        }
    }
    ::raise(signal); // its default action, which the first delivery has restored, ends the command
}

constexpr int endingSignals[] = { SIGINT, SIGTERM, SIGHUP };

volatile std::sig_atomic_t received = 0;

extern "C" void noteSignal(int signal)
{
    received = signal;
}

} // namespace

Leftover::Leftover(const std::string& path)
    : slot_(path.size() < PATH_MAX ? freeSlot() : none)
{
    if (slot_ != none) {
        Slot& slot = slots[static_cast<std::size_t>(slot_)];
        path.copy(slot.path.data(), path.size());
        slot.path[path.size()] = '\0';
        slot.used = 1;
    }
}

Leftover::~Leftover()
{
    if (slot_ != none) {
        slots[static_cast<std::size_t>(slot_)].used = 0;
    }
}

BlockSignals::BlockSignals()
{
    sigset_t ending;
    ::sigemptyset(&ending);
    for (const int signal : endingSignals) {
        ::sigaddset(&ending, signal);
    }
    ::sigprocmask(SIG_BLOCK, &ending, &before_);
}

BlockSignals::~BlockSignals()
{
    ::sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void clearTerminalLine()
{
    constexpr std::string_view clear = "\r\033[K"; // to its first column, and nothing from there on
    static_cast<void>(::write(STDERR_FILENO, clear.data(), clear.size()) < 0); // a terminal that is gone
}

void noteTerminalLine(bool begun)
{
    lineBegun = begun ? 1 : 0;
}

PutOffSignals::PutOffSignals()
{
    for (const int signal : endingSignals) {
        struct sigaction before { };
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) {
            std::signal(signal, noteSignal);
        }
    }
}

PutOffSignals::~PutOffSignals()
{
    removeLeftoversWhenInterrupted();
    if (const int signal = received; signal != 0) {
        received = 0;
        ::raise(signal);
    }
}

void PutOffSignals::check()
{
    if (received != 0) {
        throw Interrupted(received);
    }
}

void removeLeftoversWhenInterrupted()
{
    for (const int signal : endingSignals) {
        struct sigaction before { };
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) { // as under nohup
            struct sigaction action { };
            action.sa_handler = removeLeftovers;
            action.sa_flags = static_cast<int>(SA_RESETHAND);
            ::sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace tool

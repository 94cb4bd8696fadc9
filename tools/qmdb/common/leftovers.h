#pragma once

#include <csignal>
#include <exception>
#include <string>

namespace tool {

/// A file or a directory that must not stay when the command is interrupted, for as long as this object
/// lives. Of several the last one goes first.
class Leftover {
public:
    explicit Leftover(const std::string& path);
    Leftover(const Leftover&) = delete;
    Leftover& operator=(const Leftover&) = delete;
    ~Leftover();

private:
    int slot_;
};

/// While it lives, Ctrl-C, SIGTERM and SIGHUP wait: for what is made and noted as left over in one step.
class BlockSignals {
public:
    BlockSignals();
    BlockSignals(const BlockSignals&) = delete;
    BlockSignals& operator=(const BlockSignals&) = delete;
    ~BlockSignals();

private:
    sigset_t before_;
};

/// Clears the line of the terminal that standard error has begun.
void clearTerminalLine();
/// Whether standard error has begun a line that must not stay either.
void noteTerminalLine(bool begun);

/// Thrown where a command that has put off signals can end.
class Interrupted : public std::exception {
public:
    explicit Interrupted(int signal)
        : signal_(signal)
    {
    }

    int signal() const noexcept { return signal_; }

private:
    int signal_;
};

/// While it lives, Ctrl-C, SIGTERM and SIGHUP wait until the command asks for them.
class PutOffSignals {
public:
    PutOffSignals();
    PutOffSignals(const PutOffSignals&) = delete;
    PutOffSignals& operator=(const PutOffSignals&) = delete;
    ~PutOffSignals();

    /// Throws Interrupted when one has come.
    static void check();
};

/// Lets Ctrl-C, SIGTERM and SIGHUP remove all leftovers before they end the command.
void removeLeftoversWhenInterrupted();

} // namespace tool

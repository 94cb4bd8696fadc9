#pragma once

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

/// Lets Ctrl-C, SIGTERM and SIGHUP remove all leftovers before they end the command.
void removeLeftoversWhenInterrupted();

} // namespace tool

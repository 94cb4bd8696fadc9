#pragma once

#include <fmt/format.h>
#include <stdexcept>
#include <utility>

namespace tool {

/// What the command tells the shell.
enum ExitStatus : int {
    ExitDone = 0,
    ExitFindings = 1, ///< done, but something was found to be wrong with the database
    ExitFailed = 2, ///< what was asked for could not be done
};

/// Ends the command with a message on standard error.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message)
        : std::runtime_error(message)
    {
    }

    template <class... Arguments>
    explicit Failure(fmt::format_string<Arguments...> format, Arguments&&... arguments) requires(
        sizeof...(Arguments) > 0)
        : std::runtime_error(fmt::format(format, std::forward<Arguments>(arguments)...))
    {
    }

    virtual ExitStatus status() const noexcept { return ExitFailed; }
};

/// There is no database where one should be.
class NoDatabase : public Failure {
public:
    using Failure::Failure;
    ExitStatus status() const noexcept override { return ExitFindings; }
};

/// Nothing is called as the user says.
class UnknownName : public Failure {
public:
    using Failure::Failure;
};

/// Something cannot be shown in the units that the user wants.
class WrongUnits : public Failure {
public:
    using Failure::Failure;
};

/// A value that cannot be read; the rest of the database can.
class UnreadableValue : public Failure {
public:
    using Failure::Failure;
};

/// The reader of standard output is gone; the command ends without a word.
class ClosedPipe : public std::exception { };

} // namespace tool

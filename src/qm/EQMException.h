#pragma once

#include <exception>

namespace qm {

/// Codes of EQMException; they appear in the log.
enum class ErrorCode : unsigned long {
    LockFailed = 0x80010000,
    WouldDeadlock = 0x80010002,
    InvalidArgument = 0x8001000A,
    NotSupported = 0x8001000D,
    FileOperationFailed = 0x80050000,
    NotConvertible = 0x80050002,
    NotFound = 0x80050003,
    AlreadyExists = 0x80050004,
    AccessDenied = 0x80050005,
};

/// What the utility layer throws. The database lets it pass to the exported functions.
class EQMException : public std::exception {
public:
    /// `subcode` is the system's error number where the code alone does not give the cause, else 0.
    explicit EQMException(ErrorCode code, int subcode = 0) noexcept
        : code(static_cast<unsigned long>(code))
        , subcode(subcode)
    {
    }

    /// The text lies in one buffer of the thread, shared by all objects; the next call overwrites it.
    const char* what() const noexcept override;

    unsigned long code;
    int subcode;
};

} // namespace qm

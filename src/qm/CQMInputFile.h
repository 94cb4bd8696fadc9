#pragma once

#include "qm/CQMFileSystem.h"

#include <cstddef>
#include <span>
#include <sys/types.h>

namespace qm {

/// A file open for reading.
class CQMInputFile {
public:
    /// Ask isOpen() for the outcome.
    explicit CQMInputFile(const NativePath& path);

    bool isOpen() const noexcept { return static_cast<bool>(file_); }

    /// Reads some bytes: their number, 0 at the end of the file, -1 when reading fails.
    ssize_t read(std::span<char> to) noexcept;

    /// The size of a regular file; 0 for anything else, which may have no end.
    std::size_t size() const noexcept;

private:
    FileHandle file_;
};

} // namespace qm

#pragma once

#include "qm/CNativePath.h"
#include "qm/handles.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace qm {

std::size_t countLineEnds(std::string_view bytes) noexcept;

/// What of a file is still to be read.
struct RestOfFile {
    std::size_t bytes = 0;
    std::size_t lineEnds = 0;
};

/// A file open for reading.
///
/// It is opened without waiting, so that a FIFO among the files cannot hang the host.
class CQMInputFile {
public:
    /// `path` is inner text; ask isOpen() for the outcome.
    explicit CQMInputFile(const std::string& path, PathBase base = {});

    bool isOpen() const noexcept { return static_cast<bool>(file_); }

    /// Reads up to `size` bytes: their number, 0 at the end of the file, -1 when reading fails.
    ssize_t read(char* to, std::size_t size) noexcept;

    /// Measures what is still to be read without moving on; nothing when that cannot be told, as of a
    /// device, which may have no end.
    RestOfFile measureRest() const;

private:
    FileHandle file_;
    off_t offset_ = 0;
};

} // namespace qm

#pragma once

#include "qm/CQMFileSystem.h"

#include <string>
#include <string_view>

namespace qm {

/// A file being written in place: made when missing, emptied when present.
class CQMOutputFile {
public:
    /// Ask isOpen() for the outcome.
    explicit CQMOutputFile(const NativePath& path);

    bool isOpen() const noexcept { return static_cast<bool>(file_); }

    /// Collects bytes and writes them in pieces.
    void append(std::string_view bytes);

    /// Writes what is left and flushes the file to the disk; false when anything went wrong.
    bool finish();

private:
    void writeOut();

    FileHandle file_;
    std::string pending_;
    bool good_ = true;
};

/// Writes a whole file so that it appears complete or not at all, flushed to the disk.
///
/// The bytes are written beside it, under its name with `temporaryEnding` behind, and moved into place
/// without replacing what may stand there; only where a link stands, it is what the link names that is
/// written. False when the file does not stand complete; a half-made one is removed. The caller flushes
/// the directory.
bool writeWholeFile(const NativePath& path, std::string_view bytes, std::string_view temporaryEnding);

/// Appends bytes to a file in one piece, making it when missing. Never waits; failures are ignored.
void appendToFile(const NativePath& path, std::string_view bytes);

} // namespace qm

#pragma once

#include "qm/CQMDirectory.h"
#include "qm/handles.h"

#include <string>
#include <string_view>

namespace qm {

/// A file being written in place: made when missing, emptied when present.
class CQMOutputFile {
public:
    /// `path` is inner text; ask isOpen() for the outcome.
    explicit CQMOutputFile(const std::string& path, PathBase base = {});

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

/// Writes a whole file in `directory` so that it appears at `path` complete or not at all, flushed to
/// the disk.
///
/// The bytes are written beside it and moved into place without replacing what may stand there; only
/// where a link stands, it is what the link names that is written. False when the file does not stand
/// complete; a half-made one is removed.
bool writeWholeFile(const std::string& path, std::string_view bytes, const CQMDirectory& directory);

/// Appends bytes to a file in one piece, making it when missing. Never waits; failures are ignored.
void appendToFile(const std::string& path, std::string_view bytes);

} // namespace qm

#pragma once

#include "qm/CQMFileSystem.h"

#include <string>
#include <string_view>

namespace qm {

/// A file being written in place.
///
/// Unless finish() has succeeded it does not stay: at the end of the object's life it is removed, or, where
/// a link leads to it, emptied.
class CQMOutputFile {
public:
    /// What stands at the path is emptied; with O_EXCL in `flags` the file must be a new one. Ask isOpen()
    /// for the outcome.
    explicit CQMOutputFile(NativePath path, int flags = O_TRUNC);
    CQMOutputFile(const CQMOutputFile&) = delete;
    CQMOutputFile& operator=(const CQMOutputFile&) = delete;
    ~CQMOutputFile();

    bool isOpen() const noexcept { return static_cast<bool>(file_); }

    /// Collects bytes and writes them in pieces, up to the first failure.
    void append(std::string_view bytes);

    /// Writes what is left and flushes the file to the disk, where a link leads to it with its entry; false
    /// when anything has gone wrong.
    bool finish();

    /// Takes finish() back.
    void discard() noexcept;

private:
    void writeOut();

    NativePath path_;
    FileHandle file_;
    std::string pending_;
    bool good_ = true;
    bool finished_ = false;
};

/// Writes a whole file so that it appears complete or not at all, flushed to the disk.
///
/// The bytes are written beside it, under its name with `temporaryEnding` behind, and moved into place
/// without replacing what may stand there; only where a link stands, it is what the link names that is
/// written. A file system that cannot move so gets the file written in place. False when the file does not
/// stand complete; a half-made one is removed. The caller flushes the directory.
bool writeWholeFile(const NativePath& path, std::string_view bytes, std::string_view temporaryEnding);

/// Appends bytes to a file in one piece, making it when missing. Never waits, and does not write through a
/// link; failures are ignored.
void appendToFile(const NativePath& path, std::string_view bytes);

} // namespace qm

#pragma once

#include "qm/CQMDirectory.h"

#include <array>
#include <dirent.h>
#include <string>
#include <string_view>

namespace qm {

/// What an entry of a directory is, as far as scans ask.
enum class EntryKind : char {
    Directory, ///< a directory, or a link to one; block devices and sockets count as directories too
    RegularFile,
    OtherFile, ///< a link to a file, a FIFO and the like
    Missing, ///< a link to nothing: listed among the files, but nothing stands there
};

struct DirectoryEntry {
    std::string_view name; ///< inner text; empty when the locale cannot convert it
    EntryKind kind = EntryKind::Missing;
};

/// Reads the entries of a directory in the system's order, without "." and "..".
class CQMDirectoryReader {
public:
    /// A directory that could not be opened has no entries. It can be read once.
    explicit CQMDirectoryReader(const CQMDirectory& directory);

    /// Delivers the next entry, valid until the next call; false at the end.
    bool next(DirectoryEntry& entry);

    /// Once next() has returned false: whether that was the end of the directory and not a failure.
    bool isComplete() const noexcept { return complete_; }

private:
    int directory_;
    bool ansiIsAscii_;
    bool complete_ = false;
    std::string converted_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    alignas(dirent64) std::array<char, 32768> buffer_;
};

/// The entries of one directory, all read at once.
class CQMDirectoryListing {
public:
    /// A directory that could not be opened has no entries. It can be listed once.
    explicit CQMDirectoryListing(const CQMDirectory& directory);

    /// Delivers the entry at `position`, 0 at first, and moves on; false at the end.
    bool next(std::size_t& position, DirectoryEntry& entry) const noexcept;

private:
    /// One entry after the other: its kind, the length of its name in two bytes, its name.
    std::string packed_;
};

/// Steps through the entries of a listing that are files, or that are directories, and match a mask.
class CQMDirectoryScanner {
public:
    /// The mask "*" matches every entry; any other is an extension, case-sensitive and without a point.
    CQMDirectoryScanner(const CQMDirectoryListing& listing, std::string_view mask, bool directories) noexcept
        : listing_(listing)
        , mask_(mask)
        , directories_(directories)
    {
    }

    /// Delivers the next matching entry; false when there is none left.
    bool GetNext(DirectoryEntry& entry) noexcept;

private:
    const CQMDirectoryListing& listing_;
    std::string_view mask_;
    bool directories_;
    std::size_t position_ = 0;
};

} // namespace qm

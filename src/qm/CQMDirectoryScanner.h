#pragma once

#include <array>
#include <cstddef>
#include <dirent.h>
#include <string_view>

namespace qm {

/// Reads the entries of an open directory in the system's order, without "." and "..".
class CQMDirectoryScanner {
public:
    /// `directory` must have been opened for this and can be read once.
    explicit CQMDirectoryScanner(int directory) noexcept
        : directory_(directory)
    {
    }

    /// Goes to the next entry; false at the end and after a failure.
    bool GetNext() noexcept;

    /// The entry's name in the locale's encoding, valid until GetNext().
    std::string_view name() const noexcept { return name_; }
    /// True for a directory and a link to one; block devices and sockets count as directories too.
    bool mayBeDirectory() const noexcept { return kind_ == Kind::Directory || kind_ == Kind::Unknown; }
    /// True for anything else, and, as the former, for what the system does not say.
    bool mayBeFile() const noexcept { return kind_ != Kind::Directory; }
    /// True for what certainly is a regular file and no link to one.
    bool isRegular() const noexcept { return isRegular_; }
    /// True for a link, whatever it leads to, and for what the file system does not tell apart from one.
    bool mayBeLink() const noexcept { return mayBeLink_; }
    /// True for a link to nothing.
    bool isMissing() const noexcept { return kind_ == Kind::Missing; }

    /// About as many entries as have been read ahead of the current one.
    std::size_t entriesAhead() const noexcept { return (end_ - at_) / usualSize; }

    /// Once GetNext() has returned false: 0 at the end, else the number of the error.
    int error() const noexcept { return error_; }

private:
    static constexpr std::size_t usualSize = 32; ///< bytes of an entry with a name of 5 to 12 letters

    enum class Kind { Directory, File, Missing, Unknown };

    Kind kindOf(const dirent64& entry) const noexcept;

    int directory_;
    int error_ = 0;
    std::string_view name_;
    Kind kind_ = Kind::Missing;
    bool isRegular_ = false;
    bool mayBeLink_ = false;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    alignas(dirent64) std::array<char, 32768> buffer_;
};

} // namespace qm

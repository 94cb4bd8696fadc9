#pragma once

#include "common/leftovers.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

/// Where the library writes its log: the directory that the user names, else a temporary one, so that
/// reading a database leaves its directory as it was.
class LogDirectory {
public:
    /// `named` is empty when the user names none.
    explicit LogDirectory(const std::string& named);
    LogDirectory(const LogDirectory&) = delete;
    LogDirectory& operator=(const LogDirectory&) = delete;
    ~LogDirectory();

    const std::string& path() const noexcept { return path_; }
    bool isTemporary() const noexcept { return temporary_; }

    /// The error lines that the library has written since the last call, without their prefix.
    std::vector<std::string> newErrors();

private:
    std::string path_; ///< in the locale's encoding
    bool temporary_;
    std::optional<Leftover> directoryLeft_;
    std::optional<Leftover> fileLeft_;
    std::size_t read_ = 0;
};

} // namespace tool

#pragma once

#include "database/entities.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tool::check {

/// What a data file says beside the value that the library reads from it.
struct ValueNotes {
    std::string comments; ///< its comment lines: what the numbers are, their units, their source
    std::vector<std::string> misreadings; ///< what the library reads otherwise than it stands there
};

/// The data files of a database by what they belong to, which the exported functions do not tell.
class ValueFiles {
public:
    /// Those of one substance, or of all.
    explicit ValueFiles(const std::string& directory, std::optional<long> substance = std::nullopt);
    ValueFiles(const ValueFiles&) = delete;
    ValueFiles& operator=(const ValueFiles&) = delete;
    ~ValueFiles();

    /// Empty for a value that has no file, or several by mistake.
    ValueNotes notes(long substance, const Owner& owner, long parameter) const;

private:
    class Heads;

    std::unique_ptr<const Heads> heads_;
};

} // namespace tool::check

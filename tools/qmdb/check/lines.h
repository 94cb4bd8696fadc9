#pragma once

#include "check/Findings.h"

#include <functional>

namespace tool::check {

/// The database's directory and what has been found in it.
struct Context {
    std::string root;
    Findings& findings;
    std::size_t files = 0; ///< read so far

    /// The path of a file or directory in the locale's encoding; empty when the locale cannot express it.
    std::string pathOf(std::string_view file) const;
};

/// One line of a file as the library cuts it, in bytes.
struct RawLine {
    std::string_view bytes; ///< up to the line's first NUL
    Place place;
    bool endsFile = false; ///< the file ends here without an LF
    bool isCut = false; ///< the line is too long: what stands here is its beginning
};

/// Reports a line that the file ends without a line end, which may be the only sign of a file that was cut.
void reportUnended(Context& context, const RawLine& line);

/// Hands every line of a file to `each`, and reports what keeps lines or parts of them from being read.
/// False when the file cannot be read at all, or is none that makes sense by lines.
bool readLines(Context& context, const std::string& file, const std::function<void(const RawLine&)>& each);

} // namespace tool::check

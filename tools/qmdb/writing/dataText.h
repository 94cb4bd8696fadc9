#pragma once

#include "database/flatTable.h"

#include <span>
#include <string>
#include <vector>

namespace tool::writing {

/// The bytes of a data file: comments, and the numbers in the shortest form that reads back as the same.
/// Throws Failure for a comment that does not fit into a line.
std::string dataText(const Table& table, std::span<const std::string> comments);

/// The bytes of a data file with other comments.
std::string withComments(std::string_view bytes, std::span<const std::string> comments);
/// The comments of a data file.
std::vector<std::string> commentsOf(std::string_view bytes);

/// A text as the comment of a data file: control characters become blanks, but for tabs.
std::string plainComment(std::string_view text);

} // namespace tool::writing

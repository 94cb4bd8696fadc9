#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Columns that a text takes in a terminal.
std::size_t displayWidth(std::string_view utf8);

/// The text padded with blanks to a number of columns.
std::string padRight(std::string_view utf8, std::size_t width);
std::string padLeft(std::string_view utf8, std::size_t width);

} // namespace tool

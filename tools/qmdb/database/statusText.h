#pragma once

#include <string>
#include <string_view>

namespace tool {

/// What a result code means, in words.
std::string_view statusText(int status);

/// An error line of the library's log with the operating system's reason in words, where there is one.
std::string detailText(const std::string& line);

/// The advice to look into a database's files.
std::string checkHint(const std::string& directory);

} // namespace tool

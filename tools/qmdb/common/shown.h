#pragma once

#include <string>
#include <string_view>

namespace tool {

/// A text of a file in quotes, fit for a message: shortened, and without control characters.
std::string shown(std::string_view text);

} // namespace tool

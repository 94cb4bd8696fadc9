#pragma once

#include <string_view>

namespace tool {

/// The page without data, in two halves with `dataPlace` between: styles, scripts and what holds them.
extern const std::string_view pageShell;

/// Where the data go in.
inline constexpr std::string_view dataPlace = "@data@";

} // namespace tool

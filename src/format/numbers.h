#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Numbers as descriptor and data files hold them: the C library's "%ld", "%lu" and "%lg" in the locale "C",
/// whatever the host's locale is, so that files mean the same everywhere.
namespace format {

/// "%ld": 0 when no number begins the text; what follows the number is ignored.
long wstr2long(std::string_view text);

/// "%lg" after the first "," is turned into "."; what follows the number is ignored.
std::optional<double> wstr2double(std::string_view text);

/// "%lu": a negative number is written as its two's complement.
std::string long2wstr(unsigned long value);

/// "%lg": six significant digits at most.
std::string double2wstr(double value);

} // namespace format

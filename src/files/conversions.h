#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Numbers and the inner text (qm/text.h) of descriptor and data files. Both directions follow the C
/// library's "%ld", "%lu" and "%lg" in the current numeric locale.
namespace conversions {

/// "%ld": 0 when no number begins the text; what follows the number is ignored.
long wstr2long(std::string_view text);

/// "%lg" after the first "," is turned into "."; what follows the number is ignored.
std::optional<double> wstr2double(std::string_view text);

std::string long2wstr(unsigned long value);

/// "%lg": six significant digits at most.
std::string double2wstr(double value);

/// Copies as many characters as fit, less one, and fills the rest with zeros.
void copyWStringToWtchar(std::string_view text, std::span<wchar_t> destination) noexcept;

/// Cuts a line at runs of blanks. A line that holds no blank at all yields no token.
std::vector<std::string> splitString(std::string_view text);

/// The text of a record's field, which ends at its first zero or at the array's end.
std::string fieldText(std::span<const wchar_t> field);

} // namespace conversions

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

/// True when plainNumber() may be used: the locale's point is ".", the rounding mode to nearest, and
/// ASCII bytes are ASCII characters.
bool plainNumbersAllowed();

/// Reads a number that begins with a digit, a minus and a digit, or a point, and ends before a blank,
/// CR or the text's end, exactly as "%lg" would, and takes it off the text. Leaves the text as it is
/// when there is no such number, which says nothing about what "%lg" would make of it.
bool takePlainNumber(std::string_view& text, double& value) noexcept;

} // namespace conversions

#pragma once

#include <span>
#include <string>
#include <string_view>

/// Texts in the fixed arrays of the public records.
namespace format {

/// Copies as many characters as fit, less one, and fills the rest with zeros.
void copyWStringToWtchar(std::string_view text, std::span<wchar_t> destination) noexcept;

/// The text of a record's field, which ends at its first zero or at the array's end.
std::string fieldText(std::span<const wchar_t> field);

} // namespace format

#pragma once

#include <string>
#include <string_view>

/// Marks a descriptor as UTF-8 when it begins with these bytes.
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// Decodes the bytes of a line up to their first NUL and drops one CR at the end.
///
/// UTF-8 when `utf8` is set, except for a line that is not UTF-8; else the locale's encoding, in which
/// a line that cannot be converted is empty. The result views `bytes` or `decoded`.
std::string_view decodeLine(std::string_view bytes, bool utf8, std::string& decoded);

/// All that is to be done to a line of plain ASCII without a NUL, which decodes to itself.
inline std::string_view withoutCr(std::string_view line) noexcept
{
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    return line;
}

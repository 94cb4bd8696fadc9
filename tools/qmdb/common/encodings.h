#pragma once

#include <string>
#include <string_view>

/// The command's own text is UTF-8; the library's is wide; files and arguments are named in the
/// locale's encoding.
namespace tool {

/// What has no UTF-8 form becomes U+FFFD.
std::string toUtf8(std::wstring_view wide);
/// Bytes that are no UTF-8 become U+FFFD each.
std::wstring toWide(std::string_view utf8);

/// Both throw Failure when the locale cannot convert the text.
std::string fromLocale(const char* text);
std::string toLocale(std::string_view utf8);

} // namespace tool

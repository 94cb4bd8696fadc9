#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The command's own text is UTF-8; the library's is wide; files and arguments are named in the
/// locale's encoding.
namespace tool {

/// What has no UTF-8 form becomes U+FFFD.
std::string toUtf8(std::wstring_view wide);
std::wstring toWide(std::string_view utf8);

/// Both throw Failure when the locale cannot convert the text.
std::string fromLocale(const char* text);
std::string toLocale(std::string_view utf8);

/// Columns that a text takes in a terminal.
std::size_t displayWidth(std::string_view utf8);

/// The text padded with blanks to a number of columns.
std::string padRight(std::string_view utf8, std::size_t width);
std::string padLeft(std::string_view utf8, std::size_t width);

std::string lowerCase(std::string_view utf8);

/// A number in the shortest form that reads back as the same number.
std::string numberText(double value);

} // namespace tool

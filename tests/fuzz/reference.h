#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The rules of the file format, word by word, as plainly and slowly as that goes: the library's fast parsers
/// are held against them.
namespace reference {

struct Line {
    std::string bytes;
    bool isTooLong = false; ///< cut; nothing follows
    bool isLast = false; ///< ended by the file, not by an LF

    bool operator==(const Line&) const = default;
};

std::vector<Line> cut(std::string_view file);

/// None for bytes that are not UTF-8.
std::optional<std::wstring> fromUtf8(std::string_view bytes);
/// None when a value has no UTF-8 form.
std::optional<std::string> toUtf8(std::wstring_view text);
/// Empty when the locale cannot convert it.
std::wstring fromLocale(std::string_view bytes);
std::string toLocale(const std::wstring& text);

/// The text of a line: up to the first NUL, decoded, without one CR at the end.
std::wstring decode(std::string_view line, bool utf8);

struct Number {
    double value;
    std::size_t end; ///< how many characters the scan took
};

/// "%lg", after the first comma is turned into a point.
std::optional<Number> number(std::wstring text);
/// "%ld"; 0 when there is none.
long whole(const std::wstring& text);
/// "%lg".
std::string written(double value);

/// Cuts a row at its blanks.
std::vector<std::wstring> split(const std::wstring& row);

/// The same bits.
bool same(double a, double b);

} // namespace reference

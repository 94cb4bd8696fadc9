#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The library's inner text.
///
/// Inside the library all text is UTF-8, extended by the same bit pattern to every 32-bit value, so
/// that any wide text of a host or a file survives the way in and out. It takes a quarter of the
/// memory of wide text, and plain ASCII needs no conversion at all.
namespace format::text {

/// True for ASCII without a NUL: such a text is the same in inner text, UTF-8 and nearly every locale.
bool isPlain(std::string_view text) noexcept;

void append(std::string& text, char32_t codePoint);

/// Takes the first code point off a text that is not empty.
char32_t popFirst(std::string_view& text) noexcept;

std::string fromWide(std::wstring_view wide);
std::wstring toWide(std::string_view text);

/// None for bytes that are not UTF-8; overlong forms and surrogates pass.
std::optional<std::string> fromUtf8(std::string_view bytes);
/// None when a value has no UTF-8 form (0x110000 and above).
std::optional<std::string> toUtf8(std::string text);

/// Empty when the text is empty or the locale cannot convert it. The text ends at its first NUL.
std::string fromLocale(std::string_view bytes);
std::string toLocale(std::string text);

} // namespace format::text

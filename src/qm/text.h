#pragma once

#include <string>
#include <string_view>

/// The library's inner text.
///
/// Inside the library all text is UTF-8, extended by the same bit pattern to every 32-bit value, so
/// that any wide text of a host or a file survives the way in and out. It takes a quarter of the
/// memory of wide text, and plain ASCII needs no conversion at all.
namespace qm::text {

/// True for ASCII without a NUL: such a text is the same in inner text, UTF-8 and nearly every locale.
bool isPlain(std::string_view text) noexcept;

void append(std::string& text, char32_t codePoint);
std::string fromWide(std::wstring_view wide);
std::wstring toWide(std::string_view text);

/// Takes the first code point off a text that is not empty.
char32_t takeFirst(std::string_view& text) noexcept;

} // namespace qm::text

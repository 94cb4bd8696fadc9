#pragma once

#include <string>
#include <string_view>

namespace tool {

bool isBlank(wchar_t character);
/// True when all of a text is printable ASCII, as nearly all texts are.
bool isPlain(std::string_view text);
/// Those of ASCII and those of Latin-1 behind it.
bool isControl(wchar_t character);

/// The text in UTF-8 with "?" for each control character.
std::string printable(std::string_view text);
/// A text of a file in quotes, fit for a message: shortened and printable.
std::string shown(std::string_view text);

} // namespace tool

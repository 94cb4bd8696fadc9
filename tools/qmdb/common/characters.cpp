#include "common/characters.h"

#include "common/encodings.h"

#include <algorithm>
#include <cwctype>

namespace tool {

bool isBlank(wchar_t character)
{
    return std::iswspace(static_cast<std::wint_t>(character)) != 0;
}

bool isPlain(std::string_view text)
{
    return std::ranges::all_of(text, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

bool isControl(wchar_t character)
{
    constexpr wchar_t firstBeyondAscii = 0x7F;
    constexpr wchar_t lastBeyondAscii = 0x9F;
    return (character >= 0 && character < L' ')
        || (character >= firstBeyondAscii && character <= lastBeyondAscii);
}

std::string printable(std::string_view text)
{
    if (isPlain(text)) {
        return std::string(text);
    }
    std::wstring wide = toWide(text);
    std::ranges::replace_if(wide, isControl, L'?');
    return toUtf8(wide);
}

std::string shown(std::string_view text)
{
    constexpr std::size_t mostCharacters = 60;
    const std::wstring wide = toWide(text);
    const bool whole = wide.size() <= mostCharacters;
    return '"' + printable(toUtf8(wide.substr(0, mostCharacters))) + (whole ? "\"" : "...\"");
}

} // namespace tool

#include "common/shown.h"

#include "common/encodings.h"

#include <algorithm>

namespace tool {

std::string shown(std::string_view text)
{
    constexpr std::size_t mostCharacters = 60;
    std::wstring wide = toWide(text);
    std::ranges::replace_if(
        wide, [](wchar_t character) { return character >= 0 && character < L' '; }, L'?');
    const bool whole = wide.size() <= mostCharacters;
    return '"' + toUtf8(wide.substr(0, mostCharacters)) + (whole ? "\"" : "...\"");
}

} // namespace tool

#include "output/columns.h"

#include "common/characters.h"
#include "common/encodings.h"

#include <algorithm>
#include <cwchar>

namespace tool {

namespace {

std::string blanks(std::string_view utf8, std::size_t width)
{
    const std::size_t taken = displayWidth(utf8);
    return std::string(width > taken ? width - taken : 0, ' ');
}

} // namespace

std::size_t displayWidth(std::string_view utf8)
{
    if (isPlain(utf8)) {
        return utf8.size();
    }
    std::size_t width = 0;
    for (const wchar_t character : toWide(utf8)) {
        width += static_cast<std::size_t>(std::max(0, wcwidth(character)));
    }
    return width;
}

std::string padRight(std::string_view utf8, std::size_t width)
{
    return std::string(utf8) + blanks(utf8, width);
}

std::string padLeft(std::string_view utf8, std::size_t width)
{
    return blanks(utf8, width) + std::string(utf8);
}

} // namespace tool

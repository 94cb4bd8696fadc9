#include "format/recordText.h"

#include "format/innerText.h"

#include <algorithm>

namespace format {

void copyWStringToWtchar(std::string_view text, std::span<wchar_t> destination) noexcept
{
    auto at = destination.begin();
    const auto last = destination.end() - 1;
    if (text::isPlain(text)) {
        const std::size_t length = std::min(text.size(), destination.size() - 1);
        at = std::copy_n(text.begin(), length, at);
    } else {
        while (at != last && !text.empty()) {
            *at++ = static_cast<wchar_t>(text::popFirst(text));
        }
    }
    std::fill(at, destination.end(), L'\0');
}

std::string fieldText(std::span<const wchar_t> field)
{
    const auto end = std::find(field.begin(), field.end(), L'\0');
    return text::fromWide({ field.data(), static_cast<std::size_t>(end - field.begin()) });
}

} // namespace format

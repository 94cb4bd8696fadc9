// Inner text keeps every text, and is converted to and from UTF-8 and the locale as their rules say.

#include "format/innerText.h"
#include "format/recordText.h"
#include "fuzz.h"
#include "reference.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using fuzz::require;
namespace text = format::text;

std::wstring anyWide(std::span<const std::uint8_t> bytes)
{
    std::wstring wide(bytes.size() / sizeof(wchar_t), L'\0');
    if (!wide.empty()) {
        std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(wchar_t));
    }
    return wide;
}

void decode(const std::string& bytes)
{
    const bool isPlain = std::ranges::all_of(bytes, [](unsigned char c) { return c > 0 && c < 0x80; });
    require(text::isPlain(bytes) == isPlain, "plain text is ASCII without a NUL");
    const std::optional<std::wstring> expected = reference::fromUtf8(bytes);
    const std::optional<std::string> decoded = text::fromUtf8(bytes);
    require(decoded.has_value() == expected.has_value(), "bytes are UTF-8 where they are");
    require(!decoded || text::toWide(*decoded) == *expected, "UTF-8 is decoded");
    require(
        text::toWide(text::fromLocale(bytes)) == reference::fromLocale(bytes), "a locale's text is decoded");
}

void encode(const std::wstring& wide)
{
    const std::string inner = text::fromWide(wide);
    require(text::toWide(inner) == wide, "inner text keeps wide text");
    require(text::toUtf8(inner) == reference::toUtf8(wide), "inner text becomes UTF-8");
    require(text::toLocale(inner) == reference::toLocale(wide), "inner text becomes the locale's");
}

void copy(const std::wstring& wide, std::size_t size)
{
    std::vector<wchar_t> field(size, L'x');
    format::copyWStringToWtchar(text::fromWide(wide), field);
    std::wstring expected = wide.substr(0, size - 1);
    expected.resize(size);
    require(std::ranges::equal(field, expected), "a field holds what fits, and zeros");
    require(text::toWide(format::fieldText(field)) == expected.substr(0, expected.find(L'\0')),
        "a field's text ends at its first zero");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const std::size_t choice = input.byte();
    fuzz::setLocale(choice % 2 != 0);
    decode(input.rest());
    const std::wstring wide = anyWide(input.left());
    encode(wide);
    copy(wide, choice / 2 + 1);
    return 0;
}

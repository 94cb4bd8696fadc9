#include "input/recordTexts.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <algorithm>
#include <cwctype>

namespace tool {

namespace {

bool isBlank(wchar_t character)
{
    return std::iswspace(static_cast<std::wint_t>(character)) != 0;
}

bool isControl(wchar_t character)
{
    constexpr wchar_t firstBeyondAscii = 0x7F; // with those of Latin-1 behind it
    constexpr wchar_t lastBeyondAscii = 0x9F;
    return character < L' ' || (character >= firstBeyondAscii && character <= lastBeyondAscii);
}

} // namespace

void setText(std::span<wchar_t> field, const std::string& text, std::string_view what)
{
    const std::wstring wide = toWide(text);
    if (wide.size() >= field.size()) {
        throw Failure("{} has {} characters; {} fit", what, wide.size(), field.size() - 1);
    }
    if (std::ranges::any_of(wide, isControl)) {
        throw Failure("{} holds a control character", what);
    }
    if (!wide.empty() && (isBlank(wide.front()) || isBlank(wide.back()))) {
        throw Failure("{} begins or ends with a blank, which would be part of it", what);
    }
    std::ranges::copy(wide, field.begin());
}

void setName(std::span<wchar_t> field, const std::string& text, std::string_view what)
{
    if (text.empty()) {
        throw Failure("{} is empty", what);
    }
    setText(field, text, what);
}

} // namespace tool

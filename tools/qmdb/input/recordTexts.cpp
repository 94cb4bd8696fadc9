#include "input/recordTexts.h"

#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"

#include <algorithm>

namespace tool {

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

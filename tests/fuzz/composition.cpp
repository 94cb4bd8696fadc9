// Compositions are read as their rules say, and what is written reads back.

#include "format/composition.h"
#include "format/innerText.h"
#include "fuzz.h"
#include "reference.h"

#include <algorithm>

namespace {

using format::CompositionResult;
using fuzz::require;

constexpr std::size_t mostOfNumber = 1023;

CompositionResult parse(const std::wstring& text, std::vector<COMPONENT>& components)
{
    if (text.find_first_of(L";:") == std::wstring::npos) {
        return CompositionResult::Read;
    }
    components.resize(static_cast<std::size_t>(std::ranges::count(text, L';')) + 1);
    std::size_t current = 0;
    std::wstring buffer;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isLast = i + 1 == text.size();
        if (text[i] == L':') {
            if (buffer.empty()) {
                return CompositionResult::BadFormat;
            }
            components[current].matterId = reference::whole(buffer);
            buffer.clear();
            continue;
        }
        if ((text[i] == L';' || isLast) && buffer.empty()) {
            return CompositionResult::BadFormat;
        }
        if (text[i] != L';' || isLast) {
            buffer += text[i];
        }
        if (buffer.size() > mostOfNumber) {
            return CompositionResult::BadFormat;
        }
        if (text[i] == L';' || isLast) {
            const std::optional<reference::Number> fraction = reference::number(buffer);
            if (!fraction) {
                return CompositionResult::BadFraction;
            }
            components[current++].molarFraction = fraction->value;
            buffer.clear();
        }
    }
    return CompositionResult::Read;
}

bool isSame(const COMPONENT& a, const COMPONENT& b)
{
    return a.matterId == b.matterId && reference::same(a.molarFraction, b.molarFraction);
}

/// What writing leaves of a component: six digits, and no negative ID, which is written as its complement.
COMPONENT rounded(const COMPONENT& component)
{
    const std::string text = reference::written(component.molarFraction);
    return { component.matterId, reference::number({ text.begin(), text.end() })->value };
}

void writeAndRead(std::vector<COMPONENT> components)
{
    std::erase_if(components, [](const COMPONENT& component) { return component.matterId < 0; });
    std::ranges::transform(components, components.begin(), rounded);
    const std::string text = format::compositionText(components);
    std::vector<COMPONENT> back;
    const CompositionResult result = format::parseComposition(text, back);
    if (text.size() > 1 && text[text.size() - 2] == ':') {
        require(result == CompositionResult::BadFormat, "a last fraction of one digit is refused");
        return;
    }
    require(result == CompositionResult::Read, "what was written can be read");
    require(std::ranges::equal(components, back, isSame), "what was written reads back");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring wide = fuzz::wideOf(fuzz::inflate(fuzz::Input(data, size).rest(), fuzz::mostOfText));
    std::vector<COMPONENT> expected;
    std::vector<COMPONENT> components(3); // of a call before
    const CompositionResult result = parse(wide, expected);
    require(format::parseComposition(format::text::fromWide(wide), components) == result,
        "a composition is accepted or refused as the rules say");
    if (result == CompositionResult::Read) {
        require(std::ranges::equal(components, expected, isSame), "components are read as the rules say");
        writeAndRead(components);
    }
    return 0;
}

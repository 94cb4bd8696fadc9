#include "text.h"

#include "failure.h"

#include <cstdlib>
#include <cwchar>
#include <cwctype>

namespace tool {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isEncodable(char32_t codePoint)
{
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return codePoint <= 0x10FFFF && !surrogate;
}

void appendContinuation(std::string& text, char32_t codePoint, int shift)
{
    for (; shift >= 0; shift -= 6) {
        text += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    }
}

void append(std::string& text, char32_t codePoint)
{
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0 | (codePoint >> 6));
        appendContinuation(text, codePoint, 0);
    } else if (codePoint < 0x10000) {
        text += static_cast<char>(0xE0 | (codePoint >> 12));
        appendContinuation(text, codePoint, 6);
    } else {
        text += static_cast<char>(0xF0 | (codePoint >> 18));
        appendContinuation(text, codePoint, 12);
    }
}

std::size_t continuationBytes(unsigned char lead)
{
    return lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
}

} // namespace

std::string toUtf8(std::wstring_view wide)
{
    std::string text;
    for (const wchar_t character : wide) {
        const auto codePoint = static_cast<char32_t>(character);
        append(text, isEncodable(codePoint) ? codePoint : replacement);
    }
    return text;
}

std::wstring toWide(std::string_view utf8)
{
    std::wstring wide;
    while (!utf8.empty()) {
        const auto lead = static_cast<unsigned char>(utf8.front());
        const std::size_t more = std::min(continuationBytes(lead), utf8.size() - 1);
        char32_t codePoint = more == 0 ? lead : lead & (0x3Fu >> more);
        for (std::size_t i = 1; i <= more; ++i) {
            codePoint = (codePoint << 6) | (static_cast<unsigned char>(utf8[i]) & 0x3F);
        }
        wide += static_cast<wchar_t>(codePoint);
        utf8.remove_prefix(1 + more);
    }
    return wide;
}

std::string fromLocale(const char* text)
{
    const std::size_t length = std::mbstowcs(nullptr, text, 0);
    if (length == static_cast<std::size_t>(-1)) {
        throw Failure("an argument is not text in the locale's encoding");
    }
    std::wstring wide(length, L'\0');
    std::mbstowcs(wide.data(), text, length);
    return toUtf8(wide);
}

std::string toLocale(std::string_view utf8)
{
    const std::wstring wide = toWide(utf8);
    const std::size_t length = std::wcstombs(nullptr, wide.c_str(), 0);
    if (length == static_cast<std::size_t>(-1)) {
        throw Failure("the locale's encoding cannot express \"{}\"", utf8);
    }
    std::string text(length, '\0');
    std::wcstombs(text.data(), wide.c_str(), length);
    return text;
}

std::size_t displayWidth(std::string_view utf8)
{
    std::size_t width = 0;
    for (const wchar_t character : toWide(utf8)) {
        width += static_cast<std::size_t>(std::max(0, wcwidth(character)));
    }
    return width;
}

std::string padRight(std::string_view utf8, std::size_t width)
{
    const std::size_t taken = displayWidth(utf8);
    return std::string(utf8) + std::string(width > taken ? width - taken : 0, ' ');
}

std::string padLeft(std::string_view utf8, std::size_t width)
{
    const std::size_t taken = displayWidth(utf8);
    return std::string(width > taken ? width - taken : 0, ' ') + std::string(utf8);
}

std::string lowerCase(std::string_view utf8)
{
    std::wstring wide = toWide(utf8);
    for (wchar_t& character : wide) {
        character = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(character)));
    }
    return toUtf8(wide);
}

std::string numberText(double value)
{
    return fmt::format("{}", value);
}

} // namespace tool

#include "common/encodings.h"

#include "common/failure.h"

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwchar>

namespace tool {

namespace {

constexpr auto failed = static_cast<std::size_t>(-1);
constexpr auto incomplete = static_cast<std::size_t>(-2);

template <class Character>
bool isAscii(Character character)
{
    return character >= 0 && character <= 0x7F;
}

/// Lets the conversions of the C library work on UTF-8, whatever the user's locale is.
class Utf8Locale {
public:
    Utf8Locale()
        : before_(::uselocale(utf8()))
    {
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    ~Utf8Locale() { ::uselocale(before_); }

private:
    static locale_t utf8()
    {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        if (!locale) {
            throw Failure("the locale C.UTF-8 is missing; on Debian it belongs to the package libc-bin");
        }
        return locale;
    }

    locale_t before_;
};

} // namespace

std::string toUtf8(std::wstring_view wide)
{
    if (std::ranges::all_of(wide, isAscii<wchar_t>)) { // nearly all texts
        std::string text(wide.size(), '\0');
        std::ranges::transform(
            wide, text.begin(), [](wchar_t character) { return static_cast<char>(character); });
        return text;
    }
    const Utf8Locale locale;
    std::string text;
    for (const wchar_t character : wide) {
        char bytes[MB_LEN_MAX];
        std::mbstate_t state {};
        const std::size_t length = std::wcrtomb(bytes, character, &state);
        text += length == failed ? "\uFFFD" : std::string_view(bytes, length);
    }
    return text;
}

std::wstring toWide(std::string_view utf8)
{
    if (std::ranges::all_of(utf8, isAscii<char>)) {
        return { utf8.begin(), utf8.end() };
    }
    const Utf8Locale locale;
    std::wstring wide;
    while (!utf8.empty()) {
        wchar_t character = 0;
        std::mbstate_t state {};
        const std::size_t length = std::mbrtowc(&character, utf8.data(), utf8.size(), &state);
        const bool converted = length != failed && length != incomplete;
        wide += converted ? character : L'\uFFFD';
        utf8.remove_prefix(converted && length > 0 ? length : 1); // a NUL has the length 0
    }
    return wide;
}

std::string fromLocale(const char* text)
{
    const std::size_t length = std::mbstowcs(nullptr, text, 0);
    if (length == failed) {
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
    if (length == failed) {
        throw Failure("the locale's encoding cannot express \"{}\"", utf8);
    }
    std::string text(length, '\0');
    std::wcstombs(text.data(), wide.c_str(), length);
    return text;
}

} // namespace tool

#include "format/numbers.h"

#include "format/innerText.h"
#include "format/plainNumbers.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cwchar>
#include <locale.h>
#include <new>

namespace format {

namespace {

constexpr std::size_t numberBufferSize = 100;
constexpr int defaultPrecision = 6; // of "%lg"

bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// The calling thread's locale is "C" while the object lives.
class CPlainLocale {
public:
    CPlainLocale()
        : before_(::uselocale(plain()))
    {
    }
    CPlainLocale(const CPlainLocale&) = delete;
    CPlainLocale& operator=(const CPlainLocale&) = delete;
    ~CPlainLocale() { ::uselocale(before_); }

private:
    static locale_t plain()
    {
        // The C library keeps this one ready: nothing is allocated, and there is nothing to free.
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", locale_t {});
        return locale;
    }

    locale_t before_;
};

/// Scans one number. Throws std::bad_alloc when the scan needs memory, for very many digits, and has none.
template <class Number>
bool scan(std::string_view text, const wchar_t* pattern, Number& number)
{
    const std::wstring wide = text::toWide(text);
    const CPlainLocale plain;
    errno = 0;
    const int result = std::swscanf(wide.c_str(), pattern, &number);
    if (result != 1 && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return result == 1;
}

} // namespace

long wstr2long(std::string_view text)
{
    // Digits alone, few enough not to overflow, need no scan.
    constexpr std::size_t safeDigits = 18;
    const bool negative = text.starts_with('-');
    const std::string_view digits = text.substr(negative ? 1 : 0);
    long value = 0;
    std::size_t count = 0;
    for (; count < digits.size() && count < safeDigits && isDigit(digits[count]); ++count) {
        value = value * 10 + (digits[count] - '0');
    }
    if (count > 0 && count == digits.size()) {
        return negative ? -value : value;
    }
    value = 0;
    return scan(text, L"%ld", value) ? value : 0;
}

std::optional<double> wstr2double(std::string_view text)
{
    std::string copy(text);
    if (const std::size_t comma = copy.find(','); comma != std::string::npos) {
        copy[comma] = '.';
    }
    double value = 0;
    const char* const end = copy.data() + copy.size();
    if (plainNumbersAllowed() && parsePlainNumber(copy.data(), end, value) == end) {
        return value;
    }
    // swscanf, not wcstod: the two disagree on texts such as "1e" or "infi".
    return scan(copy, L"%lg", value) ? std::optional(value) : std::nullopt;
}

std::string long2wstr(unsigned long value)
{
    return std::to_string(value);
}

std::string double2wstr(double value)
{
    if (std::isfinite(value) && plainNumbersAllowed()) {
        char buffer[numberBufferSize];
        const auto result = std::to_chars(
            buffer, buffer + numberBufferSize, value, std::chars_format::general, defaultPrecision);
        return { buffer, result.ptr };
    }
    const CPlainLocale plain;
    char buffer[numberBufferSize];
    const int length = std::snprintf(buffer, numberBufferSize, "%lg", value);
    return { buffer, static_cast<std::size_t>(std::max(length, 0)) };
}

} // namespace format

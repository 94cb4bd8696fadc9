#include "format/numbers.h"

#include "format/innerText.h"
#include "format/plainNumbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cwchar>

namespace format {

namespace {

constexpr std::size_t numberBufferSize = 100;
constexpr int defaultPrecision = 6; // of "%lg"

bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

} // namespace

long wstr2long(std::string_view text)
{
    // Digits alone, few enough not to overflow, mean the same to every locale's "%ld".
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
    return std::swscanf(text::toWide(text).c_str(), L"%ld", &value) == 1 ? value : 0;
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
    if (std::swscanf(text::toWide(copy).c_str(), L"%lg", &value) == 1) {
        return value;
    }
    return std::nullopt;
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
    wchar_t buffer[numberBufferSize]; // the locale's point may be any character
    const int length = std::swprintf(buffer, numberBufferSize, L"%lg", value);
    return text::fromWide({ buffer, static_cast<std::size_t>(std::max(length, 0)) });
}

} // namespace format

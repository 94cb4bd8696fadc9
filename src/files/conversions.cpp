#include "files/conversions.h"

#include "files/plainNumbers.h"
#include "qm/CQMTranscoder.h"
#include "qm/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cwchar>

namespace conversions {

namespace {

constexpr std::size_t numberBufferSize = 100;

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
    return std::swscanf(qm::text::toWide(text).c_str(), L"%ld", &value) == 1 ? value : 0;
}

std::optional<double> wstr2double(std::string_view text)
{
    std::string copy(text);
    if (const std::size_t comma = copy.find(','); comma != std::string::npos) {
        copy[comma] = '.';
    }
    double value = 0;
    const char* const end = copy.data() + copy.size();
    if (plainNumbersAllowed() && takePlainNumber(copy.data(), end, value) == end) {
        return value;
    }
    // swscanf, not wcstod: the two disagree on texts such as "1e" or "infi".
    if (std::swscanf(qm::text::toWide(copy).c_str(), L"%lg", &value) == 1) {
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
        constexpr int defaultPrecision = 6;
        char buffer[numberBufferSize];
        const auto result = std::to_chars(
            buffer, buffer + numberBufferSize, value, std::chars_format::general, defaultPrecision);
        return { buffer, result.ptr };
    }
    wchar_t buffer[numberBufferSize]; // the locale's point may be any character
    const int length = std::swprintf(buffer, numberBufferSize, L"%lg", value);
    return qm::text::fromWide({ buffer, static_cast<std::size_t>(std::max(length, 0)) });
}

void copyWStringToWtchar(std::string_view text, std::span<wchar_t> destination) noexcept
{
    auto at = destination.begin();
    const auto last = destination.end() - 1;
    while (at != last && !text.empty()) {
        *at++ = static_cast<wchar_t>(qm::text::takeFirst(text));
    }
    std::fill(at, destination.end(), L'\0');
}

std::vector<std::string> splitString(std::string_view text)
{
    constexpr char blank = ' ';
    if (text.empty()) {
        return {};
    }
    const std::size_t last = text.size() - 1;
    // The leading run is skipped, but never its last character when nothing follows it.
    std::size_t start = last == 0 ? 0 : std::min(text.find_first_not_of(blank), last);
    std::size_t found = text.find(blank, start);
    if (found == std::string_view::npos) {
        return {};
    }
    std::vector<std::string> tokens;
    while (start <= last) {
        tokens.emplace_back(text.substr(start, found - start));
        const std::size_t next
            = found == std::string_view::npos ? found : text.find_first_not_of(blank, found);
        if (next == std::string_view::npos) {
            break;
        }
        start = next;
        found = text.find(blank, start);
    }
    return tokens;
}

std::string fieldText(std::span<const wchar_t> field)
{
    const auto end = std::find(field.begin(), field.end(), L'\0');
    return qm::text::fromWide({ field.data(), static_cast<std::size_t>(end - field.begin()) });
}

} // namespace conversions

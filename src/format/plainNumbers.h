#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

/// Reading plain decimal numbers exactly as "%lg" does, many times faster. Inline, because the rows of
/// big tables are made of nothing else.
namespace format {

/// True when the C library would read plain numbers as parsePlainNumber() does: the rounding mode is to
/// nearest.
bool plainNumbersAllowed() noexcept;

namespace detail {

constexpr std::array powersOfTen = { 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13,
    1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22 }; // all exact
constexpr std::uint64_t maxExactMantissa = std::uint64_t { 1 } << 53;
constexpr std::ptrdiff_t maxMantissaDigits = 18; // as many always fit 64 bits
constexpr std::ptrdiff_t maxExponentDigits = 4;

/// The value of a digit; 10 or more for any other character.
inline unsigned digit(char c) noexcept
{
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

inline bool isTokenEnd(const char* at, const char* end) noexcept
{
    return at == end || *at == ' ' || *at == '\r';
}

/// Reads "e", a sign and digits; null when no digits follow.
inline const char* parseExponent(const char* at, const char* end, long& exponent) noexcept
{
    ++at;
    const bool negative = at != end && *at == '-';
    at += at != end && (*at == '-' || *at == '+') ? 1 : 0;
    const char* const digits = at;
    long value = 0;
    for (; at != end && digit(*at) < 10 && at - digits < maxExponentDigits; ++at) {
        value = value * 10 + static_cast<long>(digit(*at));
    }
    exponent += negative ? -value : value;
    return at == digits ? nullptr : at;
}

} // namespace detail

/// Reads a number that begins with a digit, a minus and a digit, or a point, and ends before a blank, a
/// CR or `end`. Returns where it ends, or null when there is none, which says nothing about what "%lg"
/// would make of the text.
inline const char* parsePlainNumber(const char* const begin, const char* const end, double& value) noexcept
{
    using namespace detail;
    const char* at = begin;
    const bool negative = at != end && *at == '-';
    at += negative ? 1 : 0;
    const char* const first = at;
    std::uint64_t mantissa = 0; // overflows harmlessly where there are more digits than it is used for
    for (; at != end && digit(*at) < 10; ++at) {
        mantissa = mantissa * 10 + digit(*at);
    }
    std::ptrdiff_t digits = at - first;
    if (negative && digits == 0) {
        return nullptr;
    }
    long exponent = 0;
    if (at != end && *at == '.') {
        const char* const fraction = ++at;
        for (; at != end && digit(*at) < 10; ++at) {
            mantissa = mantissa * 10 + digit(*at);
        }
        exponent = fraction - at;
        digits -= exponent;
    }
    if (at != end && (*at == 'e' || *at == 'E')) {
        at = parseExponent(at, end, exponent);
    }
    if (!at || digits == 0 || !isTokenEnd(at, end)) {
        return nullptr;
    }
    const auto power = static_cast<std::size_t>(exponent < 0 ? -exponent : exponent);
    if (digits <= maxMantissaDigits && mantissa <= maxExactMantissa && power < powersOfTen.size()) {
        // Both operands are exact, so that the one operation rounds correctly.
        const auto whole = static_cast<double>(mantissa);
        const double absolute = exponent < 0 ? whole / powersOfTen[power] : whole * powersOfTen[power];
        value = negative ? -absolute : absolute;
        return at;
    }
    const auto result = std::from_chars(begin, at, value);
    return result.ec == std::errc() && result.ptr == at ? at : nullptr;
}

} // namespace format

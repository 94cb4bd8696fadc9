#include "files/conversions.h"

#include "qm/CQMTranscoder.h"

#include <cfenv>
#include <charconv>
#include <cstdint>
#include <langinfo.h>

namespace conversions {

namespace {

constexpr double powersOfTen[] = { 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13,
    1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22 };
constexpr long maxExactPower = 22;
constexpr std::uint64_t maxExactMantissa = std::uint64_t { 1 } << 53;
constexpr std::ptrdiff_t maxMantissaDigits = 18; // as many always fit 64 bits
constexpr std::ptrdiff_t maxExponentDigits = 4;

bool isDigit(char c) noexcept
{
    return static_cast<unsigned char>(c - '0') < 10;
}

/// Takes digits into `value`; returns where they end.
template <class Integer> const char* takeDigits(const char* at, const char* end, Integer& value) noexcept
{
    for (; at != end && isDigit(*at); ++at) {
        value = value * 10 + static_cast<Integer>(*at - '0');
    }
    return at;
}

bool isTokenEnd(const char* at, const char* end) noexcept
{
    return at == end || *at == ' ' || *at == '\r';
}

/// A decimal number as it stands in the text.
struct Decimal {
    const char* end = nullptr; ///< null: no number in the plain form
    std::uint64_t mantissa = 0; ///< may have overflowed when there are many digits
    std::ptrdiff_t digits = 0;
    long exponent = 0;
    bool negative = false;
};

Decimal scan(const char* at, const char* end) noexcept
{
    Decimal number;
    number.negative = at != end && *at == '-';
    at += number.negative ? 1 : 0;
    const char* const first = at;
    at = takeDigits(at, end, number.mantissa);
    number.digits = at - first;
    if (number.negative && number.digits == 0) {
        return number;
    }
    if (at != end && *at == '.') {
        const char* const fraction = ++at;
        at = takeDigits(at, end, number.mantissa);
        number.digits += at - fraction;
        number.exponent = fraction - at;
    }
    if (at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        const bool negative = at != end && *at == '-';
        at += at != end && (*at == '-' || *at == '+') ? 1 : 0;
        const char* const digits = at;
        long exponent = 0;
        while (at != end && isDigit(*at) && at - digits < maxExponentDigits) {
            exponent = exponent * 10 + (*at++ - '0');
        }
        if (at == digits) {
            return number;
        }
        number.exponent += negative ? -exponent : exponent;
    }
    if (number.digits > 0 && isTokenEnd(at, end)) {
        number.end = at;
    }
    return number;
}

} // namespace

bool plainNumbersAllowed()
{
    const char* const point = nl_langinfo(RADIXCHAR);
    return point[0] == '.' && point[1] == '\0' && std::fegetround() == FE_TONEAREST
        && qm::CQMTranscoder::IsAnsiAscii();
}

bool takePlainNumber(std::string_view& text, double& value) noexcept
{
    const char* const begin = text.data();
    const Decimal number = scan(begin, begin + text.size());
    if (!number.end) {
        return false;
    }
    const long power = number.exponent < 0 ? -number.exponent : number.exponent;
    if (number.digits <= maxMantissaDigits && number.mantissa <= maxExactMantissa && power <= maxExactPower) {
        // Both operands are exact, so that the one operation rounds correctly.
        const auto mantissa = static_cast<double>(number.mantissa);
        value = number.exponent < 0 ? mantissa / powersOfTen[power] : mantissa * powersOfTen[power];
        value = number.negative ? -value : value;
    } else {
        const auto result = std::from_chars(begin, number.end, value);
        if (result.ec != std::errc() || result.ptr != number.end) {
            return false;
        }
    }
    text.remove_prefix(static_cast<std::size_t>(number.end - begin));
    return true;
}

} // namespace conversions

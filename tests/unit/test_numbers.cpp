// Reading numbers: exactly what the C library's scan makes of the same text, whatever the text.

#include "format/innerText.h"
#include "format/numbers.h"
#include "format/plainNumbers.h"
#include "format/rows.h"
#include "support/OpenDatabase.h"
#include "support/ScopedLocale.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <random>

namespace {

using namespace test;

/// Texts of all the shapes that numbers have, and of near misses.
class NumberTexts {
public:
    std::string next()
    {
        std::string text = pick(10) == 0 ? oddity() : pick(3) == 0 ? fromDouble() : fromDigits();
        if (pick(8) == 0) {
            text.insert(0, pick(2) == 0 ? " " : pick(2) == 0 ? "\t " : "+");
        }
        for (int mutations = pick(4) == 0 ? pick(3) : 0; mutations > 0; --mutations) {
            const std::string_view letters = "0123456789+-.,eExXpPinfaty( \t\r\n#;:_";
            const std::string by = pick(20) == 0 ? std::string(pick(2) ? "\u00E4" : "\u3000")
                                                 : std::string(1, letters[index(letters.size())]);
            text.insert(index(text.size() + 1), by);
        }
        return text;
    }

private:
    int pick(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
    std::size_t index(std::size_t below) { return random() % below; }

    std::string digits(int most)
    {
        std::string text(index(static_cast<std::size_t>(most) + 1), '0');
        for (char& digit : text) {
            digit = static_cast<char>('0' + (pick(4) == 0 ? 0 : pick(10)));
        }
        return text;
    }

    std::string fromDigits()
    {
        std::string text = pick(3) == 0 ? "-" : "";
        text += digits(pick(5) == 0 ? 40 : 9);
        if (pick(4) != 0) {
            text += (pick(3) == 0 ? "," : ".") + digits(pick(5) == 0 ? 400 : 9);
        }
        if (pick(3) == 0) {
            text += (pick(2) ? "e" : "E")
                + std::string(pick(3) == 0 ? "+"
                        : pick(2)          ? "-"
                                           : "")
                + std::to_string(pick(pick(3) == 0 ? 400 : 30));
        }
        return text;
    }

    // A double of any bits, in any form; or the middle between it and the next one, which must be
    // rounded to even. A long double holds that middle.
    std::string fromDouble()
    {
        double number = std::bit_cast<double>(random());
        if (pick(4) == 0) {
            number
                = std::ldexp(number, -2000) + std::bit_cast<double>(random() >> (12 + pick(50))); // denormal
        }
        if (!std::isfinite(number) || pick(3) == 0) {
            number = std::round(std::ldexp(static_cast<double>(random()), -pick(64))) / std::pow(10, pick(8));
        }
        char buffer[2000];
        switch (pick(4)) {
        case 0:
            std::snprintf(buffer, sizeof buffer, "%.*g", 1 + pick(20), number);
            break;
        case 1:
            std::snprintf(buffer, sizeof buffer, "%a", number);
            break;
        case 2:
            std::snprintf(buffer, sizeof buffer, "%.17g", number);
            break;
        default:
            const long double next = std::nextafter(number, pick(2) ? INFINITY : 0.0);
            std::snprintf(buffer, sizeof buffer, "%.800Lg", (static_cast<long double>(number) + next) / 2);
        }
        return buffer;
    }

    std::string oddity()
    {
        static constexpr const char* texts[] = { "", "-", "+", ".", ",", "-.", "e5", ".e5", "1e", "1e+",
            "1e-", "1.e3", ".5", "5.", "-.5e1", "+-1", "0x", "0x.", "0x1p", "0x1p4", "-0X.8P+1", "0x1.",
            "inf", "-INF", "infinity", "infi", "infinite", "nan", "-nan", "nan(", "nan(12)", "NaN(x)y",
            "1e5000", "-1e-5000", "0e99999", "-0", "-0.0", "1e22", "1e23", "9007199254740993",
            "9223372036854775807", "9223372036854775808", "-9223372036854775808", "-9223372036854775809",
            "18446744073709551616", "4.9e-324", "2.4e-324", "2.5e-324", "2.2250738585072011e-308",
            "1.7976931348623158e308", "1.7976931348623159e308", "0.000000000000000000000000000001",
            "100000000000000000000000", "1.5 # old", "1,5,0", "1 2" };
        return texts[index(std::size(texts))];
    }

    std::mt19937_64 random { 20 };
};

long wantedTexts()
{
    const char* const wanted = std::getenv("QMDB_RANDOM_TEXTS");
    return wanted ? std::atol(wanted) : 200000;
}

std::string bitsOf(double number)
{
    return std::to_string(std::bit_cast<std::uint64_t>(number));
}

/// The locales of hosts; those with a decimal comma are compiled with the tests where that is possible.
std::vector<const char*> hostLocales()
{
    std::vector<const char*> locales { "C", "C.UTF-8", "de_DE.UTF-8", "ru_RU.KOI8-R" };
    std::erase_if(locales, [](const char* name) { return !ScopedLocale::exists(name); });
    return locales;
}

/// Calls `use` in the locale "C", in which all numbers are meant.
template <class Use>
auto inPlainLocale(Use&& use)
{
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", locale_t {});
    const locale_t before = ::uselocale(plain);
    const auto result = use();
    ::uselocale(before);
    return result;
}

std::string scannedDouble(std::wstring text)
{
    if (const std::size_t comma = text.find(L','); comma != text.npos) {
        text[comma] = L'.';
    }
    double number = 0;
    return inPlainLocale([&] { return std::swscanf(text.c_str(), L"%lg", &number); }) == 1 ? bitsOf(number)
                                                                                           : "none";
}

long scannedLong(const std::wstring& text)
{
    long number = 0;
    return inPlainLocale([&] { return std::swscanf(text.c_str(), L"%ld", &number); }) == 1 ? number : 0;
}

// What takePlainNumber() takes must be what the scan takes, to the same character.
bool plainAgrees(const std::string& text, const std::wstring& wide)
{
    double taken = 0;
    const char* const end = format::parsePlainNumber(text.data(), text.data() + text.size(), taken);
    double number = 0;
    int length = 0;
    return !end
        || (inPlainLocale([&] { return std::swscanf(wide.c_str(), L"%lg%n", &number, &length); }) == 1
            && bitsOf(taken) == bitsOf(number) && end - text.data() == length);
}

TEST(Numbers, readAsTheScanReadsThem)
{
    const std::vector<const char*> locales = hostLocales();
    for (const char* const name : locales) {
        SCOPED_TRACE(name);
        const ScopedLocale locale(name);
        ASSERT_TRUE(format::plainNumbersAllowed());
        NumberTexts texts;
        for (long left = wantedTexts() / static_cast<long>(locales.size()); left > 0; --left) {
            const std::string text = texts.next();
            const std::wstring wide = format::text::toWide(text);
            const std::optional<double> number = format::wstr2double(text);
            ASSERT_EQ(number ? bitsOf(*number) : "none", scannedDouble(wide)) << text;
            ASSERT_EQ(format::wstr2long(text), scannedLong(wide)) << text;
            ASSERT_TRUE(plainAgrees(text, wide)) << text;
        }
    }
}

TEST(Numbers, written)
{
    EXPECT_EQ(format::double2wstr(1234567.0), "1.23457e+06");
    EXPECT_EQ(format::double2wstr(0.1), "0.1");
    EXPECT_EQ(format::double2wstr(-0.0), "-0");
    EXPECT_EQ(format::double2wstr(-1.7976931348623157e308), "-1.79769e+308");
    EXPECT_EQ(format::double2wstr(-INFINITY), "-inf");
    EXPECT_EQ(format::long2wstr(0), "0");
    EXPECT_EQ(format::long2wstr(static_cast<unsigned long>(-1L)), "18446744073709551615");
}

TEST(Numbers, writtenAsTheScansCounterpartWritesThem)
{
    const std::vector<const char*> locales = hostLocales();
    for (const char* const name : locales) {
        SCOPED_TRACE(name);
        const ScopedLocale locale(name);
        std::mt19937_64 random(21);
        for (long left = wantedTexts() / static_cast<long>(locales.size()); left > 0; --left) {
            const std::uint64_t bits = random();
            // Any double, or one in the middle between two texts of six digits.
            const double middle
                = std::ldexp(static_cast<double>(bits % 20000000 | 1) / 2, -static_cast<int>(bits >> 60));
            const double number = left % 2 ? std::bit_cast<double>(bits) : middle;
            std::array<wchar_t, 100> expected {};
            inPlainLocale([&] { return std::swprintf(expected.data(), expected.size(), L"%lg", number); });
            ASSERT_EQ(format::double2wstr(number), toUtf8(expected.data())) << numberText(number);
        }
    }
}

} // namespace

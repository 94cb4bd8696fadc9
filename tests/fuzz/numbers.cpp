// Numbers are read and written as the C library's scan and print do in the locale "C", bit for bit.

#include "format/numbers.h"
#include "format/innerText.h"
#include "format/plainNumbers.h"
#include "fuzz.h"
#include "reference.h"

#include <algorithm>
#include <array>
#include <cfenv>
#include <cstring>

namespace {

using fuzz::require;

void read(const std::string& bytes)
{
    const std::wstring wide = fuzz::wideOf(bytes);
    const std::string text = format::text::fromWide(wide);
    require(format::wstr2long(text) == reference::whole(wide), "a whole number is read as by %ld");

    const std::optional<double> number = format::wstr2double(text);
    const std::optional<reference::Number> scanned = reference::number(wide);
    require(number.has_value() == scanned.has_value(), "a number is one where it is for %lg");
    require(!number || reference::same(*number, scanned->value), "a number is read as by %lg");

    double plain = 0;
    const char* const end = format::parsePlainNumber(bytes.data(), bytes.data() + bytes.size(), plain);
    if (end && format::plainNumbersAllowed()) {
        require(scanned && reference::same(plain, scanned->value), "a plain number is read as by %lg");
        require(end == bytes.data() + scanned->end, "a plain number ends where it does for %lg");
    }
}

void write(double number)
{
    const std::string text = format::double2wstr(number);
    require(text == reference::written(number), "a number is written as by %lg");
    const std::optional<double> back = format::wstr2double(text);
    require(back.has_value(), "a number that was written can be read");
    // Under another rounding than to nearest, the last of the six digits may move.
    require(!format::plainNumbersAllowed() || format::double2wstr(*back) == text, "six digits survive");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // One locale for good, with a comma as decimal point where the machine has it: that must not matter.
    [[maybe_unused]] static const char* const locale = std::setlocale(LC_ALL, "de_DE.UTF-8");
    constexpr std::array modes = { FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO };
    fuzz::Input input(data, size);
    const std::size_t mode = input.byte();
    std::fesetround(mode < modes.size() ? modes[mode] : FE_TONEAREST);
    const std::string bytes = fuzz::inflate(input.rest(), fuzz::mostOfText);
    double number = 0;
    std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
    read(bytes);
    write(number);
    std::fesetround(FE_TONEAREST);
    return 0;
}

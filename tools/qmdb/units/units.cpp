#include "units/units.h"

#include "common/characters.h"
#include "common/failure.h"
#include "common/numbers.h"
#include "units/spelling.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <udunits2.h>

namespace tool {

namespace {

template <auto function>
struct Free {
    template <class Freed>
    void operator()(Freed* freed) const
    {
        function(freed);
    }
};

using System = std::unique_ptr<ut_system, Free<ut_free_system>>;
using Unit = std::unique_ptr<ut_unit, Free<ut_free>>;
using Converter = std::unique_ptr<cv_converter, Free<cv_free>>;

/// Symbols that UDUNITS lacks, or knows with an outdated value: the electronvolt is exact since 2019.
constexpr std::pair<const char*, const char*> symbols[]
    = { { "P", "poise" }, { "St", "stokes" }, { "eV", "1.602176634e-19 J" } };

/// The tables that lie beside the command, where it is part of a Python wheel; else none, and UDUNITS finds
/// its own.
std::string carriedTables()
{
    std::error_code error;
    const auto tables
        = std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / "udunits" / "udunits2.xml";
    const bool namesOthers = std::getenv("UDUNITS2_XML_PATH") != nullptr;
    return !error && !namesOthers && std::filesystem::exists(tables, error) ? tables.string() : std::string();
}

System readSystem()
{
    ut_set_error_message_handler(ut_ignore);
    const std::string carried = carriedTables();
    System system(ut_read_xml(carried.empty() ? nullptr : carried.c_str()));
    if (!system) {
        throw Failure("the tables of UDUNITS cannot be read; install the Debian package libudunits2-data");
    }
    for (const auto& [symbol, meaning] : symbols) {
        ut_unmap_symbol_to_unit(system.get(), symbol, UT_ASCII);
        ut_map_symbol_to_unit(symbol, UT_ASCII, Unit(ut_parse(system.get(), meaning, UT_ASCII)).get());
    }
    return system;
}

Unit parse(std::string_view units)
{
    static const System system = readSystem();
    const std::string spelled = spelledForUdunits(units);
    const bool blank = std::ranges::all_of(spelled, [](char character) { return character == ' '; });
    return Unit(blank ? nullptr : ut_parse(system.get(), spelled.c_str(), UT_UTF8));
}

Unit parseOrFail(std::string_view units)
{
    Unit unit = parse(units);
    if (!unit) {
        throw Failure(
            "{} is no unit that UDUNITS knows; \"udunits2 -A\" of the package udunits-bin lists them",
            shown(units));
    }
    return unit;
}

/// The number with few digits that a computed one stands for: 1.8 for 1.7999999999999998.
double plain(double computed)
{
    constexpr double tolerance = 5e-16;
    constexpr int fewDigits = 13;
    const double candidate = std::strtod(fmt::format("{:.{}e}", computed, fewDigits - 1).c_str(), nullptr);
    return std::abs(candidate - computed) <= tolerance * std::abs(computed) ? candidate : computed;
}

/// Nothing for scales that are not linear, such as decibels.
std::optional<Conversion> linear(const cv_converter* converter)
{
    constexpr double large = 1e25; // beside which an offset does not count
    const Conversion found { plain(cv_convert_double(converter, large) / large),
        plain(cv_convert_double(converter, 0)) };
    constexpr double probe = 7;
    constexpr double tolerance = 1e-9;
    const double expected = found.factor * probe + found.offset;
    const double converted = cv_convert_double(converter, probe);
    const bool isLinear = std::isfinite(found.offset) && std::isnormal(found.factor)
        && std::abs(converted - expected) <= tolerance * (std::abs(expected) + std::abs(found.offset));
    return isLinear ? std::optional(found) : std::nullopt;
}

std::optional<Conversion> between(const Unit& from, const Unit& to)
{
    if (!ut_are_convertible(from.get(), to.get())) {
        return std::nullopt;
    }
    const Converter converter(ut_get_converter(from.get(), to.get()));
    return converter ? linear(converter.get()) : std::nullopt;
}

} // namespace

double Conversion::operator()(double number) const
{
    if (factor == 1 && offset == 0) {
        return number;
    }
    const double scaled = factor * number;
    return roundedTo(scaled + offset, std::max(std::abs(scaled), std::abs(offset)));
}

Conversion Conversion::inverse() const
{
    return { plain(1 / factor), offset == 0 ? 0 : plain(-offset / factor) };
}

std::optional<Conversion> findConversion(std::string_view from, std::string_view to)
{
    if (from == to && !from.empty()) {
        return Conversion();
    }
    const Unit first = parse(from);
    const Unit second = parse(to);
    return first && second ? between(first, second) : std::nullopt;
}

void requireUnit(std::string_view units)
{
    parseOrFail(units);
}

Conversion conversion(std::string_view from, std::string_view to)
{
    const Unit second = parseOrFail(to);
    const Unit first = parseOrFail(from);
    if (const auto found = between(first, second)) {
        return *found;
    }
    const bool letter = to == "C" || to == "F"; // coulomb and farad
    throw WrongUnits("{} cannot be converted to {}: they do not measure the same{}", shown(from), shown(to),
        letter ? fmt::format("; degrees are \"deg{}\"", to) : "");
}

} // namespace tool

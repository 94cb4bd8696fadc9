#include "commands/mixtureOptions.h"

#include "common/failure.h"
#include "common/numbers.h"
#include "common/vocabulary.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace tool {

namespace {

/// "Copper:0.9" or "1:0.9"; the last colon separates, as a name may hold others.
COMPONENT componentOf(const Resolver& resolver, const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    const auto fraction = colon == std::string::npos
        ? std::nullopt
        : asFiniteNumber(std::string_view(text).substr(colon + 1));
    if (!fraction || !(*fraction > 0)) {
        throw Failure("\"{}\" is no component: write SUBSTANCE:FRACTION with a fraction above 0", text);
    }
    return { resolver.substance(text.substr(0, colon)).id, *fraction };
}

/// 0.33, 0.56 and 0.11 add up to 1 for people, and to a little more in binary.
bool isSumAllowed(double sum, std::size_t count)
{
    const double roundingErrors = std::numeric_limits<double>::epsilon() * static_cast<double>(count);
    return vocabulary::isSumAllowed(sum > 1 ? std::max(1.0, sum - roundingErrors) : sum);
}

double sumOf(std::span<const COMPONENT> components)
{
    double sum = 0;
    for (const COMPONENT& component : components) {
        sum += component.molarFraction;
    }
    return sum;
}

} // namespace

CLI::Option* addComponentOption(
    CLI::App& command, std::vector<std::string>& components, const std::string& help)
{
    return command.add_option("--component", components, help)
        ->type_name("SUBSTANCE:FRACTION")
        ->allow_extra_args(false);
}

std::vector<COMPONENT> compositionOf(const Resolver& resolver, const std::vector<std::string>& texts)
{
    std::vector<COMPONENT> composition;
    for (const std::string& text : texts) {
        const COMPONENT component = componentOf(resolver, text);
        if (std::ranges::count(composition, component.matterId, &COMPONENT::matterId) > 0) {
            throw Failure("\"{}\": this component is named twice", text);
        }
        composition.push_back(component);
    }
    if (texts.size() == 1) {
        throw Failure("a mixture has two components or more");
    }
    if (const double sum = sumOf(composition); !texts.empty() && !isSumAllowed(sum, texts.size())) {
        throw Failure("the molar fractions add up to {}; they must add up to 0.99 to 1", sum);
    }
    return composition;
}

void roundDown(std::span<COMPONENT> composition)
{
    while (sumOf(composition) > 1) {
        composition.back().molarFraction = std::nextafter(composition.back().molarFraction, 0.0);
    }
}

} // namespace tool

#include "output/referredNames.h"

#include <fmt/ranges.h>

namespace tool {

std::string compositionText(const Substance& substance, const std::vector<Substance>& all)
{
    std::vector<std::string> parts;
    for (const COMPONENT& component : substance.composition) {
        parts.push_back(fmt::format("{} {}", component.molarFraction, nameById(component.matterId, all)));
    }
    return fmt::format("{}", fmt::join(parts, " + "));
}

std::string compositionIds(const Substance& substance)
{
    std::vector<std::string> parts;
    for (const COMPONENT& component : substance.composition) {
        parts.push_back(fmt::format("{}:{}", component.matterId, component.molarFraction));
    }
    return fmt::format("{}", fmt::join(parts, ";"));
}

} // namespace tool

#include "writing/composition.h"

#include "common/numbers.h"

#include "format/keys.h"
#include "format/vocabulary.h"

#include <fmt/format.h>

namespace tool::writing {

namespace {

/// The format refuses a single character behind the last colon.
constexpr std::size_t shortestFraction = 2;

std::string fractionText(double fraction)
{
    const std::string text = numberText(fraction);
    return text.size() < shortestFraction ? text + ".0" : text;
}

} // namespace

std::string compositionText(std::span<const COMPONENT> components)
{
    std::string text;
    for (const COMPONENT& component : components) {
        if (!text.empty()) {
            text += format::componentSeparator;
        }
        text += fmt::format(
            "{}{}{}", component.matterId, format::fractionSeparator, fractionText(component.molarFraction));
    }
    return text;
}

std::vector<KeyChange> compositionKeys(std::span<const COMPONENT> components)
{
    return { { std::string(textOf(format::Key::Mixture)),
                 std::string(components.empty() ? format::falseFlag : format::trueFlag) },
        { std::string(textOf(format::Key::Composition)), compositionText(components) } };
}

} // namespace tool::writing

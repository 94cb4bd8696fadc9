#include "database/composition.h"

#include "files/conversions.h"
#include "qm/text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace composition {

namespace {

/// Longest text of one number, in characters.
constexpr std::size_t maxNumberLength = 1023;

} // namespace

Outcome parse(std::string_view text, std::vector<COMPONENT>& components)
{
    components.clear();
    if (text.find_first_of(";:") == std::string_view::npos) {
        return Outcome::Read;
    }
    components.resize(static_cast<std::size_t>(std::ranges::count(text, ';')) + 1);
    auto component = components.begin();
    std::string number;
    std::size_t length = 0;
    while (!text.empty()) {
        const char* const start = text.data();
        const char32_t c = qm::text::takeFirst(text);
        const bool last = text.empty();
        const bool endsNumber = c == ':' || c == ';' || last;
        if (endsNumber && number.empty()) {
            return Outcome::BadFormat; // a single character at the very end is refused as well
        }
        if (c == ':') {
            component->matterId = conversions::wstr2long(std::exchange(number, {}));
            length = 0;
            continue;
        }
        if (c != ';' || last) {
            number.append(start, text.data()); // a last ";" belongs to the number before it
            ++length;
        }
        if (length > maxNumberLength) {
            return Outcome::BadFormat;
        }
        if (endsNumber) {
            const std::optional<double> fraction = conversions::wstr2double(std::exchange(number, {}));
            if (!fraction) {
                return Outcome::BadFraction;
            }
            (component++)->molarFraction = *fraction;
            length = 0;
        }
    }
    return Outcome::Read;
}

std::string format(std::span<const COMPONENT> components)
{
    std::string text;
    for (const COMPONENT& component : components) {
        text += text.empty() ? "" : ";";
        text += conversions::long2wstr(static_cast<unsigned long>(component.matterId));
        text += ':';
        text += conversions::double2wstr(component.molarFraction);
    }
    return text;
}

double sumOfFractions(std::span<const COMPONENT> components) noexcept
{
    double sum = 0;
    for (const COMPONENT& component : components) {
        sum += component.molarFraction;
    }
    return sum;
}

std::span<const COMPONENT> componentsOf(const MATTER& matter) noexcept
{
    if (!matter.composition || matter.compositionCount <= 0) {
        return {};
    }
    return { matter.composition, static_cast<std::size_t>(matter.compositionCount) };
}

} // namespace composition

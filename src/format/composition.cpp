#include "format/composition.h"

#include "format/innerText.h"
#include "format/numbers.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace format {

CompositionResult parseComposition(std::string_view text, std::vector<COMPONENT>& components)
{
    components.clear();
    if (text.find(componentSeparator) == text.npos && text.find(fractionSeparator) == text.npos) {
        return CompositionResult::Read;
    }
    components.resize(static_cast<std::size_t>(std::ranges::count(text, componentSeparator)) + 1);
    auto component = components.begin();
    std::string number;
    std::size_t length = 0;
    while (!text.empty()) {
        const char* const start = text.data();
        const char32_t c = text::popFirst(text);
        const bool last = text.empty();
        const bool endsNumber = c == fractionSeparator || c == componentSeparator || last;
        if (endsNumber && number.empty()) {
            return CompositionResult::BadFormat; // a single character at the very end is refused as well
        }
        if (c == fractionSeparator) {
            component->matterId = wstr2long(std::exchange(number, {}));
            length = 0;
            continue;
        }
        if (c != componentSeparator || last) {
            number.append(start, text.data()); // a last ";" belongs to the number before it
            ++length;
        }
        if (length > maxNumberLength) {
            return CompositionResult::BadFormat;
        }
        if (endsNumber) {
            const std::optional<double> fraction = wstr2double(std::exchange(number, {}));
            if (!fraction) {
                return CompositionResult::BadFraction;
            }
            (component++)->molarFraction = *fraction;
            length = 0;
        }
    }
    return CompositionResult::Read;
}

std::string compositionText(std::span<const COMPONENT> components)
{
    std::string text;
    for (const COMPONENT& component : components) {
        if (!text.empty()) {
            text += componentSeparator;
        }
        text += long2wstr(static_cast<unsigned long>(component.matterId));
        text += fractionSeparator;
        text += double2wstr(component.molarFraction);
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

bool isSumAllowed(double sum) noexcept
{
    return !(sum > maxSumOfFractions || sum < minSumOfFractions);
}

} // namespace format

#pragma once

#include "database/entities.h"

#include <fmt/format.h>

namespace tool {

/// The name of the one with this ID, or that there is none.
template <class Named>
std::string nameById(long id, const std::vector<Named>& all)
{
    for (const Named& one : all) {
        if (one.id == id) {
            return one.name;
        }
    }
    return fmt::format("{} (missing)", id);
}

/// "0.75 Water + 0.25 Salt"; empty for a pure substance. `all` are the substances of the database.
std::string compositionText(const Substance& substance, const std::vector<Substance>& all);

/// The same by numbers, as descriptors have it: "1:0.75;3:0.25".
std::string compositionIds(const Substance& substance);

} // namespace tool
